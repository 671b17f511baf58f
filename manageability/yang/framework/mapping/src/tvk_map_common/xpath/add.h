// Adding the node at an xpath.
#ifndef TVK_MAP_XPATH_ADD_H
#define TVK_MAP_XPATH_ADD_H

#include "tvk_map_xpath.h"

namespace tvk {

// Adds remaining, the missing part of the record's path, below the record's result. The steps of remaining must be
// usable. On success the result becomes the last list entry that was added, if there is one; on failure it becomes
// null.
qerrno add_remaining_path(tvk_map_ctx ctx, tvk_map_node_operation &record, const char *remaining);

}  // namespace tvk

#endif
