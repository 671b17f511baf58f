// What the library alone does with data tree records, beside the accessors of tvk_datatree.hpp.
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

inline std::span<Node> child_array(Node *array, std::int32_t count) {
    return NodeRange<Node>(array, count);
}

// A node that says it has children and has no array to show for it.
inline bool lost_children(const Node &node) {
    return has(node, TVK_HAS_SUBTREES) && node.subtrees == nullptr && node.subtree_count != 0;
}

// A presence bit stands for the key mark; the value of is_key is not looked at.
inline bool is_key(const Node &node) {
    return has(node, TVK_HAS_IS_KEY);
}

inline void set_node_type(Node &node, std::uint32_t type) {
    node.schema_info.node_type = type;
    node.schema_info.flags = static_cast<std::uint8_t>(node.schema_info.flags | TVK_SCHEMA_INFO_HAS_NODE_TYPE);
}

}  // namespace tvk

#endif
