// The keys of a list entry: those that the request gives, and the check that they are enough.
#ifndef TVK_MAP_PROCESS_REQUEST_LIST_KEYS_H
#define TVK_MAP_PROCESS_REQUEST_LIST_KEYS_H

#include "tvk_map_process_request/list_entry.h"

namespace tvk {

// The number of key leaves in the entry. The counts are as wide as the key count of the table, with which they are
// compared.
struct KeyCounts {
    std::uint8_t present = 0;
    std::uint8_t valued = 0;
};

// Marks and counts the keys among the children of the entry, and notes in seen what kinds of children there are. In an
// add request it compares each key with the leaf to which it refers, and returns the status of the first that differs.
qerrno scan_keys(const ListEntry &entry, KeyCounts &counts, SeenChildren &seen);

// Returns TVK_OK when all keys are there or none, and all have a value or none; an add request must give each a value.
// Else records the error and returns TVK_ERR_LIST_KEY.
qerrno judge_keys(const ListEntry &entry, const KeyCounts &counts);

// Handles the key leaf at position in node, which is the entry or one of its instances. Refuses a key without a value
// in an add request and a key that is deleted, before the handler sees it.
qerrno handle_key_leaf(const ListEntry &entry, const tmap_child_entry &handler, Node &node, std::size_t position,
                       SeenChildren &seen);

// Adds the key leaves to the entry of a read that selects entries by other leaves, because the answer must still tell
// the entries apart.
qerrno add_missing_keys(const ListEntry &entry, const SeenChildren &seen);

}  // namespace tvk

#endif
