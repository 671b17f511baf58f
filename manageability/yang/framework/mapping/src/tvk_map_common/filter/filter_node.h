// The accessors by which the phases read and set node types and verdicts.
#ifndef TVK_MAP_FILTER_FILTER_NODE_H
#define TVK_MAP_FILTER_FILTER_NODE_H

#include "tvk_map_common/internal/node.h"
#include "tvk_map_types.h"
#include "tvk_map_util.h"

namespace tvk {

inline bool is_of_type(const Node &node, std::uint32_t type) {
    return tvk_map_get_node_type(&node) == type;
}

// Returns the child count of the record, 0 without the presence bit. The children that can be visited may be fewer.
inline std::int32_t claimed_children(const Node &node) {
    return has(node, TVK_HAS_SUBTREES) ? node.subtree_count : 0;
}

inline std::uint32_t verdict(const Node &node) {
    return has(node, TVK_HAS_NODE_KIND) ? node.node_kind : 0;
}
inline void set_verdict(Node &node, std::uint32_t kind) {
    node.node_kind = kind;
    set_present(node, TVK_HAS_NODE_KIND);
}
inline bool keeps_all(const Node &node) {
    return verdict(node) == TVK_NODE_KIND_KA;
}
inline bool is_kept(const Node &node) {
    return keeps_all(node) || verdict(node) == TVK_NODE_KIND_KN;
}
// Keeps the node. A node that was kept with all below it stays so.
inline void keep_node(Node &node) {
    if (!keeps_all(node)) {
        set_verdict(node, TVK_NODE_KIND_KN);
    }
}

// Returns whether a list entry is given by its keys alone, the first of which has a value.
inline bool is_entry_by_keys(std::span<const Node> children) {
    if (children.empty() || !has(children.front(), TVK_HAS_DATA)) {
        return false;
    }
    for (const Node &child : children) {
        if (!is_key(child)) {
            return false;
        }
    }
    return true;
}

// Returns whether the request matches content. A filter node whose children only match content then stands for all
// below it.
inline bool content_match_in_request(tvk_map_ctx ctx) {
    return ctx != nullptr && ctx->state != nullptr && (ctx->state->walk_flags & TVK_WALK_CONTENT_MATCH_IN_REQUEST) != 0;
}

inline bool all_match_content(std::span<const Node> children) {
    for (const Node &child : children) {
        if (!is_of_type(child, TVK_NODE_TYPE_CONTENT_MATCH)) {
            return false;
        }
    }
    return true;
}

// Returns a text as the container phase traces it.
inline const char *text_or_null(const char *text) {
    return text != nullptr ? text : "NULL";
}

}  // namespace tvk

#endif
