// Owners and readers of data trees.
#pragma once

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

#include "qidl_tvk_datatree.h"

namespace tvk::tool {

using Node = qidl_tvk_datatree;

// The children of a node; none when it claims children but has no array.
inline std::span<const Node> children_of(const Node &node) {
    const bool any = (node.presence & TVK_HAS_SUBTREES) != 0 && node.subtrees != nullptr && node.subtree_count > 0;
    return any ? std::span<const Node>(node.subtrees, static_cast<std::size_t>(node.subtree_count))
               : std::span<const Node>();
}

inline void set_present(Node &node, uint16_t bit) {
    node.presence = static_cast<uint16_t>(node.presence | bit);
}

inline bool has_operation(const Node &node) {
    return (node.presence & TVK_HAS_OPERATION) != 0;
}
inline void set_operation(Node &node, uint32_t operation) {
    node.operation = operation;
    set_present(node, TVK_HAS_OPERATION);
}

inline bool has_insert(const Node &node) {
    const qidl_tvk_edit_insert &insert = node.edit_insert;
    return (node.presence & TVK_HAS_EDIT_INSERT) != 0 ||
           (insert.insert_presence | insert.keys_presence | insert.value_presence) != 0;
}

// Releases what a record owns, and leaves it empty.
inline void release(Node &node) {
    qidl_tvk_datatree_free_ext(&node, tvk_gpb_free, nullptr, 0);
    node = Node{};
}

// A text of a node, or "" while its presence bit is clear.
inline const char *text_of(const Node &node, const char *text, uint16_t bit) {
    return (node.presence & bit) != 0 && text != nullptr ? text : "";
}
inline const char *tag_of(const Node &node) {
    return text_of(node, node.tag, TVK_HAS_TAG);
}
inline const char *namespace_of(const Node &node) {
    return text_of(node, node.ns, TVK_HAS_NS);
}
inline const char *value_of(const Node &node) {
    return text_of(node, node.data, TVK_HAS_DATA);
}

inline bool has_name_of(const Node &node, const Node &other) {
    return std::strcmp(tag_of(node), tag_of(other)) == 0 && std::strcmp(namespace_of(node), namespace_of(other)) == 0;
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
    std::span<Node> tops() { return {root_.subtrees, children_of(root_).size()}; }

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

}  // namespace tvk::tool
