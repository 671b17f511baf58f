// Closing the gaps that dropped children leave in an array.
#ifndef TVK_MAP_FILTER_COMPACT_H
#define TVK_MAP_FILTER_COMPACT_H

#include "tvk_map_common/index/children_index.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"

namespace tvk {

// Empties the children that do not stay, and moves the others up. What stays needs no copy, and cannot get lost for
// want of memory. The array keeps its size.
template <typename Stays>
void compact(tvk_map_ctx ctx, Node &node, Stays stays) {
    forget_index(ctx);
    const std::span<Node> nodes = children(node);
    std::size_t kept = 0;  // also the first gap, once there is one
    for (Node &child : nodes) {
        if (!stays(child)) {
            free_contents(child);
            reset(child);
            continue;
        }
        if (Node &slot = nodes[kept]; &slot != &child) {
            slot = child;
            reset(child);
        }
        ++kept;
    }
    if (kept < nodes.size()) {
        node.subtree_count = static_cast<std::int32_t>(kept);
        set_present(node, TVK_HAS_SUBTREES);
    }
}

}  // namespace tvk

#endif
