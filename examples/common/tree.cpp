#include "tree.h"

#include <cstdio>
#include <cstring>

#include "kel_memory.h"
#include "tvk_string.h"

namespace mapping {

namespace {

// Looking for an entry whose list is not there yet counts as a failure for the error path, though it is then added.
void forget_error_path(tvk_map_ctx ctx) {
    kel_named_free(ctx->state->error_xpath);
    kel_named_free(ctx->state->error_xpath_ns);
    ctx->state->error_xpath = nullptr;
    ctx->state->error_xpath_ns = nullptr;
}

// Entries that were read from a file have no number, and one of those would be given the key of the next new entry.
// They are the first ones, and get theirs all at once.
void number_entries(tvk_map_ctx ctx, Node *root, const char *list_path) {
    const Node *first = find(root, list_path);
    if (first == nullptr || (first->presence & TVK_HAS_SUBTREE_INDEX) != 0) {
        return;
    }
    char parent_path[TVK_MAP_MAX_PATH];
    std::snprintf(parent_path, sizeof parent_path, "%s", list_path);
    char *separator = std::strrchr(parent_path, '/');
    *(separator != nullptr ? separator : parent_path) = '\0';
    const Node *parent = find(root, parent_path);
    tvk_map_forget_children(ctx, parent);
    int32_t place = 0;
    for (Node &entry : children_of(parent)) {
        ++place;
        if (equal(entry.tag, first->tag)) {
            entry.subtree_index = place;
            entry.presence = static_cast<uint16_t>(entry.presence | TVK_HAS_SUBTREE_INDEX);
        }
    }
}

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

qerrno enter_entry(tvk_map_ctx ctx, Node *root, const char *list_path, const char *key_name, const char *key_value,
                   const char *ns) {
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    number_entries(ctx, root, list_path);
    const bool failed_before = ctx->state->error_xpath != nullptr;
    const Node *entry = nullptr;
    const qerrno status =
        tvk_map_search_or_add_list(ctx, root, &entry, text(list_path), text(key_value), text(key_name), text(ns));
    if (status == TVK_OK) {
        ctx->state->pending_list_node = const_cast<Node *>(entry);
        if (!failed_before) {
            forget_error_path(ctx);
        }
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
