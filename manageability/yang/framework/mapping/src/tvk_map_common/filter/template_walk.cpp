// The walk with the caller's push and processing functions, and the search for content match that uses it.
#include "tvk_map_common/filter/filter_node.h"
#include "tvk_map_common/filter/work_stack.h"
#include "tvk_map_filter.h"

using namespace tvk;

uint32_t tvk_map_dfs_template(tvk_map_ctx ctx, struct qidl_tvk_datatree *root, tvk_map_dfs_push_fp push,
                              tvk_map_dfs_process_fp process) {
    if (ctx == nullptr || root == nullptr || push == nullptr || process == nullptr) {
        return 0;
    }
    WorkStack stack;
    if (push(ctx, stack.get(), root, 1) == 0) {
        return 0;
    }
    return stack.work_off([&](const tvk_map_dfs_elem &element) { return process(ctx, stack.get(), &element); });
}

uint32_t tvk_map_dfs_process_con_node(tvk_map_ctx ctx, struct kel_queue *stack,
                                      const struct tvk_map_dfs_elem *element) {
    if (element == nullptr || element->node == nullptr) {
        return 0;
    }
    if (is_of_type(*element->node, TVK_NODE_TYPE_CONTENT_MATCH)) {
        return 1;
    }
    for (Node &child : children(*element->node)) {
        tvk_map_dfs_sweep_stack_push(ctx, stack, &child, element->level + 1);
    }
    return 0;
}

uint32_t tvk_map_con_fil_check_con_node(tvk_map_ctx ctx, struct qidl_tvk_datatree *root) {
    return tvk_map_dfs_template(ctx, root, tvk_map_dfs_sweep_stack_push, tvk_map_dfs_process_con_node);
}
