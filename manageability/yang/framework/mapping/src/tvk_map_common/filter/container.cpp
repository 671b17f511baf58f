// The container phase: it walks source and target side by side, level by level.
//
// The steps decide and mark. Their decisions are traced here, under the name by which the phase is known.
#include "tvk_map_common/filter/container_element.h"
#include "tvk_map_common/filter/filter_node.h"
#include "tvk_map_common/filter/work_stack.h"
#include "tvk_map_common/internal/log.h"

namespace tvk {

namespace {

void tvk_map_dfs_process_con(tvk_map_ctx ctx, kel_queue *stack, const tvk_map_dfs_elem &element,
                             tvk_map_cnt_hier_stack_t *levels) {
    if (ContainerElement::passes_over(element)) {
        return;
    }
    ContainerElement step{ctx, element, levels};
    for (const Node &child : step.source_children()) {
        const CheckedChild checked = step.check(child);
        if (checked.key != nullptr && (checked.result == Check::kKeyFailed || ctx->dfs_trace != 0)) {
            TVK_TRC(ctx, "\n src_key: %s, tgt_key:%s", text_or_null(child.data), text_or_null(checked.key->data));
        }
        switch (checked.result) {
            case Check::kPassed:
                break;
            case Check::kAbandoned:
                return;
            case Check::kKeyFailed:
                TVK_TRC(ctx, "\n delete trigger key does not match ");
                step.drop_upwards();
                return;
            case Check::kContentFailed:
                TVK_TRC(ctx, "\n delete trigger cnt does not match");
                step.drop_upwards();
                return;
        }
    }
    step.keep_for_matched_keys();
    step.store_key_counts();
    if (ctx->dfs_trace != 0) {
        const ChildCounts &counts = step.counts();
        TVK_TRC(ctx,
                "\n Child stats: %s, lvl: %d, src_tot:%d, cont:%d,sel:%d, mat:%d,key:%d, key_sel:%d key_match:%d\n",
                text_or_null(step.source().tag), static_cast<int>(element.level), counts.total, counts.containment,
                counts.selection, counts.content_match, counts.key, counts.key_selection, counts.key_match);
    }
    if (!step.drop_unnamed(stack)) {
        return;
    }
    if (step.is_all_dropped()) {
        set_verdict(step.target(), TVK_NODE_KIND_NONE);
        TVK_TRC(ctx, "\n delete trigger all nodes dropped");
        step.drop_upwards();
    } else {
        keep_node(step.target());
    }
    if (ctx->dfs_trace != 0) {
        TVK_TRC(ctx, "\n              : drp:%d, tgt_cont:%d\n", step.dropped(), step.target_children());
    }
}

NamedBlock<tvk_map_cnt_hier_stack_t> make_level_table() {
    void *table =
        kel_named_calloc_(TVK_MAP_MAX_FILTER_LEVELS, sizeof(tvk_map_cnt_hier_stack_t), "TVK DFS Mark ELEM", 0);
    return NamedBlock<tvk_map_cnt_hier_stack_t>{static_cast<tvk_map_cnt_hier_stack_t *>(table)};
}

}  // namespace

}  // namespace tvk

using namespace tvk;

uint32_t tvk_map_dfs_filter_con(tvk_map_ctx ctx, struct qidl_tvk_datatree *source, struct qidl_tvk_datatree *target) {
    if (ctx == nullptr || source == nullptr || target == nullptr) {
        return 0;
    }
    WorkStack stack;
    if (tvk_map_dfs_con_stack_push(ctx, stack.get(), source, target, 1, 0, 1) == 0) {
        return 0;
    }
    const auto levels = make_level_table();
    if (levels == nullptr) {
        return 0;
    }
    return stack.work_off([&](const tvk_map_dfs_elem &element) {
        tvk_map_dfs_process_con(ctx, stack.get(), element, levels.get());
        return 0u;
    });
}
