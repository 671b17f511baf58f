// The keys of a list entry: what the request gives of them, and whether that will do.
#ifndef TVK_MAP_PROCESS_REQUEST_LIST_KEYS_H
#define TVK_MAP_PROCESS_REQUEST_LIST_KEYS_H

#include "tvk_map_process_request/list_entry.h"

namespace tvk {

// Key leaves of the entry. As wide as the key count of the table, which they are compared with.
struct KeyCounts {
    std::uint8_t present = 0;
    std::uint8_t valued = 0;
};

// Looks at all children of the entry: marks those that are keys, counts them, and notes in seen what kinds there are.
// In an add request it compares each key with the leaf that refers to it; the status is that of the first that differs.
qerrno scan_keys(const ListEntry &entry, KeyCounts &counts, SeenChildren &seen);

// TVK_OK, or TVK_ERR_LIST_KEY with the error recorded: all keys are there or none, all with a value or none, and what
// is added has them.
qerrno judge_keys(const ListEntry &entry, const KeyCounts &counts);

// Handles the key leaf at that position of node, the entry or one of its instances. Its handler sees no key without a
// value in an add request, and none that is deleted.
qerrno handle_key_leaf(const ListEntry &entry, const tmap_child_entry &handler, Node &node, std::size_t position,
                       SeenChildren &seen);

// Adds the key leaves to the entry of a read that selects entries by other leaves: its answer must still tell the
// entries apart.
qerrno add_missing_keys(const ListEntry &entry, const SeenChildren &seen);

}  // namespace tvk

#endif
