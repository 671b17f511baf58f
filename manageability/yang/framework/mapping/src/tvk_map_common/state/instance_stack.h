// The instance-tree stack as the library itself uses it.
#ifndef TVK_MAP_STATE_INSTANCE_STACK_H
#define TVK_MAP_STATE_INSTANCE_STACK_H

#include <cstdint>

#include "tvk_map_types.h"

namespace tvk {

// Pushes an item that borrows nodes, whatever their tags are: the children of a request node may carry any name, and
// none makes the stack release them. False when there is no memory; nothing is pushed then.
bool push_borrowed(tvk_map_ctx ctx, struct qidl_tvk_datatree *nodes, std::uint32_t node_count);

// Releases the items of a request that has ended, also those without nodes, whose makers hold them no longer.
void release_instance_stack(tvk_map_ctx ctx);

}  // namespace tvk

#endif
