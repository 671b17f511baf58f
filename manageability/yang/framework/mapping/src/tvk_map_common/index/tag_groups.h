// The children of one parent by tag.
#ifndef TVK_MAP_INDEX_TAG_GROUPS_H
#define TVK_MAP_INDEX_TAG_GROUPS_H

#include <span>

#include "tvk_map_common/index/probe_table.h"
#include "tvk_map_common/internal/node.h"

namespace tvk {

// Where the children of one tag stand; -1: there is none.
struct TagPlaces {
    std::int32_t first = -1;
    std::int32_t last = -1;
    std::int32_t first_unnumbered = -1;  // not appended as an instance of its own
};

class TagGroups {
public:
    // Looks at the children that came since the last time. False when the scan has to tell: a child has no tag, or
    // there is no memory.
    bool take_in(std::span<const Node> children);

    TagPlaces find(std::span<const Node> children, const char *tag);

    std::size_t known() const { return known_; }

    // The last child goes. False when all have to be looked at anew.
    bool drop_last(std::span<const Node> children);

private:
    struct Group {
        std::uint32_t hash;
        bool used;
        TagPlaces places;

        bool is_empty() const { return !used; }
    };

    // Tells the tag's hash where it had to be made.
    Group *group_of(std::span<const Node> children, const char *tag, std::uint32_t *hash);
    bool add(std::span<const Node> children, std::int32_t position);

    ProbeTable<Group> groups_;
    Group *recent_ = nullptr;
    std::size_t known_ = 0;
};

}  // namespace tvk

#endif
