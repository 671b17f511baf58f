// Edits and answers leaves by their rules.
#include "leaf_rules.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "tvk_string.h"

namespace mapping {

namespace {

// Returns the rule of the leaf of that tag, or null.
const LeafRule *find_rule(const LeafContainer &container, const char *tag) {
    const bool is_state = container.enter == nullptr;
    for (const LeafRule &rule : container.rules) {
        if ((is_state || !rule.in_state_alone) && equal(rule.tag, tag)) {
            return &rule;
        }
    }
    return nullptr;
}

const char *ns_of(const LeafContainer &container, const LeafRule &rule) {
    return rule.ns != nullptr ? rule.ns : container.ns;
}

// ---- Edits ----

qerrno refuse_value(tvk_map_ctx ctx, const Node *leaf, const char *name) {
    return refuse(ctx, leaf, TVK_ERR_INVALID, "%s is no %s", Quoted(leaf->data).text, name);
}

// Sets value to the native form of the value of a leaf. Refuses a value that the model or the native side does not
// have.
qerrno convert(tvk_map_ctx ctx, const Node *leaf, const LeafRule &rule, Scratch &scratch, const char *&value) {
    const char *given = leaf->data != nullptr ? leaf->data : "";
    if (!is_of_module(*leaf, rule.value_ns)) {
        return refuse_identity(ctx, leaf, rule.value_ns);
    }
    if (rule.type != nullptr && !rule.type->accepts(given)) {
        return refuse_value(ctx, leaf, rule.type->name);
    }
    value = given;
    if (rule.values != nullptr) {
        value = native_value(rule.values, given);
        return value != nullptr ? TVK_OK : refuse_choice(ctx, leaf, rule.values);
    }
    if (rule.to_native != nullptr) {
        value = rule.to_native(given, scratch);
        return value != nullptr ? TVK_OK : refuse_value(ctx, leaf, rule.native_form);
    }
    if (rule.type != nullptr && rule.type->canonical != nullptr) {
        value = rule.type->canonical(given, scratch);
    }
    return TVK_OK;
}

// Edits a leaf by its rule. node is the leaf, or, in a deletion, the container around it.
qerrno edit_leaf(tvk_map_ctx ctx, const Node *node, Node *target, const LeafRule &rule) {
    Scratch scratch;
    const char *value = nullptr;
    if (tvk_map_is_request_delete(node) == 0) {
        if (const qerrno status = convert(ctx, node, rule, scratch, value); status != TVK_OK) {
            return status;
        }
    }
    if (rule.edit != nullptr) {
        return rule.edit(ctx, node, target, value);
    }
    return rule.path != nullptr ? add_value(ctx, node, target, rule.path, value) : TVK_OK;
}

// Checks that each leaf is of the model, stands once, and holds no elements.
qerrno check_leaves(tvk_map_ctx ctx, const Node *node, const LeafContainer &container) {
    uint32_t seen = 0;
    for (const Node &leaf : children_of(node)) {
        const LeafRule *rule = find_rule(container, leaf.tag);
        if (rule == nullptr) {
            continue;
        }
        if (!is_of_model(ctx, leaf, ns_of(container, *rule))) {
            return refuse_namespace(ctx, &leaf, ns_of(container, *rule));
        }
        if (!children_of(&leaf).empty()) {
            return refuse(ctx, &leaf, TVK_ERR_INVALID, "it holds elements, and is a leaf");
        }
        const uint32_t bit = 1U << (rule - container.rules.data());
        if ((seen & bit) != 0) {
            return refuse(ctx, &leaf, TVK_ERR_INVALID, "it is given twice");
        }
        seen |= bit;
    }
    return TVK_OK;
}

// ---- Reads ----

// Returns the value that the native tree has for the leaf, or null.
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
        return leaf != nullptr && rule.type == &kString ? "" : nullptr;
    }
    if (rule.values != nullptr) {
        return openconfig_value(rule.values, leaf->data);
    }
    return rule.from_native != nullptr ? rule.from_native(leaf->data, scratch) : leaf->data;
}

// Tells whether the client gets a value, by the with-defaults mode that it asked for. When it asked for none, it gets
// the values that were set.
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

// Joins texts without snprintf, since this runs for each leaf of each entry. They are this mapping's own and fit.
void join(char (&path)[TVK_MAP_MAX_PATH], std::initializer_list<const char *> parts) {
    std::size_t length = 0;
    for (const char *part : parts) {
        const std::size_t part_length = std::min(std::strlen(part), sizeof path - 1 - length);
        std::memcpy(path + length, part, part_length);
        length += part_length;
    }
    path[length] = '\0';
}

