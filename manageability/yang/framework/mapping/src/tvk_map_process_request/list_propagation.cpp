// Propagating a delete or read below a list entry.
#include "tvk_map_process_request/list_propagation.h"

#include "tvk_map_common/state/instance_stack.h"

namespace tvk {

qerrno propagate_keys_alone(const ListEntry &entry, Node &node, KeyDelete key_delete) {
    const PropagationScope scope{entry.ctx};
    const KeyStateScope keys{entry.ctx, key_delete != KeyDelete::kNone, TVK_LIST_KEY_PROPAGATING};
    if (is_delete(entry.node)) {
        set_operation(node, TVK_OPERATION_REMOVE);
    }
    const std::span<Node> key_leaves = children(node);
    if (entry.ctx->state != nullptr &&
        !push_borrowed(entry.ctx, key_leaves.data(), static_cast<std::uint32_t>(key_leaves.size()))) {
        return TVK_ERR_NO_MEMORY;  // without its keys nobody could tell which entry is meant
    }
    qerrno status = TVK_OK;
    const DetachedChildren detached = detach_children(node);
    for (const tmap_child_entry &handler : entry.handlers()) {
        if ((handler.flags & TMAP_CHILD_KEY) == 0 && takes_part_in_propagation(entry.ctx, handler)) {
            status = call(handler.handler, entry.ctx, entry.node, entry.target);
        }
    }
    call(entry.info.child_handler, entry.ctx, entry.node, entry.target);
    give_back_children(entry.ctx, node, detached);
    tvk_map_util_itree_stack_pop(entry.ctx);
    return status;
}

void propagate_childless(const ListEntry &entry, Node &node) {
    const PropagationScope scope{entry.ctx};
    const KeyStateScope keys{entry.ctx, !is_working_on_keys(entry.ctx), TVK_LIST_KEY_PROPAGATING};
    const bool is_deleted = node.operation == TVK_OPERATION_DELETE;
    if (is_deleted) {
        node.operation = TVK_OPERATION_REMOVE;
    }
    for (const tmap_child_entry &handler : entry.handlers()) {
        if (takes_part_in_propagation(entry.ctx, handler)) {
            call(handler.handler, entry.ctx, entry.node, entry.target);
        }
    }
    call(entry.info.child_handler, entry.ctx, entry.node, entry.target);
    if (is_deleted) {
        node.operation = TVK_OPERATION_DELETE;
    }
}

}  // namespace tvk
