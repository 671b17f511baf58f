// Where children stand, for parents with many of them. Kept by the request state of a framework that has opted in
// (tvk_map_context::index_children_from), and told here of every change that the library makes itself.
//
// A search through it meets, in order, all children that a scan of the array would not pass over, and looks at each of
// them as the scan does; so it finds what the scan finds. It may point to too many, for a child that has lost its key,
// but never to too few. Without memory it says nothing, and the scan is made.
#ifndef TVK_MAP_INDEX_CHILDREN_INDEX_H
#define TVK_MAP_INDEX_CHILDREN_INDEX_H

#include "tvk_map_common/index/entry_table.h"
#include "tvk_map_common/index/tag_groups.h"
#include "tvk_map_types.h"

namespace tvk {

// Whether an index knows where children of that tag stand among these.
bool find_places(tvk_map_ctx ctx, std::span<const Node> children, const char *tag, TagPlaces &places);

// Null when there is no table for such a search, or none that knows a child.
const EntryTable *find_entry_table(tvk_map_ctx ctx, std::span<const Node> children, const char *tag,
                                   std::span<const KeyText> keys);

inline bool keeps_index(tvk_map_ctx ctx) {
    return ctx != nullptr && ctx->state != nullptr && ctx->state->children_index != nullptr;
}

// Children were added, or the last one went, which may have moved the array.
void children_grown(tvk_map_ctx ctx, const Node *from, std::span<const Node> to);
// Nodes are about to go, with all below them.
void forget_children(tvk_map_ctx ctx, std::span<const Node> nodes);
// The last one of these children is about to go, which may then move the array.
void forget_last_child(tvk_map_ctx ctx, std::span<const Node> children);
void forget_index(tvk_map_ctx ctx);
// Releases what nodes own, with all below them, and forgets it first. The array of the nodes stays.
void release_nodes(tvk_map_ctx ctx, std::span<Node> nodes);

// A node that may be a list entry gets a child of that tag, or a child of it another value; any one when it is null.
void entry_gains(tvk_map_ctx ctx, const Node &entry, const char *tag);

}  // namespace tvk

#endif
