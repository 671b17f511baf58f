// Operations of the instance-tree stack that only the library needs.
#ifndef TVK_MAP_STATE_INSTANCE_STACK_H
#define TVK_MAP_STATE_INSTANCE_STACK_H

#include <cstdint>

#include "tvk_map_types.h"

namespace tvk {

// Pushes an item that borrows nodes. The stack never releases them, whatever their tags are: the children of a request
// node may carry any name. Returns false and pushes nothing when there is no memory.
bool push_borrowed(tvk_map_ctx ctx, struct qidl_tvk_datatree *nodes, std::uint32_t node_count);

// Releases the items of a request that has ended. Items without nodes go too, because their makers hold them no longer.
void release_instance_stack(tvk_map_ctx ctx);

}  // namespace tvk

#endif
