// The work stack and the push functions of the phases.
#include "tvk_map_common/filter/work_stack.h"

#include "tvk_map_common/internal/node.h"

namespace tvk {

namespace {

constexpr char kSchemaTag[] = "TVK DFS ELEM";
constexpr char kPhaseTag[] = "TVK DFS Mark ELEM";

std::uint32_t push(kel_queue *stack, const tvk_map_dfs_elem &contents, const char *tag) {
    if (stack == nullptr) {
        return 0;
    }
    auto *element = static_cast<tvk_map_dfs_elem *>(kel_named_calloc_(1, sizeof(tvk_map_dfs_elem), tag, 0));
    if (element == nullptr) {
        return 0;
    }
    *element = contents;
    kel_queue_requeue(stack, element);
    return 1;
}

bool may_pair(const Node *source, const Node *target, int force) {
    return source != nullptr && target != nullptr && (force == 1 || same_text(source->tag, target->tag));
}

}  // namespace

}  // namespace tvk

using namespace tvk;

uint32_t tvk_map_dfs_stack_init(struct kel_queue *stack) {
    return kel_queue_init(stack, TVK_MAP_DFS_STACK_CAPACITY);
}

void tvk_map_dfs_stack_free(struct kel_queue *stack) {
    while (kel_queue_empty(stack) == 0) {
        kel_named_free(kel_queue_dequeue(stack));
    }
}

uint32_t tvk_map_dfs_stack_push(tvk_map_ctx, struct kel_queue *stack, struct qidl_tvk_datatree *node,
                                char *const *tokens, int32_t index, uint32_t level) {
    if (node == nullptr || tokens == nullptr || index < 0 || !same_text(node->tag, tokens[index])) {
        return 0;
    }
    return push(stack, {.link = nullptr, .level = level, .node = node, .pair = {.index = index}, .extra = 0},
                kSchemaTag);
}

uint32_t tvk_map_dfs_mark_stack_push(tvk_map_ctx ctx, struct kel_queue *stack, struct qidl_tvk_datatree *source,
                                     struct qidl_tvk_datatree *target, uint32_t level, int force) {
    return tvk_map_dfs_con_stack_push(ctx, stack, source, target, level, 0, force);
}

uint32_t tvk_map_dfs_con_stack_push(tvk_map_ctx, struct kel_queue *stack, struct qidl_tvk_datatree *source,
                                    struct qidl_tvk_datatree *target, uint32_t level, uint32_t extra, int force) {
    if (!may_pair(source, target, force)) {
        return 0;
    }
    return push(stack, {.link = nullptr, .level = level, .node = source, .pair = {.node = target}, .extra = extra},
                kPhaseTag);
}

uint32_t tvk_map_dfs_sweep_stack_push(tvk_map_ctx, struct kel_queue *stack, struct qidl_tvk_datatree *node,
                                      uint32_t level) {
    if (node == nullptr) {
        return 0;
    }
    return push(stack, {.link = nullptr, .level = level, .node = node, .pair = {.node = nullptr}, .extra = 0},
                kPhaseTag);
}
