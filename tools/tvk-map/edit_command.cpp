#include "edit_command.h"

#include "data_file.h"
#include "edit_request.h"
#include "output.h"
#include "xml_encode.h"

namespace tvk::tool {

namespace {

std::optional<RpcError> edit(const MappingModule &module, Framework &framework, RequestTrees &trees) {
    RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
    return walk(module, scope, trees.request, trees.native, Unmapped::kRefused);
}

}  // namespace

std::optional<std::string> read_edit(XmlDocument document, TreeHolder &request) {
    EditPayload payload = find_edit_payload(document);
    move_data(payload.tops, request.root());
    for (Node &top : request.tops()) {
        if (payload.default_operation && (top.presence & TVK_HAS_OPERATION) == 0) {
            top.operation = *payload.default_operation;
            set_present(top, TVK_HAS_OPERATION);
        }
    }
    return payload.message_id;
}

Reply answer_edit(const MappingModule &module, Framework &framework, RequestTrees &trees,
                  const std::optional<std::string> &message_id, bool tree) {
    if (const std::optional<RpcError> error = edit(module, framework, trees)) {
        return refusal(*error, message_id);
    }
    const Node &result = trees.native.root();
    return encoded([&] { return tree ? tree_listing(result) : encode_config(result); }, message_id);
}

int run_edit(const EditOptions &options) {
    check_inputs(options.request, options.into, "only one of REQUEST and --into can be standard input");
    const MappingModule module = MappingModule::load(options.mapping);
    RequestTrees trees;
    const std::optional<std::string> message_id =
        read_edit(XmlDocument::read(options.request, kEditLayout), trees.request);
    if (!options.into.empty()) {
        read_data(options.into, trees.native);
    }
    Framework framework(options.trace);
    return print(answer_edit(module, framework, trees, message_id, options.tree));
}

}  // namespace tvk::tool
