#include "tvk_map_common/xpath/position.h"

bool tvk::Position::take(Node &top, Node &node) {
    Node *path[kMaxDepth];
    std::size_t level = 0;
    path[0] = &top;
    positions_[0] = 0;
    elsewhere_ = &node;
    for (;;) {
        const auto nodes = tvk::children(*path[level]);
        const auto position = static_cast<std::size_t>(positions_[level]);
        if (position == nodes.size()) {
            if (level == 0) {
                return true;
            }
            ++positions_[--level];
            continue;
        }
        if (&nodes[position] == &node) {
            top_ = &top;
            depth_ = level + 1;
            return true;
        }
        if (level + 1 == kMaxDepth) {
            return false;
        }
        path[++level] = &nodes[position];
        positions_[level] = 0;
    }
}

tvk::Node *tvk::Position::node() const {
    if (top_ == nullptr) {
        return elsewhere_;
    }
    Node *node = top_;
    for (std::size_t level = 0; level < depth_; ++level) {
        node = &node->subtrees[positions_[level]];
    }
    return node;
}

tvk::MovedChildren::MovedChildren(const Node &parent)
    : parent_(parent),
      begin_(reinterpret_cast<std::uintptr_t>(parent.subtrees)),
      size_(tvk::children(parent).size_bytes()) {}

void tvk::MovedChildren::follow(tvk_map_request_state &state) const {
    if (reinterpret_cast<std::uintptr_t>(parent_.subtrees) == begin_) {
        return;
    }
    follow(state.pending_list_node);
    for (std::size_t i = 0; i < state.output_list_count; ++i) {
        follow(state.output_list[i].list_node);
    }
}

void tvk::MovedChildren::follow(Node *&child) const {
    const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(child) - begin_;
    if (child != nullptr && offset < size_) {
        child = parent_.subtrees + offset / sizeof(Node);
    }
}
