// Leaves by rule: where the value of each goes in an edit, and comes from in a read.
#ifndef OPENCONFIG_INTERFACES_LEAF_RULES_H
#define OPENCONFIG_INTERFACES_LEAF_RULES_H

#include <cstddef>

#include "answer.h"

namespace interfaces {

struct ValuePair {
    const char *openconfig;
    const char *native;
};

// One OpenConfig leaf.
struct LeafRule {
    const char *tag;
    const char *path = nullptr;         // of the native leaf below the current entry
    const ValuePair *values = nullptr;  // ended by a null pair; null when values are the same on both sides
    const char *default_value = nullptr;
    tmap_node_process_fp edit = nullptr;  // null: the value goes to path, or nowhere
    // The value from the native node of the entry; null: it comes from path, or is the entry's key.
    const char *(*read)(tvk_map_ctx ctx, const Node *native) = nullptr;
    const char *ns = nullptr;        // null: that of the container
    const char *value_ns = nullptr;  // of an identity
};

// A container whose children are leaves.
struct LeafContainer {
    const LeafRule *rules;
    std::size_t rule_count;
    const ListShape *list;  // what it stands in; null for none
    const char *path;       // below the top container
    const char *ns;
    tmap_cont_handler_fp enter;  // in an edit; null for a state container, which cannot be edited
};

qerrno enter_leaf_container(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target,
                            const LeafContainer &container);
qerrno handle_leaf(tvk_map_ctx ctx, const Node *leaf, Node *target, const LeafContainer &container);
qerrno handle_all_leaves(tvk_map_ctx ctx, const Node *node, Node *target, const LeafContainer &container);

// The handlers of a leaf container.
template <const LeafContainer &kContainer>
struct Leaves {
    static qerrno enter(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
        return enter_leaf_container(ctx, node, child_count, target, kContainer);
    }
    static qerrno process(tvk_map_ctx ctx, const Node *leaf, Node *target) {
        return handle_leaf(ctx, leaf, target, kContainer);
    }
    // In a propagation the node is one above, and all leaves are meant.
    static qerrno child(tvk_map_ctx ctx, const Node *node, Node *target) {
        return ctx->state->delete_walk_active == 1 ? handle_all_leaves(ctx, node, target, kContainer)
                                                   : tmap_high_leaf_parse(ctx, node, target, node->tag, 0, process);
    }
    static constexpr struct tmap_node_cont_info kInfo = {enter, child, nullptr, 0, nullptr, nullptr};

    static qerrno parse(tvk_map_ctx ctx, const Node *node, Node *target) {
        return tmap_high_container_parse(ctx, node, target, &kInfo);
    }
};

// Entering any other container in a read: in a propagation all of it is meant, whatever the node above has.
qerrno enter_read(tvk_map_ctx ctx);

// A key leaf: the list's handler has taken it already; in a read it opens the entry.
template <const ListShape &kList>
qerrno handle_key(tvk_map_ctx ctx, const Node *node, Node *target) {
    const bool is_asked = is_read(ctx) && tvk_map_get_node_type(node) != TVK_NODE_TYPE_NONE;
    return is_asked && ctx->state->delete_walk_active != 1 ? open_entry(ctx, target, kList) : TVK_OK;
}

// A child that the mapping has no handler for. In a propagation it is a node above, which needs nothing here.
qerrno refuse_child(tvk_map_ctx ctx, const Node *node, Node *target);

}  // namespace interfaces

#endif
