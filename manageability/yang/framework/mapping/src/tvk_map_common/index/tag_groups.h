// The children of one parent by tag.
#ifndef TVK_MAP_INDEX_TAG_GROUPS_H
#define TVK_MAP_INDEX_TAG_GROUPS_H

#include <span>

#include "tvk_map_common/index/probe_table.h"
#include "tvk_map_common/internal/node.h"

namespace tvk {

// The positions of the children of one tag; -1 when there is none.
struct TagPlaces {
    std::int32_t first = -1;
    std::int32_t last = -1;
    std::int32_t first_unnumbered = -1;  // the first that was not appended as an instance of its own
};

class TagGroups {
public:
    // Takes in the children that are new since the last time. Returns false when the caller has to scan, because a
    // child has no tag or there is no memory.
    bool take_in(std::span<const Node> children);

    TagPlaces find(std::span<const Node> children, const char *tag);

    std::size_t known() const { return known_; }

    // Removes the last child. Returns false when the groups have to be made anew.
    bool drop_last(std::span<const Node> children);

private:
    struct Group {
        std::uint32_t hash;
        bool used;
        TagPlaces places;

        bool is_empty() const { return !used; }
    };

    // Returns the group of a tag, or null. Stores the tag's hash in hash if it had to be computed.
    Group *group_of(std::span<const Node> children, const char *tag, std::uint32_t *hash);
    bool add(std::span<const Node> children, std::int32_t position);

    ProbeTable<Group> groups_;
    Group *recent_ = nullptr;
    std::size_t known_ = 0;
};

}  // namespace tvk

#endif
