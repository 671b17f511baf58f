// Owns data trees and their child arrays.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

#include "tvk_datatree.hpp"

namespace tvk::framework {

// Releases what a record owns, and leaves it empty.
inline void release(Node &node) {
    qidl_tvk_datatree_free_ext(&node, tvk_gpb_free, nullptr, 0);
    node = Node{};
}

// Makes an empty record the last child of parent, whose other children may move. Throws std::bad_alloc.
Node &append_child(Node &parent);

// Keeps, in their order, the children for which keep is true, and releases the others.
template <typename Keep>
void keep_children(Node &node, Keep keep) {
    const NodeRange<Node> all = children(node);
    int32_t kept = 0;
    for (Node &child : all) {
        if (keep(child)) {
            std::swap(all[static_cast<std::size_t>(kept++)], child);
        }
    }
    std::for_each(all.begin() + kept, all.end(), release);
    node.subtree_count = kept;
}

// Owns a tree. Its root is a record that stands for no node: it has no tag, and its children are the top containers.
class TreeHolder {
public:
    TreeHolder() = default;
    TreeHolder(TreeHolder &&other) noexcept : root_(std::exchange(other.root_, Node{})) {}
    TreeHolder(const TreeHolder &) = delete;
    TreeHolder &operator=(const TreeHolder &) = delete;
    TreeHolder &operator=(TreeHolder &&) = delete;
    ~TreeHolder() { qidl_tvk_datatree_free_ext(&root_, tvk_gpb_free, nullptr, 0); }

    void swap(TreeHolder &other) { std::swap(root_, other.root_); }
    Node &root() { return root_; }
    const Node &root() const { return root_; }
    NodeRange<Node> tops() { return children(root_); }

private:
    Node root_{};
};

// Makes copy, which owns nothing yet, a copy of tree. Throws std::bad_alloc.
void copy_tree(const Node &tree, Node &copy);

/*
 * Leaves each child array to one owner. A mapping may show an array of the request in its result
 * (tvk_map_datatree_add_subtree_with_data), and both trees would release it. The array stays with the first node that
 * shows it, in the order of roots. This marks the records, so the trees can only be released then. It needs no memory.
 */
void unshare(std::initializer_list<Node *> roots) noexcept;

// The child arrays of a tree. They are gathered once, so the tree must not change.
class ChildArrays {
public:
    // Throws std::bad_alloc.
    explicit ChildArrays(const Node &tree);
    bool contains(const Node *array) const;

private:
    std::vector<const Node *> arrays_;  // in the order of their addresses
};

// Gives tree a copy of each child array that is one of others, or that two of its nodes show, so that it can be changed
// alone. Throws std::bad_alloc; the arrays without a copy are still shared then.
void own_arrays(Node &tree, std::initializer_list<const ChildArrays *> others);

}  // namespace tvk::framework
