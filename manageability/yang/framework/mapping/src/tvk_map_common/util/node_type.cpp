#include "tvk_map_util.h"

// The type's own bit is one of those that mark the group as set, so the group needs no look of its own.
uint32_t tvk_map_get_node_type(const struct qidl_tvk_datatree *node) {
    const bool has_type = node != nullptr && (node->schema_info.flags & TVK_SCHEMA_INFO_HAS_NODE_TYPE) != 0;
    return has_type ? node->schema_info.node_type : 0;
}
