// Finding nodes again after an addition has moved them.
#ifndef TVK_MAP_XPATH_POSITION_H
#define TVK_MAP_XPATH_POSITION_H

#include <cstddef>
#include <cstdint>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_types.h"

namespace tvk {

// Where a node stands below another, level by level. Additions put new children behind the others, so the positions
// hold when arrays on the way have moved.
class Position {
public:
    // False when some node is too deep below top to say. A node that is not below top keeps its place.
    bool take(Node &top, Node &node);
    Node *node() const;

private:
    static constexpr std::size_t kMaxDepth = TVK_MAP_MAX_PATH / 2;  // no path leads deeper

    Node *top_ = nullptr;
    Node *elsewhere_ = nullptr;
    std::size_t depth_ = 0;
    std::int32_t positions_[kMaxDepth];
};

// Watches the children of a node during an addition below it. The list entries that the request state holds follow
// when they move.
class MovedChildren {
public:
    explicit MovedChildren(const Node &parent);
    void follow(tvk_map_request_state &state) const;

private:
    void follow(Node *&child) const;

    const Node &parent_;
    std::uintptr_t begin_;
    std::size_t size_;
};

}  // namespace tvk

#endif
