#include "edit_command.h"

#include <optional>

#include "data_file.h"
#include "edit_request.h"
#include "mapping_run.h"
#include "output.h"
#include "xml_decode.h"
#include "xml_encode.h"

namespace tvk::tool {

namespace {

// Returns the message id of the request.
std::optional<std::string> read_request(const std::string &path, TreeHolder &request) {
    const XmlDocument document = XmlDocument::read(path);
    EditPayload payload = find_edit_payload(document);
    decode_elements(document, payload.tops, Values::kAsWritten, request.root());
    for (Node &top : request.tops()) {
        if (payload.default_operation && (top.presence & TVK_HAS_OPERATION) == 0) {
            top.operation = *payload.default_operation;
            top.presence = static_cast<uint16_t>(top.presence | TVK_HAS_OPERATION);
        }
    }
    return payload.message_id;
}

std::optional<RpcError> edit(const MappingModule &module, RequestTrees &trees, bool trace) {
    Framework framework(trace);
    RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
    return walk(module, scope, trees.request, trees.native, Unmapped::kRefused);
}

}  // namespace

int run_edit(const EditOptions &options) {
    check_inputs(options.request, options.into, "only one of REQUEST and --into can be standard input");
    const MappingModule module = MappingModule::load(options.mapping);
    RequestTrees trees;
    const std::optional<std::string> message_id = read_request(options.request, trees.request);
    if (!options.into.empty()) {
        read_data(options.into, trees.native);
    }
    if (const std::optional<RpcError> error = edit(module, trees, options.trace)) {
        return refuse(*error, message_id);
    }
    const Node &result = trees.native.root();
    return print_result([&] { return options.tree ? tree_listing(result) : encode_config(result); }, message_id);
}

}  // namespace tvk::tool
