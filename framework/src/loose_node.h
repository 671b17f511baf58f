// Nodes that stand in no tree yet, as an edit makes them.
#pragma once

#include <utility>

#include "framework/tree_holder.h"

namespace tvk::framework {

// Owns a record that stands in no array.
class LooseNode {
public:
    LooseNode() = default;
    explicit LooseNode(Node node) : node_(node) {}
    LooseNode(LooseNode &&other) noexcept : node_(std::exchange(other.node_, Node{})) {}
    LooseNode &operator=(LooseNode &&other) noexcept {
        std::swap(node_, other.node_);
        return *this;
    }
    ~LooseNode() { release(node_); }

    Node &operator*() { return node_; }
    Node *operator->() { return &node_; }
    // Hands the record over to the caller.
    Node take() { return std::exchange(node_, Node{}); }

private:
    Node node_{};
};

// Returns a copy of node with all below it. Throws std::bad_alloc, as all below do.
LooseNode copy_of(const Node &node);

// Returns a copy of node without its children, operation, insert record and node kind.
LooseNode bare_copy(const Node &node);

// Returns a bare copy of node that has the keys, or the value, that its insert record names: it is like the entry that
// node is to stand beside.
LooseNode anchor_of(const Node &node);

// Makes child the last one of parent, whose other children may move.
void append_child(Node &parent, LooseNode child);

// Gives node the value of other, and its namespace.
void take_value(Node &node, const Node &other);

// Gives node a copy of insert. node has no insert record yet.
void give_insert(Node &node, const qidl_tvk_edit_insert &insert);

}  // namespace tvk::framework
