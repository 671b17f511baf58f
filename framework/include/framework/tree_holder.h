// Owners of data trees.
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

// Owns a tree. The root is a record that stands for no node: it has no tag, its children are top containers.
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

// copy owns nothing yet. Throws std::bad_alloc.
void copy_tree(const Node &tree, Node &copy);

/*
 * Leaves every child array to one owner: a mapping may show an array of the request in its result
 * (tvk_map_datatree_add_subtree_with_data), and both trees would release it. The array stays with the first node
 * that shows it, in the order of roots. For trees that are about to be released: marks them. Needs no memory.
 */
void unshare(std::initializer_list<Node *> roots) noexcept;

// The child arrays of a tree, as long as it does not change.
class ChildArrays {
public:
    explicit ChildArrays(const Node &tree);  // throws std::bad_alloc
    bool contains(const Node *array) const;

private:
    std::vector<const Node *> arrays_;  // by address
};

// Gives tree a copy of every child array that is one of others, or that it shows itself elsewhere, so that it can be
// changed alone. Throws std::bad_alloc; what has no copy then is shared still.
void own_arrays(Node &tree, std::initializer_list<const ChildArrays *> others);

}  // namespace tvk::framework
