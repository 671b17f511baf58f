// Dropping the children without a tag.
#include "tvk_map_common/datatree/children.h"

#include "tvk_map_filter.h"

using namespace tvk;

uint32_t tvk_map_datatree_remove_null_subtrees(tvk_map_ctx ctx, struct qidl_tvk_datatree *node) {
    if (node != nullptr) {
        drop_children_unless(ctx, *node, [](const Node &child) { return has(child, TVK_HAS_TAG); });
    }
    return 0;
}
