// Searches that skip what they would pass over.
#ifndef TVK_MAP_INDEX_CANDIDATES_H
#define TVK_MAP_INDEX_CANDIDATES_H

#include "tvk_map_common/index/children_index.h"

namespace tvk {

// The children that may be the entry with these keys, in order. Those left out are of another tag, or have other
// values for the keys, and every child in front of those still to come has a tag. While they are gone through nothing
// else is looked up by an index, which could push out this one.
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

    // Null at the end.
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

// The first child that either has that tag or has none: either one ends a search by tag. Null when there is neither.
template <typename AnyNode>
AnyNode *first_of_tag(tvk_map_ctx ctx, AnyNode &parent, const char *tag) {
    const std::span<AnyNode> nodes = children(parent);
    // A list's first entry is found without further ado.
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
