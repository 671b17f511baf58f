// The type that the schema gives a node.
#include "tvk_map_util.h"

// The bit of the type is one of those that mark the schema information as set, so only this bit is tested.
uint32_t tvk_map_get_node_type(const struct qidl_tvk_datatree *node) {
    const bool has_type = node != nullptr && (node->schema_info.flags & TVK_SCHEMA_INFO_HAS_NODE_TYPE) != 0;
    return has_type ? node->schema_info.node_type : 0;
}
