// The pending entry of a request: the list entry that was found or created last, below which paths are added.
//
// The entry owns its hierarchy path while it has a kind. A stitching that failed leaves a pointer without a kind, to a
// path that is gone. Nobody else has to know that: the fields are written and released here alone.
#ifndef TVK_MAP_STATE_PENDING_ENTRY_H
#define TVK_MAP_STATE_PENDING_ENTRY_H

#include "tvk_map_common/internal/node.h"
#include "tvk_map_types.h"

namespace tvk {

// Null while nothing is pending. The path of the entry's list, which paths are trimmed against.
inline const char *pending_trim_path(tvk_map_ctx ctx) {
    return ctx->state != nullptr ? ctx->state->pending_trim_path : nullptr;
}

inline Node *pending_node(const tvk_map_request_state &state) {
    return state.pending_list_node;
}
inline void set_pending_node(tvk_map_request_state &state, Node *node) {
    state.pending_list_node = node;
}

// Ties the entry to the top level of the hierarchy, if there is one, so that the output entry ends with that level.
// TVK_ERR_NO_MEMORY leaves the former tie.
qerrno tie_pending_entry_to_level(tvk_map_request_state &state);

// Gives the strings over to a slot of the output list, and the node. A slot that still holds a string keeps it, and the
// pending one stays where it is.
void move_pending_entry(tvk_map_request_state &state, tvk_map_output_entry &slot);

// Releases what the entry owns. The pointer to its hierarchy path stays, without a kind.
void release_pending_entry(tvk_map_request_state &state);

}  // namespace tvk

#endif
