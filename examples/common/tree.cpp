#include "tree.h"

#include <cstdio>
#include <cstring>

#include "kel_memory.h"
#include "tvk_string.h"

namespace mapping {

namespace {

void drop_children(tvk_map_ctx ctx, Node *node, int32_t kept) {
    tvk_map_forget_children(ctx, node);
    for (int32_t i = kept; i < node->subtree_count; ++i) {
        qidl_tvk_datatree_free_ext(&node->subtrees[i], tvk_gpb_free, nullptr, 0);
    }
    if (node->subtree_count > kept) {
        node->subtree_count = kept;
    }
}

}  // namespace

NodeRange children_of(const Node *node) {
    NodeRange range{nullptr, 0};
    if (node != nullptr) {
        tvk_map_get_subtrees(nullptr, node, &range.first, &range.count);
    }
    return range;
}

const Node *find(const Node *node, const char *path) {
    char component[64];
    while (node != nullptr && *(path += std::strspn(path, "/")) != '\0') {
        const std::size_t length = std::strcspn(path, "/");
        if (strncpy_s(component, sizeof component, path, length) != 0 ||
            tvk_map_datatree_get_subtree(node, &node, component, nullptr, nullptr) != TVK_OK) {
            return nullptr;
        }
        path += length;
    }
    return node;
}

Node *find(Node *node, const char *path) {
    return const_cast<Node *>(find(static_cast<const Node *>(node), path));
}

qerrno enter_entry(tvk_map_ctx ctx, Node *parent, const List &list, const char *key_value) {
    ctx->state->pending_list_node = nullptr;  // the list may grow, which moves its entries
    Node *container = nullptr;
    Node *entry = nullptr;
    qerrno status = tvk_map_datatree_add_subtree(ctx, parent, list.container, list.ns, nullptr, nullptr, &container, 0);
    if (status == TVK_OK) {
        status = tvk_map_datatree_add_list_node(ctx, container, list.name, list.ns, list.key, key_value, &entry);
    }
    if (status == TVK_OK && children_of(entry).count == 0) {
        status = tvk_map_datatree_add_subtree(ctx, entry, list.key, list.ns, key_value, nullptr, nullptr, 0);
    }
    if (status == TVK_OK) {
        ctx->state->pending_list_node = entry;
    }
    return status;
}

void remove_entry(tvk_map_ctx ctx, Node *entry, int32_t key_count, uint32_t operation) {
    drop_children(ctx, entry, key_count);
    tvk_map_datatree_set_operation(entry, operation);
}

bool take_back_removal(Node *native) {
    if (native == nullptr || tvk_map_is_request_delete(native) == 0) {
        return false;
    }
    tvk_map_datatree_set_operation(native, TVK_OPERATION_REPLACE);
    return true;
}

void give_operation(tvk_map_ctx ctx, const Node *node, Node *native) {
    // What a replace has turned into a merge is the walk's own operation, not the request's.
    if ((node->presence & TVK_HAS_OPERATION) != 0 && ctx->state->replace_converted == 0) {
        tvk_map_datatree_set_operation(native, node->operation);
    }
}

qerrno settle_entry(tvk_map_ctx ctx, const Node *node, int32_t key_count) {
    Node *entry = current_entry(ctx);
    if (tvk_map_is_request_delete(node) != 0) {
        remove_entry(ctx, entry, key_count, node->operation);
        return TVK_SKIP_NODE;
    }
    if (!take_back_removal(entry)) {
        give_operation(ctx, node, entry);
    }
    return TVK_OK;
}

qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status) {
    kel_named_free(ctx->state->error_node_tag);
    ctx->state->error_node_tag = tvk_strdup(node->tag, "example mapping");
    tvk_oc_error_path(ctx);
    return status;
}

}  // namespace mapping
