// Finding the node at an xpath.
#ifndef TVK_MAP_XPATH_SEARCH_H
#define TVK_MAP_XPATH_SEARCH_H

#include <cstdint>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_xpath.h"

namespace tvk {

struct XpathSearch {
    tvk_map_node_operation *record;
    std::uint16_t stop_offset;  // of the first step that was not found, behind the path's leading "/"
    tvk_map_ctx ctx;
    Node *parent = nullptr;  // of the node found
};

// Searches the node of search.record, whose steps are usable. Returns TVK_OK with the node as the record's result;
// TVK_ERR_NOT_PRESENT, TVK_ERR_NOT_FOUND at a child without a tag: the result is then the deepest node reached when
// the record adds, else null; TVK_ERR_INVALID for a path without steps: the result is null.
qerrno tvk_map_search_subtree_node(XpathSearch &search);

}  // namespace tvk

#endif
