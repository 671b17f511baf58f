// The instance-tree stack as the list parse uses it.
#ifndef TVK_MAP_INTERNAL_ITREE_H
#define TVK_MAP_INTERNAL_ITREE_H

#include <cstdint>

#include "tvk_map_types.h"

namespace tvk {

// Pushes an item that borrows nodes, whatever their tags are: the children of a request node may carry any name, and
// none makes the stack release them. False when there is no memory; nothing is pushed then.
bool push_borrowed(tvk_map_ctx ctx, struct qidl_tvk_datatree *nodes, std::uint32_t node_count);

}  // namespace tvk

#endif
