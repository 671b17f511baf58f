// The sweep: it drops what the marking phases did not keep.
#include <algorithm>

#include "tvk_map_common/datatree/children.h"
#include "tvk_map_common/filter/filter_node.h"
#include "tvk_map_common/filter/work_stack.h"
#include "tvk_map_filter.h"

namespace tvk {

namespace {

// Drops the children of a node that cannot be swept for want of memory: an answer may lack something, but it must not
// show too much. Children that the node does not claim to have are not shown, and stay.
void drop_children(tvk_map_ctx ctx, Node &node) {
    if (has(node, TVK_HAS_SUBTREES)) {
        drop_all_children(ctx, node);
    }
}

}  // namespace

}  // namespace tvk

using namespace tvk;

uint32_t tvk_map_dfs_process_sweep(tvk_map_ctx ctx, struct kel_queue *stack, const struct tvk_map_dfs_elem *element) {
    if (element == nullptr || element->node == nullptr) {
        return 0;
    }
    Node &node = *element->node;
    if (keeps_all(node)) {
        return 1;
    }
    // A child without a tag goes, too, but only when another child has to go.
    if (!std::ranges::all_of(children(node), is_kept)) {
        drop_children_unless(ctx, node, [](const Node &child) { return is_kept(child) && has(child, TVK_HAS_TAG); });
    }
    for (Node &child : children(node)) {
        if (verdict(child) == TVK_NODE_KIND_KN &&
            tvk_map_dfs_sweep_stack_push(ctx, stack, &child, element->level + 1) == 0) {
            drop_children(ctx, child);
        }
    }
    return 1;
}

uint32_t tvk_map_dfs_filter_sweep(tvk_map_ctx ctx, struct qidl_tvk_datatree *root) {
    if (ctx == nullptr || root == nullptr) {
        return 0;
    }
    WorkStack stack;
    if (keeps_all(*root)) {
        return 0;  // all below the root stays, with or without memory
    }
    if (tvk_map_dfs_sweep_stack_push(ctx, stack.get(), root, 1) == 0) {
        drop_children(ctx, *root);
    }
    return stack.work_off([&](const tvk_map_dfs_elem &element) {
        tvk_map_dfs_process_sweep(ctx, stack.get(), &element);
        return 0u;
    });
}
