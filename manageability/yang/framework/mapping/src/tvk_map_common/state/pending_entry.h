// The pending entry of a request: the list entry that was found or created last, below which paths are added.
//
// The entry owns its hierarchy path while the kind of the path is not 0. A stitching that failed leaves kind 0 and a
// pointer to a released path. Only the functions here write and release these fields.
#ifndef TVK_MAP_STATE_PENDING_ENTRY_H
#define TVK_MAP_STATE_PENDING_ENTRY_H

#include "tvk_map_common/internal/node.h"
#include "tvk_map_types.h"

namespace tvk {

// Returns the path of the entry's list, against which paths are trimmed; null while nothing is pending.
inline const char *pending_trim_path(tvk_map_ctx ctx) {
    return ctx->state != nullptr ? ctx->state->pending_trim_path : nullptr;
}

inline Node *pending_node(const tvk_map_request_state &state) {
    return state.pending_list_node;
}
inline void set_pending_node(tvk_map_request_state &state, Node *node) {
    state.pending_list_node = node;
}

// Ties the entry to the top level of the hierarchy, if there is one, so that the output entry ends with that level. On
// TVK_ERR_NO_MEMORY the former tie stays.
qerrno tie_pending_entry_to_level(tvk_map_request_state &state);

// Moves the strings and the node to a slot of the output list. A slot that still holds a string keeps it, and the
// pending string stays where it is.
void move_pending_entry(tvk_map_request_state &state, tvk_map_output_entry &slot);

// Releases what the entry owns. The pointer to its hierarchy path stays, with kind 0.
void release_pending_entry(tvk_map_request_state &state);

}  // namespace tvk

#endif
