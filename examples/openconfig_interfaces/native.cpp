#include "native.h"

#include <cstring>

#include "kel_memory.h"
#include "tvk_string.h"

namespace interfaces {

namespace {

// Exported operations take some texts as writable and do not write them.
char *text(const char *constant) {
    return const_cast<char *>(constant);
}

bool equal(const char *a, const char *b) {
    return tvk_map_do_these_match(a, b) != 0;
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

// In the second pass of a replace: what the first one marked as removed is there again, with a new content.
void take_back_removal(tvk_map_ctx ctx, Node *node) {
    if (node != nullptr && ctx->state->replace_converted != 0 && node->operation == TVK_OPERATION_REMOVE) {
        tvk_map_datatree_set_operation(node, TVK_OPERATION_REPLACE);
    }
}

// The node at path below the current entry, or below target where path does not lead there; null when it is missing.
Node *find(tvk_map_ctx ctx, Node *target, const char *path) {
    const char *trim_path = ctx->state->pending_trim_path;
    const Node *node = target;
    if (trim_path != nullptr && std::strncmp(path, trim_path, std::strlen(trim_path)) == 0) {
        node = current_entry(ctx);
        path += std::strlen(trim_path);
    }
    char component[64];
    while (*(path += std::strspn(path, "/")) != '\0') {
        const std::size_t length = std::strcspn(path, "/");
        if (strncpy_s(component, sizeof component, path, length) != 0 ||
            tvk_map_datatree_get_subtree(node, &node, component, nullptr, nullptr) != TVK_OK) {
            return nullptr;
        }
        path += length;
    }
    return const_cast<Node *>(node);
}

void drop_children(Node *node, int32_t kept) {
    for (int32_t i = kept; i < node->subtree_count; ++i) {
        qidl_tvk_datatree_free_ext(&node->subtrees[i], tvk_gpb_free, nullptr, 0);
    }
    if (node->subtree_count > kept) {
        node->subtree_count = kept;
    }
}

const char *convert(const ValuePair *values, const char *value) {
    for (const ValuePair *pair = values; pair->openconfig != nullptr; ++pair) {
        if (equal(pair->openconfig, value)) {
            return pair->native;
        }
    }
    return nullptr;
}

qerrno apply(tvk_map_ctx ctx, const Node *node, Node *target, const LeafRule &rule) {
    if (rule.process != nullptr) {
        return rule.process(ctx, node, target);
    }
    if (rule.path == nullptr) {
        return TVK_OK;
    }
    if (tvk_map_is_request_delete(node) != 0) {
        return add_value(ctx, node, target, rule.path, nullptr);
    }
    const char *value = rule.values != nullptr ? convert(rule.values, node->data) : node->data;
    return value != nullptr ? add_value(ctx, node, target, rule.path, value) : refuse(ctx, node, TVK_ERR_INVALID);
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
        take_back_removal(ctx, find(ctx, target, path));
        return TVK_OK;
    }
    const qerrno status = add_value(ctx, node, target, path, nullptr);
    return status == TVK_OK ? TVK_SKIP_NODE : status;
}

qerrno add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value) {
    take_back_removal(ctx, find(ctx, target, path));
    Node *native = nullptr;
    const qerrno status = tvk_map_datatree_add_path(ctx, target, path, kNativeNs, value, nullptr, &native, 0);
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

qerrno map_leaf(tvk_map_ctx ctx, const Node *node, Node *target, const LeafRules &rules) {
    for (std::size_t i = 0; i < rules.count; ++i) {
        if (equal(rules.rules[i].tag, node->tag)) {
            return apply(ctx, node, target, rules.rules[i]);
        }
    }
    return refuse(ctx, node, TVK_ERR_UNSUPPORTED);
}

qerrno map_all_leaves(tvk_map_ctx ctx, const Node *node, Node *target, const LeafRules &rules) {
    qerrno status = TVK_OK;
    for (std::size_t i = 0; i < rules.count && status == TVK_OK; ++i) {
        status = apply(ctx, node, target, rules.rules[i]);
    }
    return status;
}

qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status) {
    kel_named_free(ctx->state->error_node_tag);
    ctx->state->error_node_tag = tvk_strdup(node->tag, "openconfig_interfaces");
    tvk_oc_error_path(ctx);
    return status;
}

qerrno refuse_child(tvk_map_ctx ctx, const Node *node, Node *) {
    // In a propagation this is the node above, which needs nothing here.
    return ctx->state->delete_walk_active == 1 ? TVK_OK : refuse(ctx, node, TVK_ERR_UNSUPPORTED);
}

}  // namespace interfaces
