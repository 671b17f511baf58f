// The data that the steps of the list parse hand on to each other.
#ifndef TVK_MAP_PROCESS_REQUEST_LIST_ENTRY_H
#define TVK_MAP_PROCESS_REQUEST_LIST_ENTRY_H

#include "tvk_map_process_request/request_walk.h"

namespace tvk {

inline constexpr char kListParse[] = "tmap_high_list_parse";

// The entry of the request that is parsed, its target and its table.
struct ListEntry {
    tvk_map_ctx ctx;
    Node &node;
    Node &target;
    const tmap_node_list_info &info;

    bool is_childless() const { return children(node).empty(); }
    std::span<const tmap_child_entry> handlers() const { return entries(info.child_conts, info.child_cont_count); }
};

// The kinds of children that the key scan, and the walk since then, have seen in the entry and its instances.
struct SeenChildren {
    bool key = false;
    bool empty_key = false;
    bool other = false;

    bool are_keys_alone() const { return key && !other; }
};

}  // namespace tvk

#endif
