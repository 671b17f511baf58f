// Adding the node at an xpath.
#ifndef TVK_MAP_XPATH_ADD_H
#define TVK_MAP_XPATH_ADD_H

#include "tvk_map_xpath.h"

namespace tvk {

// Adds remaining, which is what is missing of the record's path, below the record's result. Its steps are usable.
// On success the result is the last attachment point, on failure null.
qerrno add_remaining_path(tvk_map_ctx ctx, tvk_map_node_operation &record, const char *remaining);

}  // namespace tvk

#endif
