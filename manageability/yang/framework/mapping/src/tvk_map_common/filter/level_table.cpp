// The container phase's table of the levels from the root to the present node, and the walks up the table.
#include <algorithm>

#include "tvk_map_common/filter/filter_node.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_filter.h"

namespace tvk {

namespace {

// Returns the entries of the table from 0 to level, but not beyond its last one.
template <typename Level>
std::span<Level> levels_to(Level *levels, std::uint32_t level) {
    constexpr std::uint32_t kLast = TVK_MAP_MAX_FILTER_LEVELS - 1;
    return levels != nullptr ? std::span<Level>{levels, std::min(level, kLast) + 1} : std::span<Level>{};
}

// Returns whether something is left at a level, so that it stays. The key leaves of a list entry do not count.
bool is_left(const tvk_map_cnt_hier &level) {
    if (level.kch > 0) {
        return true;
    }
    if (level.tp != TVK_NODE_TYPE_LIST) {
        return level.ch > level.dch;
    }
    return level.ksn > 0 || level.kmn > 0 || std::int64_t{level.kn} + level.dch < level.ch;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

uint32_t tvk_map_mark_visit_parent(tvk_map_ctx ctx, tvk_map_cnt_hier_stack_t *levels, uint32_t level) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "uint32_t tvk_map_mark_visit_parent(tvk_map_ctx, tvk_map_cnt_hier_stack_t *, uint32_t)");
    if (ctx->dfs_trace != 0) {
        print_stack(ctx, levels, level, "mark_start");
    }
    const std::span<tvk_map_cnt_hier> table = levels_to(levels, level);
    for (std::size_t i = table.size(); i > 1 && !is_left(table[i - 1]); --i) {
        ++table[i - 2].dch;
        if (table[i - 1].node != nullptr) {
            set_verdict(*table[i - 1].node, TVK_NODE_KIND_NONE);
        }
    }
    if (ctx->dfs_trace != 0) {
        print_stack(ctx, levels, level, "mark_end");
    }
    return 1;
}

uint32_t tvk_map_mark_visit_parent_mark_kc(tvk_map_ctx ctx, tvk_map_cnt_hier_stack_t *levels, uint32_t level) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "uint32_t tvk_map_mark_visit_parent_mark_kc(tvk_map_ctx, tvk_map_cnt_hier_stack_t *, uint32_t)");
    if (ctx->dfs_trace != 0) {
        print_stack(ctx, levels, level, "kc_start");
    }
    const std::span<tvk_map_cnt_hier> table = levels_to(levels, level);
    for (std::size_t i = table.size(); i > 1; --i) {
        ++table[i - 2].kch;
        if (table[i - 1].node != nullptr) {
            keep_node(*table[i - 1].node);
        }
    }
    if (ctx->dfs_trace != 0) {
        print_stack(ctx, levels, level, "kc_end");
    }
    return 1;
}

void print_stack(tvk_map_ctx ctx, const tvk_map_cnt_hier_stack_t *levels, uint32_t level, const char *label) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "void print_stack(tvk_map_ctx, const tvk_map_cnt_hier_stack_t *, uint32_t, const char *)");
    TVK_TRC(ctx, "\n stack-%s\n", text_or_null(label));
    for (const tvk_map_cnt_hier &e : levels_to(levels, level)) {
        TVK_TRC(ctx, "\n ----stack:lvl- %d/%s, ch:%d, kch:%d, dch:%d, tp:%d, kn:%d,ksn:%d,kmn=%d, tra_st:%d", e.lvl,
                text_or_null(e.node != nullptr ? e.node->tag : nullptr), e.ch, e.kch, e.dch, e.tp, e.kn, e.ksn, e.kmn,
                static_cast<int>(e.node != nullptr ? verdict(*e.node) : 0));
    }
    TVK_TRC(ctx, "\n");
}
