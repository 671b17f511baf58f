// One pass over a list entry.
#include "tvk_map_process_request/list_pass.h"

#include "tvk_map_common/internal/log.h"
#include "tvk_map_process_request/list_keys.h"
#include "tvk_map_process_request/list_propagation.h"

namespace tvk {

namespace {

KeyDelete key_delete_of(const ListEntry &entry, const SeenChildren &seen) {
    if (!is_delete(entry.node) || is_working_on_keys(entry.ctx)) {
        return KeyDelete::kNone;
    }
    if (seen.are_keys_alone()) {
        return KeyDelete::kNamed;
    }
    return entry.is_childless() && is_propagating(entry.ctx) ? KeyDelete::kPropagated : KeyDelete::kNone;
}

qerrno call_list_handler(const ListEntry &entry, KeyDelete key_delete) {
    const KeyStateScope handler{entry.ctx, key_delete == KeyDelete::kNamed, TVK_LIST_KEY_IN_HANDLER};
    return call(entry.info.list_handler, entry.ctx, entry.node, entry.target);
}

// Returns the item that the list handler pushed; null when the stack is not higher than before.
const tvk_map_itree_item *find_item(tvk_map_ctx ctx, std::uint32_t former_size) {
    tvk_map_itree_item *item = nullptr;
    if (tvk_map_util_itree_stack_size(ctx) > former_size) {
        tvk_map_util_itree_stack_peak(ctx, &item);
    }
    return item;
}

// The data that stays the same while the entry and its instances are walked.
struct Pass {
    const ListEntry &entry;
    KeyDelete key_delete;
    SeenChildren &seen;
};

qerrno handle_child(const Pass &pass, Node &node, std::size_t position) {
    const ListEntry &entry = pass.entry;
    const Node &child = children(node)[position];
    if (child.tag == nullptr) {
        TVK_ERR_AS(kListParse, entry.ctx, "Tag name is not available!");
        return TVK_ERR_NOT_FOUND;
    }
    const tmap_child_entry *handler = find_child_handler(entry.ctx, entry.handlers(), child);
    if (handler == nullptr) {
        return handle_unclaimed_child(entry.ctx, child, entry.target, entry.info.unsupported_ns,
                                      entry.info.child_handler);
    }
    if ((handler->flags & TMAP_CHILD_KEY) != 0) {
        return handle_key_leaf(entry, *handler, node, position, pass.seen);
    }
    if ((build_flags(entry.ctx) & TVK_BUILD_REPLACE_REMOVING) != 0) {
        return TVK_OK;  // the removal goes by the keys alone
    }
    pass.seen.other = true;
    return call(handler->handler, entry.ctx, child, entry.target);
}

// Walks the entry itself, or an instance in its place. After a failure no further child is handled, but a node without
// children is still propagated.
qerrno walk_node(const Pass &pass, Node &node, qerrno status) {
    const ListEntry &entry = pass.entry;
    const bool has_children = !children(node).empty();
    for (std::size_t i = 0; status == TVK_OK && i < children(node).size(); ++i) {
        status = handle_child(pass, node, i);
    }
    if (!is_read_request(entry.ctx) && !is_delete(entry.node)) {
        return status;
    }
    if (!has_children) {
        propagate_childless(entry, node);
        return status;
    }
    const bool is_named_by_keys = pass.seen.are_keys_alone() && !pass.seen.empty_key;
    return status == TVK_OK && is_named_by_keys ? propagate_keys_alone(entry, node, pass.key_delete) : status;
}

// Walks one instance. The first one stands at the level of the entry itself, the others each at a level of their own.
qerrno walk_instance(const Pass &pass, const tvk_map_itree_item &item, std::uint32_t position) {
    const ListEntry &entry = pass.entry;
    Node &instance = item.nodes[position];
    bool pushed = false;
    if (position > 0) {
        pushed = tvk_map_add_to_node_hierarchy(entry.ctx, &instance, TVK_LEVEL_LIST) == TVK_OK;
        tvk_map_update_current_list_node(entry.ctx, entry.info.list_path);
    }
    if (item.extra != 0) {
        if (is_delete(entry.node)) {
            set_operation(instance, TVK_OPERATION_REMOVE);
        }
        reinterpret_cast<tmap_instance_fp>(item.extra)(entry.ctx, &instance, &entry.target, 0);
    }
    const qerrno status = walk_node(pass, instance, TVK_OK);
    if (pushed) {
        tvk_map_remove_from_node_hierarchy(entry.ctx, &instance);
    } else if (entry.ctx->state != nullptr && entry.ctx->state->create_node == &instance) {
        entry.ctx->state->create_node = nullptr;  // the node goes with its item
        entry.ctx->state->create_operation = 0;
    }
    return status;
}

// Walks the instances of item, or the entry itself when there is no item. status is the result of the list handler.
qerrno walk_instances(const Pass &pass, const tvk_map_itree_item *item, qerrno status) {
    const ListEntry &entry = pass.entry;
    if (status == TVK_SKIP_NODE) {
        return TVK_OK;
    }
    if (status == TVK_OK) {
        entry.ctx->list_operation = has(entry.node, TVK_HAS_OPERATION) ? entry.node.operation : 0u;
    }
    if (item == nullptr || status != TVK_OK) {
        return walk_node(pass, entry.node, status);
    }
    const std::uint32_t count = item->nodes != nullptr ? item->node_count : 0;
    for (std::uint32_t i = 0; i < count && status == TVK_OK; ++i) {
        status = walk_instance(pass, *item, i);
    }
    return status;
}

}  // namespace

qerrno make_pass(const ListEntry &entry, SeenChildren &seen, int &items) {
    const Pass pass{entry, key_delete_of(entry, seen), seen};
    qerrno status = TVK_OK;
    {
        const KeyStateScope keys{entry.ctx, pass.key_delete == KeyDelete::kPropagated, TVK_LIST_KEY_PROPAGATING};
        const std::uint32_t stack_size = tvk_map_util_itree_stack_size(entry.ctx);
        status = call_list_handler(entry, pass.key_delete);
        const tvk_map_itree_item *item = find_item(entry.ctx, stack_size);
        items += item != nullptr && item->nodes != nullptr ? 1 : 0;
        status = walk_instances(pass, item, status);
    }
    return status == TVK_OK ? add_missing_keys(entry, seen) : status;
}

}  // namespace tvk
