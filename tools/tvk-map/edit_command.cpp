#include "edit_command.h"

#include <algorithm>

#include "apply_command.h"
#include "data_file.h"
#include "edit_defaults.h"
#include "operation.h"
#include "output.h"
#include "request_values.h"
#include "xml_encode.h"

namespace tvk::tool {

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
    // What a get was answered with holds state as well, which is no configuration.
    const UnmappedNodes unmapped = parameters.is_reply ? UnmappedNodes::kPassedOver : UnmappedNodes::kRefused;
    std::vector<RpcError> errors = walk(mappings, scope, trees.request, trees.native, unmapped);
    if (errors.empty() && parameters.has_inserts) {
        errors = refuse_inserts(mappings, trees.request);
    }
    return errors.empty() ? refuse_texts(trees.request.root()) : errors;
}

}  // namespace

EditParameters read_edit(XmlDocument document, TreeHolder &request) {
    EditPayload payload = find_edit_payload(document);
    const bool has_inserts = std::any_of(payload.tops.begin(), payload.tops.end(),
                                         [](const xmlNode *top) { return data_of(top).has_inserts; });
    move_data(payload.tops, request.root());
    return {payload.attributes, payload.default_operation, payload.is_whole, payload.is_reply, has_inserts};
}

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

Reply answer_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees, const EditParameters &parameters,
                  bool tree) {
    const std::vector<RpcError> errors = make_edit(mappings, framework, trees, parameters);
    if (!errors.empty()) {
        return refusal(errors, parameters.attributes);
    }
    return config_reply(trees.native.root(), parameters.attributes, tree);
}

int run_edit(const EditOptions &options) {
    check_inputs(options.request, options.into, "only one of REQUEST and --into can be standard input");
    const Mappings mappings = Mappings::load(options.mappings);
    RequestTrees trees;
    const EditParameters parameters = read_edit(XmlDocument::read(options.request, kEditLayout), trees.request);
    TreeHolder before;
    if (!options.into.empty()) {
        read_data(options.into, kNativeLayout, trees.native);
        if (options.apply) {
            copy_tree(trees.native.root(), before.root());
        }
    }
    Framework framework(options.trace);
    if (!options.apply) {
        return print(answer_edit(mappings, framework, trees, parameters, options.tree));
    }
    const std::vector<RpcError> errors = make_edit(mappings, framework, trees, parameters);
    if (!errors.empty()) {
        return print(refusal(errors, parameters.attributes));
    }
    Shapes shapes(mappings);
    return print(answer_apply(before, trees.native.root(), TVK_OPERATION_MERGE, shapes,
                              {parameters.attributes, options.changes, options.tree}));
}

}  // namespace tvk::tool
