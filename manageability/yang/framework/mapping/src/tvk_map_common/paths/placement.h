// The place of a path that is added: below the pending list entry, below the output entry, or where the path says.
#ifndef TVK_MAP_PATHS_PLACEMENT_H
#define TVK_MAP_PATHS_PLACEMENT_H

#include "tvk_map_common/internal/node.h"
#include "tvk_map_types.h"

namespace tvk {

// The node below which a path is added, the path from there, and the flags to add it with.
struct Place {
    Node *tree;
    const char *path;
    int flags;
};

// Moves place to the position of the request. Returns TVK_ERR_NOT_FOUND when the path does not lie in the entry in
// which it should be added.
qerrno choose_place(tvk_map_ctx ctx, Place &place);

// Returns whether a path that is added now goes where it says: it is not filtered, led elsewhere, recorded, taken as
// the error path or logged. A caller that knows the place may then add the nodes there itself.
bool goes_where_it_says(tvk_map_ctx ctx);

}  // namespace tvk

#endif
