#include "native.h"

#include <cstdio>
#include <cstring>

#include "kel_memory.h"
#include "tvk_string.h"

namespace interfaces {

namespace {

// Exported operations take some texts as writable and do not write them.
char *text(const char *constant) {
    return const_cast<char *>(constant);
}

bool is_current(tvk_map_ctx ctx, const char *list_path, const char *key_name, const char *key_value) {
    const Node *key = nullptr;
    return current_entry(ctx) != nullptr && equal(ctx->state->pending_trim_path, list_path) &&
           tvk_map_datatree_get_subtree(current_entry(ctx), &key, key_name, key_value, nullptr) == TVK_OK;
}

// Looking for an entry whose list is not there yet counts as a failure for the error path, though it is then added.
void forget_error_path(tvk_map_ctx ctx) {
    kel_named_free(ctx->state->error_xpath);
    kel_named_free(ctx->state->error_xpath_ns);
    ctx->state->error_xpath = nullptr;
    ctx->state->error_xpath_ns = nullptr;
}

const Node *current_node(tvk_map_ctx ctx, const Node *target) {
    return ctx->state->pending_trim_path != nullptr ? current_entry(ctx) : target;
}

// In the second pass of a replace: what the first one marked as removed is there again, with a new content.
void take_back_removal(tvk_map_ctx ctx, const Node *node) {
    if (node != nullptr && ctx->state->replace_converted != 0 && node->operation == TVK_OPERATION_REMOVE) {
        tvk_map_datatree_set_operation(const_cast<Node *>(node), TVK_OPERATION_REPLACE);
    }
}

void drop_children(Node *node, int32_t kept) {
    for (int32_t i = kept; i < node->subtree_count; ++i) {
        qidl_tvk_datatree_free_ext(&node->subtrees[i], tvk_gpb_free, nullptr, 0);
    }
    if (node->subtree_count > kept) {
        node->subtree_count = kept;
    }
}

}  // namespace

qerrno enter_list(tvk_map_ctx ctx, Node *root, const char *list_path, const char *key_name, const char *key_value) {
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    const bool failed_before = ctx->state->error_xpath != nullptr;
    const Node *entry = nullptr;
    const qerrno status = tvk_map_search_or_add_list(ctx, root, &entry, text(list_path), text(key_value),
                                                     text(key_name), text(kNativeNs));
    if (status == TVK_OK) {
        ctx->state->pending_list_node = const_cast<Node *>(entry);
        if (!failed_before) {
            forget_error_path(ctx);
        }
    }
    return status;
}

qerrno enter_interface(tvk_map_ctx ctx, Node *target, const char *name) {
    if (is_current(ctx, kNativeInterface, "interface-name", name)) {
        return TVK_OK;
    }
    const qerrno status = enter_list(ctx, target, kNativeInterface, "interface-name", name);
    if (status != TVK_OK) {
        return status;
    }
    return tvk_map_datatree_add_path(ctx, target, "interface-configurations/interface-configuration/active", kNativeNs,
                                     "act", nullptr, nullptr, 0);
}

qerrno settle_entry(tvk_map_ctx ctx, const Node *node, int32_t key_count) {
    Node *entry = current_entry(ctx);
    if (tvk_map_is_request_delete(node) != 0) {
        remove_entry(entry, key_count, node->operation);
        return TVK_SKIP_NODE;
    }
    if (ctx->state->replace_converted != 0) {
        take_back_removal(ctx, entry);
    } else if ((node->presence & TVK_HAS_OPERATION) != 0) {
        tvk_map_datatree_set_operation(entry, node->operation);
    }
    return TVK_OK;
}

void remove_entry(Node *entry, int32_t key_count, uint32_t operation) {
    drop_children(entry, key_count);
    tvk_map_datatree_set_operation(entry, operation);
}

qerrno settle_container(tvk_map_ctx ctx, const Node *node, Node *target, const char *path) {
    if (tvk_map_is_request_delete(node) == 0) {
        take_back_removal(ctx, find(current_node(ctx, target), path));
        return TVK_OK;
    }
    const qerrno status = add_value(ctx, node, target, path, nullptr);
    return status == TVK_OK ? TVK_SKIP_NODE : status;
}

qerrno add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value) {
    take_back_removal(ctx, find(current_node(ctx, target), path));
    const char *list_path = ctx->state->pending_trim_path;
    char whole_path[TVK_MAP_MAX_PATH];
    std::snprintf(whole_path, sizeof whole_path, "%s/%s", list_path != nullptr ? list_path : "", path);
    Node *native = nullptr;
    const qerrno status = tvk_map_datatree_add_path(ctx, target, whole_path, kNativeNs, value, nullptr, &native, 0);
    if (status != TVK_OK || native == nullptr) {
        return status;
    }
    if (tvk_map_is_request_delete(leaf) != 0) {
        remove_entry(native, 0, leaf->operation);
    } else if ((leaf->presence & TVK_HAS_OPERATION) != 0 && ctx->state->replace_converted == 0) {
        tvk_map_datatree_set_operation(native, leaf->operation);
    }
    return TVK_OK;
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

qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status) {
    kel_named_free(ctx->state->error_node_tag);
    ctx->state->error_node_tag = tvk_strdup(node->tag, "openconfig_interfaces");
    tvk_oc_error_path(ctx);
    return status;
}

}  // namespace interfaces
