#include "edit_command.h"

#include <optional>

#include "diagnostics.h"
#include "framework.h"
#include "mapping_failure.h"
#include "module_loader.h"
#include "output.h"
#include "rpc_error.h"
#include "rpc_request.h"
#include "tree_holder.h"
#include "xml_decode.h"
#include "xml_encode.h"

namespace tvk::tool {

namespace {

// The request and what the mapping makes of it. They may share child arrays when a mapping says so.
struct EditTrees {
    TreeHolder request;
    TreeHolder target;

    EditTrees() = default;
    EditTrees(const EditTrees &) = delete;
    EditTrees &operator=(const EditTrees &) = delete;
    ~EditTrees() { unshare(target.root(), request.root()); }
};

std::span<Node> top_nodes(TreeHolder &tree) {
    return {tree.root().subtrees, static_cast<size_t>(tree.root().subtree_count)};
}

// Returns the message id of the request.
std::optional<std::string> read_request(const std::string &path, TreeHolder &request) {
    const XmlDocument document = XmlDocument::read(path);
    EditPayload payload = find_edit_payload(document);
    decode_elements(document, payload.tops, request.root());
    for (Node &top : top_nodes(request)) {
        if (payload.default_operation && (top.presence & TVK_HAS_OPERATION) == 0) {
            top.operation = *payload.default_operation;
            top.presence = static_cast<uint16_t>(top.presence | TVK_HAS_OPERATION);
        }
    }
    return payload.message_id;
}

void read_target(const std::string &path, TreeHolder &target) {
    const XmlDocument document = XmlDocument::read(path);
    decode_elements(document, find_data(document), target.root());
}

// Walks the top containers in order. The first failure ends the walk.
std::optional<RpcError> walk(const MappingModule &module, EditTrees &trees, bool trace) {
    Framework framework(trace);
    RequestScope request(framework, TVK_REQUEST_EDIT_CONFIG);
    for (Node &top : top_nodes(trees.request)) {
        const tvk_map_module_container *container = module.find(tag_of(top), namespace_of(top));
        if (container == nullptr) {
            return describe_unmapped(module, top);
        }
        request.state().datatree = &top;
        const qerrno status = container->handler(request.ctx(), &top, &trees.target.root());
        if (status != TVK_OK) {
            return describe_failure(status, request.state(), top);
        }
    }
    return std::nullopt;
}

int refuse(const RpcError &error, const std::optional<std::string> &message_id) {
    write_out(encode_rpc_error(error, message_id));
    return kExitMappingFailed;
}

}  // namespace

int run_edit(const EditOptions &options) {
    if (options.request == "-" && options.into == "-") {
        throw UsageError("only one of REQUEST and --into can be standard input");
    }
    const MappingModule module = MappingModule::load(options.mapping);
    EditTrees trees;
    const std::optional<std::string> message_id = read_request(options.request, trees.request);
    if (!options.into.empty()) {
        read_target(options.into, trees.target);
    }
    if (const std::optional<RpcError> error = walk(module, trees, options.trace)) {
        return refuse(*error, message_id);
    }
    try {
        const Node &result = trees.target.root();
        write_out(options.tree ? tree_listing(result) : encode_config(result));
    } catch (const EncodeError &error) {
        RpcError unwritable;
        unwritable.tag = "operation-failed";
        unwritable.message = std::string("The mapping's result cannot be written as XML: ") + error.what() + ".";
        return refuse(unwritable, message_id);
    }
    return kExitSuccess;
}

}  // namespace tvk::tool
