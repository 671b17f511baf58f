// Reading and writing data tree records: presence bits, texts, children.
#ifndef TVK_MAP_INTERNAL_NODE_H
#define TVK_MAP_INTERNAL_NODE_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "qidl_tvk_datatree.h"

namespace tvk {

using Node = struct qidl_tvk_datatree;

inline bool has(const Node &node, std::uint16_t bit) {
    return (node.presence & bit) != 0;
}
inline void set_present(Node &node, std::uint16_t bit) {
    node.presence = static_cast<std::uint16_t>(node.presence | bit);
}
inline void set_absent(Node &node, std::uint16_t bit) {
    node.presence = static_cast<std::uint16_t>(node.presence & ~bit);
}

// Empties a record in place without releasing anything. The framework's two presence bits stay.
inline void reset(Node &node) {
    const auto framework_bits = static_cast<std::uint16_t>(node.presence & TVK_PRESENCE_FRAMEWORK);
    node = Node{};
    node.presence = framework_bits;
}

// Both there and equal.
inline bool same_text(const char *a, const char *b) {
    return a != nullptr && b != nullptr && std::strcmp(a, b) == 0;
}

inline std::span<Node> child_array(Node *array, std::int32_t count) {
    return array == nullptr || count < 1 ? std::span<Node>{} : std::span<Node>{array, static_cast<std::size_t>(count)};
}

// The children of a node; none when the bit is clear, the array is missing or the count is not positive.
inline std::span<Node> children(Node &node) {
    return has(node, TVK_HAS_SUBTREES) ? child_array(node.subtrees, node.subtree_count) : std::span<Node>{};
}
inline std::span<const Node> children(const Node &node) {
    return has(node, TVK_HAS_SUBTREES) ? child_array(node.subtrees, node.subtree_count) : std::span<Node>{};
}

// A node that says it has children and has no array to show for it.
inline bool lost_children(const Node &node) {
    return has(node, TVK_HAS_SUBTREES) && node.subtrees == nullptr && node.subtree_count != 0;
}

// A presence bit stands for the key mark; the value of is_key is not looked at.
inline bool is_key(const Node &node) {
    return has(node, TVK_HAS_IS_KEY);
}
inline void mark_key(Node &node) {
    node.is_key = 1;
    set_present(node, TVK_HAS_IS_KEY);
}

inline void set_operation(Node &node, std::uint32_t operation) {
    node.operation = operation;
    set_present(node, TVK_HAS_OPERATION);
}

inline bool is_delete(const Node &node) {
    return has(node, TVK_HAS_OPERATION) &&
           (node.operation == TVK_OPERATION_DELETE || node.operation == TVK_OPERATION_REMOVE);
}

inline void set_node_type(Node &node, std::uint32_t type) {
    node.schema_info.node_type = type;
    node.schema_info.flags = static_cast<std::uint8_t>(node.schema_info.flags | TVK_SCHEMA_INFO_HAS_NODE_TYPE);
}

inline bool carries_insert(const Node &node) {
    const auto &insert = node.edit_insert;
    return has(node, TVK_HAS_EDIT_INSERT) ||
           (insert.keys_presence | insert.value_presence | insert.insert_presence) != 0;
}

}  // namespace tvk

#endif
