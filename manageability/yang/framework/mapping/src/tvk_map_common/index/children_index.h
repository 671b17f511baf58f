// The index of children, for parents with many of them. The request state keeps it for a framework that has opted in
// (tvk_map_context::index_children_from). The library announces every change that it makes itself.
//
// A search by the index meets, in order, every child that a scan of the array would not pass over, and checks it as the
// scan does, so it finds what the scan finds. The index may point to too many children, such as one that has lost its
// key, but never to too few. Without memory it gives no answer, and the caller scans.
#ifndef TVK_MAP_INDEX_CHILDREN_INDEX_H
#define TVK_MAP_INDEX_CHILDREN_INDEX_H

#include "tvk_map_common/index/entry_table.h"
#include "tvk_map_common/index/tag_groups.h"
#include "tvk_map_types.h"

namespace tvk {

// Finds where the children of this tag stand. Returns false when the index cannot tell and the caller has to scan.
bool find_places(tvk_map_ctx ctx, std::span<const Node> children, const char *tag, TagPlaces &places);

// Returns the table for a search by these keys; null when there is none and the caller has to scan.
const EntryTable *find_entry_table(tvk_map_ctx ctx, std::span<const Node> children, const char *tag,
                                   std::span<const KeyText> keys);

inline bool keeps_index(tvk_map_ctx ctx) {
    return ctx != nullptr && ctx->state != nullptr && ctx->state->children_index != nullptr;
}

// Tells the index that children were added or the last one was removed, which may have moved the array.
void children_grown(tvk_map_ctx ctx, const Node *from, std::span<const Node> to);
// Tells the index that nodes are about to be released, with all below them.
void forget_children(tvk_map_ctx ctx, std::span<const Node> nodes);
// Tells the index that the last of these children is about to be released, after which the array may move.
void forget_last_child(tvk_map_ctx ctx, std::span<const Node> children);
void forget_index(tvk_map_ctx ctx);
// Makes the index forget the nodes and releases what they own, with all below them. The array of the nodes stays.
void release_nodes(tvk_map_ctx ctx, std::span<Node> nodes);

// Tells the index that a node, which may be a list entry, gets a child of this tag, or that such a child gets another
// value. A null tag stands for any child.
void entry_gains(tvk_map_ctx ctx, const Node &entry, const char *tag);

}  // namespace tvk

#endif
