// The request schema: a skeleton of the nodes that a request visited.
//
// A node that was descended into keeps its parent in the field attributes. Its attribute_count is 0, so that nobody
// reads the field as attributes.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/state/request_state.h"
#include "tvk_map_datatree.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

void link_to_parent(Node &node, Node *parent) {
    node.attributes = reinterpret_cast<struct qidl_tvk_name_value *>(parent);
    node.attribute_count = 0;
    set_present(node, TVK_HAS_ATTRIBUTES);
}

Node *parent_of(const Node &node) {
    return reinterpret_cast<Node *>(node.attributes);
}

Node *make_root() {
    NamedBlock<Node> root{static_cast<Node *>(kel_named_calloc_(1, sizeof(Node), "TVK_MAP", 0))};
    if (root == nullptr) {
        return nullptr;
    }
    root->tag = tvk_strdup("root", "TVK_MAP");
    if (root->tag == nullptr) {
        return nullptr;
    }
    set_present(*root, TVK_HAS_TAG);
    link_to_parent(*root, nullptr);
    return root.release();
}

qerrno add_child(tvk_map_ctx ctx, Node &parent, const Node &node, Node *&added) {
    return tvk_map_datatree_add_subtree_flagged(ctx, &parent, node.tag, node.ns, nullptr, nullptr, &added, 0, 0);
}

qerrno start_schema(tvk_map_ctx ctx, const Node &node) {
    tvk_map_request_state &state = *ctx->state;
    // The pointers may still lead into a schema that was freed.
    state.req_tree_schema_parent = nullptr;
    state.req_tree_schema_last = nullptr;
    Node *root = make_root();
    if (root == nullptr) {
        return TVK_ERR_NO_MEMORY;
    }
    state.req_tree_schema = root;
    Node *added = nullptr;
    if (const qerrno status = add_child(ctx, *root, node, added); status != TVK_OK || added == nullptr) {
        return status;
    }
    link_to_parent(*root, root);
    state.req_tree_schema_parent = root;
    state.req_tree_schema_last = added;
    return TVK_OK;
}

// Returns whether parent has such a child. The namespace of the child is compared with the tag of node.
bool is_there_already(const Node &parent, const Node &node) {
    for (const Node &child : children(parent)) {
        if (has(child, TVK_HAS_TAG) && has(child, TVK_HAS_NS) && same_text(child.tag, node.tag) &&
            same_text(child.ns, node.tag)) {
            return true;
        }
    }
    return false;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_add_node_to_req_tree_schema(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, uint32_t kind) {
    if (ctx == nullptr || ctx->state == nullptr || node == nullptr) {
        return TVK_ERR_INVALID;
    }
    tvk_map_request_state &state = *ctx->state;
    if (state.req_tree_schema == nullptr) {
        return start_schema(ctx, *node);
    }
    // A start that failed has left a root with nothing below it; the schema then goes on at the root.
    Node &last = state.req_tree_schema_last != nullptr ? *state.req_tree_schema_last : *state.req_tree_schema;
    if (is_there_already(last, *node)) {
        return TVK_OK;
    }
    Node *added = nullptr;
    const qerrno status = add_child(ctx, last, *node, added);
    if (kind == TVK_SCHEMA_LEAF || status != TVK_OK || added == nullptr) {
        return status;
    }
    const bool is_root = &last == state.req_tree_schema;
    link_to_parent(last, is_root ? &last : state.req_tree_schema_parent);
    state.req_tree_schema_parent = &last;
    state.req_tree_schema_last = added;
    return TVK_OK;
}

qerrno tvk_map_update_req_tree_schema(tvk_map_ctx ctx) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_OK;
    }
    tvk_map_request_state &state = *ctx->state;
    TVK_ASSERT(state.req_tree_schema_parent != nullptr, "NULL != ctx->state->req_tree_schema_parent", kCommonSource,
               "qerrno tvk_map_update_req_tree_schema(tvk_map_ctx)");
    state.req_tree_schema_last = state.req_tree_schema_parent;
    state.req_tree_schema_parent = parent_of(*state.req_tree_schema_parent);
    return TVK_OK;
}

void tvk_map_free_req_tree_schema(tvk_map_ctx ctx) {
    if (ctx != nullptr && ctx->state != nullptr) {
        release_request_schema(ctx);
    }
}
