// The stack of instance arrays, one item for each list level that the walk is inside.
#include "tvk_map_common/state/instance_stack.h"

#include "tvk_map_common/index/children_index.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_datatree.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

tvk_map_itree_stack *stack_of(tvk_map_ctx ctx) {
    return ctx != nullptr && ctx->state != nullptr ? ctx->state->itree_stack : nullptr;
}

bool is_list_instance(const tvk_map_itree_item &item) {
    return item.nodes != nullptr && item.node_count > 0 && item.borrowed == 0 &&
           same_text(item.nodes[0].tag, TVK_LIST_INSTANCE_TAG);
}

template <typename T>
T *allocate(const char *tag) {
    return static_cast<T *>(kel_named_calloc_(1, sizeof(T), tag, 0));
}

// Releases an unlinked item. An item without nodes is not released: its maker may still hold it.
void release_item(tvk_map_ctx ctx, tvk_map_itree_item *item) {
    if (item->nodes == nullptr) {
        return;
    }
    if (is_list_instance(*item)) {
        release_nodes(ctx, {item->nodes, item->node_count});
        kel_named_free(item->nodes);
    }
    kel_named_free(item);
}

static_assert(sizeof(struct tvk_map_itree_item) == 24, "an item is a record of 24 bytes");

bool push(tvk_map_ctx ctx, const tvk_map_itree_item &contents) {
    constexpr char kTag[] = "TVK_MAP";
    if (ctx == nullptr || ctx->state == nullptr) {
        return false;
    }
    tvk_map_itree_stack *&stack = ctx->state->itree_stack;
    TVK_ASSERT(stack == nullptr || stack->item_count < TVK_MAP_MAX_ITREE_ITEMS,
               "ctx->state->itree_stack->item_count < TVK_MAP_MAX_ITREE_ITEMS", kCommonSource,
               "qerrno tvk_map_util_itree_stack_push(tvk_map_ctx, struct qidl_tvk_datatree *, uint32_t, uintptr_t)");
    // A new stack record is kept only once it has its item, so that no empty one stays.
    NamedBlock<tvk_map_itree_stack> new_stack{stack == nullptr ? allocate<tvk_map_itree_stack>(kTag) : nullptr};
    tvk_map_itree_stack *target = stack != nullptr ? stack : new_stack.get();
    auto *item = target != nullptr ? allocate<tvk_map_itree_item>(kTag) : nullptr;
    if (item == nullptr) {
        return false;
    }
    *item = contents;
    target->items[target->item_count++] = item;
    static_cast<void>(new_stack.release());  // the state owns it now
    stack = target;
    return true;
}

}  // namespace

bool push_borrowed(tvk_map_ctx ctx, Node *nodes, std::uint32_t node_count) {
    return push(ctx, {nodes, node_count, 1, 0});
}

void release_instance_stack(tvk_map_ctx ctx) {
    while (tvk_map_util_itree_stack_size(ctx) > 0) {
        const tvk_map_itree_stack &stack = *ctx->state->itree_stack;
        tvk_map_itree_item *item = stack.items[stack.item_count - 1];
        const bool has_nodes = item->nodes != nullptr;
        tvk_map_util_itree_stack_pop(ctx);
        if (!has_nodes) {
            kel_named_free(item);
        }
    }
}

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_util_itree_stack_push(tvk_map_ctx ctx, struct qidl_tvk_datatree *nodes, uint32_t node_count,
                                     uintptr_t extra) {
    push(ctx, {nodes, node_count, 0, extra});
    return TVK_OK;
}

qerrno tvk_map_util_itree_stack_pop(tvk_map_ctx ctx) {
    if (tvk_map_itree_stack *stack = stack_of(ctx); stack != nullptr && stack->item_count > 0) {
        --stack->item_count;
        release_item(ctx, stack->items[stack->item_count]);
        stack->items[stack->item_count] = nullptr;
        if (stack->item_count == 0) {
            kel_named_free(stack);
            ctx->state->itree_stack = nullptr;
        }
    }
    // Leaving a list forgets the paths that were recorded in it.
    return tvk_map_clear_xpath_ctx(ctx);
}

qerrno tvk_map_util_itree_stack_peak(tvk_map_ctx ctx, struct tvk_map_itree_item **item) {
    const tvk_map_itree_stack *stack = stack_of(ctx);
    if (stack != nullptr && stack->item_count > 0 && item != nullptr) {
        *item = stack->items[stack->item_count - 1];
    }
    return TVK_OK;
}

qerrno tvk_map_util_itree_stack_peak_level(tvk_map_ctx ctx, uint32_t level, struct tvk_map_itree_item **item) {
    const tvk_map_itree_stack *stack = stack_of(ctx);
    if (stack == nullptr || item == nullptr) {
        return TVK_OK;
    }
    std::uint32_t counted = 0;
    for (std::uint32_t i = 0; i < stack->item_count; ++i) {
        tvk_map_itree_item *candidate = stack->items[i];
        if (is_list_instance(*candidate)) {
            continue;
        }
        counted += candidate->nodes != nullptr ? 1 : 0;
        if (counted == level) {
            *item = candidate;
            return TVK_OK;
        }
    }
    return TVK_OK;
}

uint32_t tvk_map_util_itree_stack_size(tvk_map_ctx ctx) {
    const tvk_map_itree_stack *stack = stack_of(ctx);
    return stack != nullptr ? stack->item_count : 0;
}
