// Grouping the children of one parent by tag.
#include "tvk_map_common/index/tag_groups.h"

#include "tvk_map_common/index/text_hash.h"

namespace tvk {

bool TagGroups::take_in(std::span<const Node> children) {
    while (known_ < children.size()) {
        if (children[known_].tag == nullptr || !add(children, static_cast<std::int32_t>(known_))) {
            return false;
        }
        ++known_;
    }
    return true;
}

TagPlaces TagGroups::find(std::span<const Node> children, const char *tag) {
    const Group *group = group_of(children, tag, nullptr);
    return group != nullptr ? group->places : TagPlaces{};
}

// The group that was asked for last is most often the next one, too.
TagGroups::Group *TagGroups::group_of(std::span<const Node> children, const char *tag, std::uint32_t *hash) {
    const auto is_of_tag = [&](const Group &group) {
        return same_text(children[static_cast<std::size_t>(group.places.last)].tag, tag);
    };
    if (recent_ != nullptr && is_of_tag(*recent_)) {
        return recent_;
    }
    const std::uint32_t tag_hash = hash_text(tag);
    if (hash != nullptr) {
        *hash = tag_hash;
    }
    for (Group *group = groups_.first(tag_hash); group != nullptr; group = groups_.next(*group)) {
        if (is_of_tag(*group)) {
            return recent_ = group;
        }
    }
    return nullptr;
}

bool TagGroups::add(std::span<const Node> children, std::int32_t position) {
    const Node &child = children[static_cast<std::size_t>(position)];
    const bool unnumbered = child.subtree_index == 0;
    std::uint32_t hash = 0;
    if (Group *group = group_of(children, child.tag, &hash); group != nullptr) {
        group->places.last = position;
        if (unnumbered && group->places.first_unnumbered < 0) {
            group->places.first_unnumbered = position;
        }
        return true;
    }
    recent_ = nullptr;  // the table may move
    return groups_.insert({hash, true, {position, position, unnumbered ? position : -1}});
}

bool TagGroups::drop_last(std::span<const Node> children) {
    const std::size_t last = children.size() - 1;
    if (known_ <= last) {
        return true;
    }
    Group *group = group_of(children, children[last].tag, nullptr);
    if (group == nullptr || last == 0 || !same_text(children[last - 1].tag, children[last].tag)) {
        return false;  // the place of the one before it would have to be searched
    }
    TagPlaces &places = group->places;
    --places.last;
    if (places.first_unnumbered > places.last) {
        places.first_unnumbered = -1;
    }
    known_ = last;
    return true;
}

}  // namespace tvk
