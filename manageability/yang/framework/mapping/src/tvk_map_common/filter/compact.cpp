#include "tvk_map_common/filter/compact.h"

#include "tvk_map_filter.h"

uint32_t tvk_map_datatree_remove_null_subtrees(tvk_map_ctx ctx, struct qidl_tvk_datatree *node) {
    if (node != nullptr) {
        tvk::compact(ctx, *node, [](const tvk::Node &child) { return tvk::has(child, TVK_HAS_TAG); });
    }
    return 0;
}
