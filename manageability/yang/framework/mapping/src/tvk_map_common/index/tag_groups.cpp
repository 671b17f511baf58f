#include "tvk_map_common/index/tag_groups.h"

#include "tvk_map_common/index/text_hash.h"

bool tvk::TagGroups::take_in(std::span<const Node> children) {
    while (known_ < children.size()) {
        if (children[known_].tag == nullptr || !add(children, static_cast<std::int32_t>(known_))) {
            return false;
        }
        ++known_;
    }
    return true;
}

tvk::TagPlaces tvk::TagGroups::find(std::span<const Node> children, const char *tag) const {
    const Group *group = group_of(children, tag, hash_text(tag));
    return group != nullptr ? group->places : TagPlaces{};
}

tvk::TagGroups::Group *tvk::TagGroups::group_of(std::span<const Node> children, const char *tag,
                                                std::uint32_t hash) const {
    for (Group *group = groups_.first(hash); group != nullptr; group = groups_.next(*group)) {
        if (same_text(children[static_cast<std::size_t>(group->places.first)].tag, tag)) {
            return group;
        }
    }
    return nullptr;
}

bool tvk::TagGroups::add(std::span<const Node> children, std::int32_t position) {
    const Node &child = children[static_cast<std::size_t>(position)];
    const std::uint32_t hash = hash_text(child.tag);
    const bool unnumbered = child.subtree_index == 0;
    if (Group *group = group_of(children, child.tag, hash); group != nullptr) {
        ++group->count;
        group->places.last = position;
        if (unnumbered && group->places.first_unnumbered < 0) {
            group->places.first_unnumbered = position;
        }
        return true;
    }
    return groups_.insert({hash, 1, {position, position, unnumbered ? position : -1}});
}
