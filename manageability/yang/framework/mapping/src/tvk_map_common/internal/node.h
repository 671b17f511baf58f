// Accessors of data tree records that only the library needs, beside those of tvk_datatree.hpp.
#ifndef TVK_MAP_INTERNAL_NODE_H
#define TVK_MAP_INTERNAL_NODE_H

#include <cstdint>
#include <span>

#include "tvk_datatree.hpp"

namespace tvk {

// Empties a record in place without releasing anything. The framework's two presence bits stay.
inline void reset(Node &node) {
    const auto framework_bits = static_cast<std::uint16_t>(node.presence & TVK_PRESENCE_FRAMEWORK);
    node = Node{};
    node.presence = framework_bits;
}

// The records of an array; none when it is null or the count is below 1.
inline std::span<Node> child_array(Node *array, std::int32_t count) {
    return NodeRange<Node>(array, count);
}

// Returns whether a node claims to have children but has no array of them.
inline bool lost_children(const Node &node) {
    return has(node, TVK_HAS_SUBTREES) && node.subtrees == nullptr && node.subtree_count != 0;
}

// The presence bit is the key mark; the value of the field is_key does not count.
inline bool is_key(const Node &node) {
    return has(node, TVK_HAS_IS_KEY);
}

inline void set_node_type(Node &node, std::uint32_t type) {
    node.schema_info.node_type = type;
    node.schema_info.flags = static_cast<std::uint8_t>(node.schema_info.flags | TVK_SCHEMA_INFO_HAS_NODE_TYPE);
}

}  // namespace tvk

#endif
