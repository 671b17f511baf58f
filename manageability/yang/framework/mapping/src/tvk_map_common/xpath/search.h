// Finding the node at an xpath.
#ifndef TVK_MAP_XPATH_SEARCH_H
#define TVK_MAP_XPATH_SEARCH_H

#include <cstdint>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_xpath.h"

namespace tvk {

struct XpathSearch {
    tvk_map_node_operation *record;
    std::uint16_t stop_offset;  // offset of the first step that was not found, behind the path's leading "/"
    tvk_map_ctx ctx;
    Node *parent = nullptr;  // parent of the node found
};

// Searches the node at the xpath of search.record, whose steps must be usable, and puts it into the record's result.
// Returns TVK_OK when it is found. Returns TVK_ERR_NOT_PRESENT when it is not there, and TVK_ERR_NOT_FOUND at a child
// without a tag; the result is then the deepest node reached when the record adds, else null. Returns TVK_ERR_INVALID
// with a null result for a path without steps.
qerrno tvk_map_search_subtree_node(XpathSearch &search);

}  // namespace tvk

#endif
