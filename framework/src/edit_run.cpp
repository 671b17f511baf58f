// Runs an edit request through mappings.
#include "framework/edit_run.h"

#include "framework/edit_defaults.h"
#include "framework/request_values.h"

namespace tvk::framework {

namespace {

TopNames mapped_tops(const Mappings &mappings) {
    TopNames names;
    for (const MappingModule &module : mappings.modules()) {
        for (const tvk_map_module_container &container : module.containers()) {
            names.emplace_back(container.tag, container.ns);
        }
    }
    return names;
}

std::vector<RpcError> walk_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees,
                                const EditParameters &parameters) {
    RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
    // The answer to a get holds state as well, which no mapping can edit.
    const UnmappedNodes unmapped = parameters.is_reply ? UnmappedNodes::kPassedOver : UnmappedNodes::kRefused;
    std::vector<RpcError> errors = walk(mappings, scope, trees.request, trees.native, unmapped);
    if (errors.empty() && parameters.has_inserts) {
        errors = refuse_inserts(mappings, trees.request);
    }
    return errors.empty() ? refuse_texts(trees.request.root()) : errors;
}

}  // namespace

std::vector<RpcError> make_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees,
                                const EditParameters &parameters) {
    resolve_identities(mappings, trees.request);
    std::vector<RpcError> errors;
    if (parameters.is_whole) {
        errors = refuse_operations(trees.request.root());
        replace_all(trees.request, mapped_tops(mappings));
    } else if (parameters.default_operation == TVK_OPERATION_REPLACE) {
        replace_all(trees.request, mapped_tops(mappings));
    } else if (parameters.default_operation == kNoOperation) {
        errors = drop_what_does_nothing(mappings, framework, trees);
    }
    return errors.empty() ? walk_edit(mappings, framework, trees, parameters) : errors;
}

}  // namespace tvk::framework
