#include "leaf_rules.h"

#include <cstdio>

namespace mapping {

namespace {

const char *native_form(const LeafRule &rule, const char *value, Scratch &scratch) {
    if (rule.values != nullptr) {
        return native_value(rule.values, value);
    }
    return rule.to_native != nullptr && value != nullptr ? rule.to_native(value, scratch) : value;
}

const LeafRule *find_rule(const LeafContainer &container, const char *tag) {
    for (std::size_t i = 0; i < container.rule_count; ++i) {
        if (equal(container.rules[i].tag, tag)) {
            return &container.rules[i];
        }
    }
    return nullptr;
}

qerrno edit_leaf(tvk_map_ctx ctx, const Node *node, Node *target, const LeafRule &rule) {
    if (rule.edit != nullptr) {
        return rule.edit(ctx, node, target);
    }
    if (rule.value_ns != nullptr) {
        if (const qerrno status = tvk_map_validate_data_ns(ctx, node, text(rule.value_ns), 1); status != TVK_OK) {
            return status;
        }
    }
    if (rule.path == nullptr) {
        return TVK_OK;
    }
    if (tvk_map_is_request_delete(node) != 0) {
        return add_value(ctx, node, target, rule.path, nullptr);
    }
    Scratch scratch;
    const char *value = native_form(rule, node->data, scratch);
    return value != nullptr ? add_value(ctx, node, target, rule.path, value) : refuse(ctx, node, TVK_ERR_INVALID);
}

// The value that the native tree has for the leaf; null for none.
const char *read_leaf(tvk_map_ctx ctx, const LeafContainer &container, const LeafRule &rule, Scratch &scratch) {
    const Node *native = container.list != nullptr ? native_entry(ctx, *container.list) : native_root(ctx);
    if (rule.read != nullptr) {
        return rule.read(ctx, native);
    }
    if (rule.path == nullptr) {
        return entry_key(ctx, *container.list);
    }
    const Node *leaf = find(native, rule.path);
    if (leaf == nullptr || leaf->data == nullptr) {
        return nullptr;
    }
    if (rule.values != nullptr) {
        return openconfig_value(rule.values, leaf->data);
    }
    return rule.from_native != nullptr ? rule.from_native(leaf->data, scratch) : leaf->data;
}

// Whether a value is told to the client, by the with-defaults mode that it asked for. A server that is asked for
// none tells what was set.
bool is_told(tvk_map_ctx ctx, const LeafRule &rule, const char *value) {
    switch (tvk_map_is_with_defaults_enabled(ctx)) {
        case TVK_WITH_DEFAULTS_REPORT_ALL:
        case TVK_WITH_DEFAULTS_REPORT_ALL_TAGGED:
            return value != nullptr || rule.default_value != nullptr;
        case TVK_WITH_DEFAULTS_TRIM:
            return value != nullptr && !equal(value, rule.default_value);
        default:
            return value != nullptr;
    }
}

qerrno answer_leaf(tvk_map_ctx ctx, Node *target, const LeafContainer &container, const LeafRule &rule, bool is_match) {
    Scratch scratch;
    const char *value = read_leaf(ctx, container, rule, scratch);
    if (!is_told(ctx, rule, value) && !(is_match && rule.default_value != nullptr)) {
        return TVK_OK;
    }
    const char *told = value != nullptr ? value : rule.default_value;
    const bool is_tagged =
        tvk_map_is_with_defaults_enabled(ctx) == TVK_WITH_DEFAULTS_REPORT_ALL_TAGGED && equal(told, rule.default_value);
    char path[TVK_MAP_MAX_PATH];
    std::snprintf(path, sizeof path, "%s%s%s/%s", container.list != nullptr ? container.list->path : "",
                  container.list != nullptr ? "/" : "", container.path, rule.tag);
    const char *ns = rule.ns != nullptr ? rule.ns : container.ns;
    return answer_value(ctx, target, {container.list, path, container.ns, ns, told, rule.value_ns, is_tagged});
}

// A value in the filter must be the one that the leaf has, set or by default.
bool content_matches(tvk_map_ctx ctx, const Node *node, const LeafContainer &container) {
    for (const Node &leaf : children_of(node)) {
        const LeafRule *rule = find_rule(container, leaf.tag);
        if ((leaf.presence & TVK_HAS_DATA) == 0 || rule == nullptr) {
            continue;
        }
        Scratch scratch;
        const char *value = read_leaf(ctx, container, *rule, scratch);
        if (!equal(value != nullptr ? value : rule->default_value, leaf.data) || !is_of_module(leaf, rule->value_ns)) {
            return false;
        }
    }
    return true;
}

bool is_get_config(tvk_map_ctx ctx) {
    return ctx->state->request->type == TVK_REQUEST_GET_CONFIG;
}

}  // namespace

const char *native_value(const ValuePair *values, const char *openconfig) {
    for (const ValuePair *pair = values; pair->openconfig != nullptr; ++pair) {
        if (equal(pair->openconfig, openconfig)) {
            return pair->native;
        }
    }
    return nullptr;
}

const char *openconfig_value(const ValuePair *values, const char *native) {
    for (const ValuePair *pair = values; pair->openconfig != nullptr; ++pair) {
        if (equal(pair->native, native)) {
            return pair->openconfig;
        }
    }
    return nullptr;
}

qerrno settle_container(tvk_map_ctx ctx, const Node *node, Node *target, const char *path) {
    if (tvk_map_is_request_delete(node) == 0) {
        take_back_removal(find(current_node(ctx, target), path));
        return TVK_OK;
    }
    const qerrno status = add_value(ctx, node, target, path, nullptr);
    return status == TVK_OK ? TVK_SKIP_NODE : status;
}

qerrno enter_leaf_container(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target,
                            const LeafContainer &container) {
    const bool is_state = container.enter == nullptr;
    const bool propagating = ctx->state->delete_walk_active == 1;
    if (!is_read(ctx)) {
        if (!is_state) {
            return container.enter(ctx, node, child_count, target);
        }
        return propagating ? TVK_SKIP_NODE : refuse(ctx, node, TVK_ERR_UNSUPPORTED);
    }
    if (container.list != nullptr && native_entry(ctx, *container.list) == nullptr) {
        return TVK_SKIP_NODE;
    }
    if ((is_state && is_get_config(ctx)) || (!propagating && !content_matches(ctx, node, container))) {
        return TVK_SKIP_NODE;
    }
    return enter_read(ctx);
}

qerrno handle_leaf(tvk_map_ctx ctx, const Node *leaf, Node *target, const LeafContainer &container) {
    const LeafRule *rule = find_rule(container, leaf->tag);
    if (is_read(ctx)) {
        // What the model does not know selects nothing.
        return rule != nullptr ? answer_leaf(ctx, target, container, *rule, (leaf->presence & TVK_HAS_DATA) != 0)
                               : TVK_OK;
    }
    return rule != nullptr ? edit_leaf(ctx, leaf, target, *rule) : refuse(ctx, leaf, TVK_ERR_UNSUPPORTED);
}

qerrno handle_all_leaves(tvk_map_ctx ctx, const Node *node, Node *target, const LeafContainer &container) {
    qerrno status = TVK_OK;
    for (std::size_t i = 0; i < container.rule_count && status == TVK_OK; ++i) {
        status = is_read(ctx) ? answer_leaf(ctx, target, container, container.rules[i], false)
                              : edit_leaf(ctx, node, target, container.rules[i]);
    }
    return status;
}

qerrno enter_read(tvk_map_ctx ctx) {
    if (ctx->state->delete_walk_active == 1) {
        ctx->state->walk_flags |= TVK_WALK_ALL_CHILDREN;
    }
    return TVK_OK;
}

qerrno refuse_child(tvk_map_ctx ctx, const Node *node, Node *) {
    const bool is_fine = is_read(ctx) || ctx->state->delete_walk_active == 1;
    return is_fine ? TVK_OK : refuse(ctx, node, TVK_ERR_UNSUPPORTED);
}

}  // namespace mapping