// Answers a leaf by its rule. is_match says that the filter names a value, which the leaf has.
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
    const bool is_in_list = container.list != nullptr;
    join(path, {is_in_list ? container.list->path : "", is_in_list ? "/" : "", container.path, "/", rule.tag});
    return answer_value(ctx, target,
                        {container.list, path, container.ns, ns_of(container, rule), told, rule.value_ns, is_tagged});
}

// Tells whether each leaf has the value that the filter names for it, set or by default. A leaf that is not mapped has
// none.
bool content_matches(tvk_map_ctx ctx, const Node *node, const LeafContainer &container) {
    for (const Node &leaf : children_of(node)) {
        if (!tvk::has(leaf, TVK_HAS_DATA)) {
            continue;
        }
        const LeafRule *rule = find_rule(container, leaf.tag);
        if (rule == nullptr || !is_of_model(ctx, leaf, ns_of(container, *rule)) ||
            !is_of_module(leaf, rule->value_ns)) {
            return false;
        }
        Scratch scratch;
        const char *value = read_leaf(ctx, container, *rule, scratch);
        if (!equal(value != nullptr ? value : rule->default_value, leaf.data)) {
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

qerrno refuse_choice(tvk_map_ctx ctx, const Node *leaf, const ValuePair *values) {
    char list[400] = "";
    for (const ValuePair *pair = values; pair->openconfig != nullptr; ++pair) {
        tvk_strcat_s(__func__, list, sizeof list, pair == values ? "" : ", ");
        tvk_strcat_s(__func__, list, sizeof list, pair->openconfig);
    }
    return refuse(ctx, leaf, TVK_ERR_INVALID, "%s is none of %s", Quoted(leaf->data).text, list);
}

qerrno refuse_identity(tvk_map_ctx ctx, const Node *leaf, const char *ns) {
    return refuse(ctx, leaf, TVK_ERR_INVALID, "%s is no identity of '%s'", Quoted(leaf->data).text, ns);
}

qerrno settle_container(tvk_map_ctx ctx, const Node *node, Node *target, const char *path) {
    const bool is_delete = tvk_map_is_request_delete(node) != 0;
    const bool is_create = tvk::has_operation(*node, TVK_OPERATION_CREATE);
    if (!is_delete && !is_create) {
        take_back_removal(find(current_node(ctx, target), path));
        return TVK_OK;
    }
    const qerrno status = add_value(ctx, node, target, path, nullptr);
    return status == TVK_OK && is_delete ? TVK_SKIP_NODE : status;
}

qerrno enter_leaf_container(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target,
                            const LeafContainer &container) {
    const bool is_state = container.enter == nullptr;
    const bool propagating = ctx->state->delete_walk_active == 1;
    if (!is_read(ctx)) {
        if (is_state) {
            const qerrno status =
                propagating ? TVK_OK : leave_unmapped(ctx, node, "it holds state, which cannot be edited");
            return status == TVK_OK ? TVK_SKIP_NODE : status;
        }
        const qerrno status = propagating ? TVK_OK : check_leaves(ctx, node, container);
        return status == TVK_OK ? container.enter(ctx, node, child_count, target) : status;
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
    if (!is_read(ctx)) {
        return rule != nullptr ? edit_leaf(ctx, leaf, target, *rule) : leave_unmapped(ctx, leaf);
    }
    if (rule == nullptr || !is_of_model(ctx, *leaf, ns_of(container, *rule))) {
        return TVK_OK;  // a node that the model does not know selects nothing
    }
    return answer_leaf(ctx, target, container, *rule, tvk::has(*leaf, TVK_HAS_DATA));
}

qerrno handle_all_leaves(tvk_map_ctx ctx, const Node *node, Node *target, const LeafContainer &container) {
    qerrno status = TVK_OK;
    for (const LeafRule &rule : container.rules) {
        if (status == TVK_OK && find_rule(container, rule.tag) == &rule) {
            status =
                is_read(ctx) ? answer_leaf(ctx, target, container, rule, false) : edit_leaf(ctx, node, target, rule);
        }
    }
    return status;
}

qerrno enter_read(tvk_map_ctx ctx) {
    if (ctx->state->delete_walk_active == 1) {
        ctx->state->walk_flags |= TVK_WALK_ALL_CHILDREN;
    }
    return TVK_OK;
}

qerrno handle_unmapped(tvk_map_ctx ctx, const Node *node, Node *) {
    return is_read(ctx) || ctx->state->delete_walk_active == 1 ? TVK_OK : leave_unmapped(ctx, node);
}

}  // namespace mapping
