// Closing the gaps that a sweep leaves in a child array.
#include "tvk_map_common/index/children_index.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_filter.h"

using tvk::Node;

namespace {

void clear(Node &record) {
    tvk::free_contents(record);
    tvk::reset(record);
}

// A gap, cleared, takes over what record holds, as it stands: what is kept needs no copy, and cannot get lost for want
// of memory.
void move(Node &gap, Node &record) {
    gap = record;
    tvk::reset(record);
}

}  // namespace

uint32_t tvk_map_datatree_remove_null_subtrees(tvk_map_ctx ctx, struct qidl_tvk_datatree *node) {
    if (node == nullptr) {
        return 0;
    }
    tvk::forget_index(ctx);
    const std::span<Node> children = tvk::children(*node);
    std::size_t kept = 0;  // also the first gap, once there is one
    for (Node &child : children) {
        if (!tvk::has(child, TVK_HAS_TAG)) {
            clear(child);
            continue;
        }
        if (Node &slot = children[kept]; &slot != &child) {
            move(slot, child);
        }
        ++kept;
    }
    if (kept < children.size()) {
        node->subtree_count = static_cast<std::int32_t>(kept);
        tvk::set_present(*node, TVK_HAS_SUBTREES);
    }
    return 0;
}
