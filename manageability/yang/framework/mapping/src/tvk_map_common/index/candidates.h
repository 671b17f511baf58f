// Searches that skip children which cannot match.
#ifndef TVK_MAP_INDEX_CANDIDATES_H
#define TVK_MAP_INDEX_CANDIDATES_H

#include "tvk_map_common/index/children_index.h"

namespace tvk {

// Iterates in order over the children that may be the entry with these keys. A child that is left out has another tag
// or other key values, and every child before the next candidate has a tag. During the iteration no other index may be
// asked, because that could push out this one.
template <typename AnyNode>
class EntryCandidates {
public:
    EntryCandidates(tvk_map_ctx ctx, AnyNode &parent, const char *tag, std::span<const KeyText> keys)
        : children_(children(parent)), table_(find_entry_table(ctx, children_, tag, keys)) {
        if (table_ != nullptr) {
            place_ = table_->first(keys);
            at_ = table_->frontier();
        }
    }

    // Returns null at the end.
    AnyNode *next() {
        if (place_ != 0) {
            AnyNode *child = &children_[static_cast<std::size_t>(place_) - 1];
            place_ = table_->next(place_);
            return child;
        }
        return at_ < children_.size() ? &children_[at_++] : nullptr;
    }

private:
    std::span<AnyNode> children_;
    const EntryTable *table_;
    std::int32_t place_ = 0;
    std::size_t at_ = 0;
};

// Returns the first child that has this tag or has no tag, since both end a search by tag; null when there is neither.
template <typename AnyNode>
AnyNode *first_of_tag(tvk_map_ctx ctx, AnyNode &parent, const char *tag) {
    const std::span<AnyNode> nodes = children(parent);
    // The first entry of a list needs no index.
    if (!nodes.empty() && (nodes.front().tag == nullptr || std::strcmp(nodes.front().tag, tag) == 0)) {
        return &nodes.front();
    }
    if (TagPlaces places; find_places(ctx, nodes, tag, places)) {
        return places.first < 0 ? nullptr : &nodes[static_cast<std::size_t>(places.first)];
    }
    for (AnyNode &child : nodes) {
        if (child.tag == nullptr || std::strcmp(child.tag, tag) == 0) {
            return &child;
        }
    }
    return nullptr;
}

}  // namespace tvk

#endif
