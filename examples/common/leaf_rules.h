// Maps leaves by rules. A rule says where the value of a leaf goes in an edit, and where it comes from in a read.
#ifndef EXAMPLES_COMMON_LEAF_RULES_H
#define EXAMPLES_COMMON_LEAF_RULES_H

#include <cstddef>
#include <span>

#include "answer.h"
#include "parse.h"

namespace mapping {

// A value on both sides. A table of pairs ends with a null pair.
struct ValuePair {
    const char *openconfig;
    const char *native;
};

// These return the value on the other side, or null when there is none. The value given may be null.
const char *native_value(const ValuePair *values, const char *openconfig);
const char *openconfig_value(const ValuePair *values, const char *native);

// Returns the form that a value has on the other side, which may stand in scratch, or null when it has none there.
using Convert = const char *(*)(const char *value, Scratch &scratch);

// The rule of one OpenConfig leaf.
struct LeafRule {
    const char *tag;
    const ValueType *type = nullptr;    // null when values says which there are
    const char *path = nullptr;         // the native leaf below the current entry
    const ValuePair *values = nullptr;  // null when the leaf is no enumeration and no identity
    Convert to_native = nullptr;        // null when the value is the same on both sides, and so is the next
    Convert from_native = nullptr;
    const char *native_form =
        nullptr;  // the name of the values that to_native takes, when it takes not all of the type
    const char *default_value = nullptr;
    // Edits the native side. When it is null, the value goes to path, or nowhere. The value of a deleted leaf is null.
    qerrno (*edit)(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *value) = nullptr;
    // Returns the value, given the native node of the entry. When it is null, the value comes from path, or is the key
    // of the entry.
    const char *(*read)(tvk_map_ctx ctx, const Node *native) = nullptr;
    const char *ns = nullptr;        // null when it is that of the container
    const char *value_ns = nullptr;  // the module of an identity
    bool in_state_alone = false;
};

// A container whose children are leaves.
struct LeafContainer {
    std::span<const LeafRule> rules;
    const ListShape *list;  // the list around it, or null
    const char *path;       // below the entry of list, or below the top container
    const char *ns;
    tmap_cont_handler_fp enter;  // called in an edit; null for a state container, which cannot be edited
};

// Adds value, which may be null, at path below the current entry, or below target when there is none, with the
// operation of leaf. Each mapping defines it in its own way.
qerrno add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value);

// Creates, deletes or replaces the native container at path below the current entry, for node, a container of the
// request that is one container on the native side, too. Returns TVK_SKIP_NODE when it is deleted.
qerrno settle_container(tvk_map_ctx ctx, const Node *node, Node *target, const char *path);

// Handles a container of leaves: checks an edit, and tells whether a read has anything to answer.
qerrno enter_leaf_container(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target,
                            const LeafContainer &container);
// Handles one leaf by its rule.
qerrno handle_leaf(tvk_map_ctx ctx, const Node *leaf, Node *target, const LeafContainer &container);
// Handles all leaves of the container, for a node above it that is deleted or read whole.
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
    // In a propagation the node is one above the container, and all leaves are meant.
    static qerrno child(tvk_map_ctx ctx, const Node *node, Node *target) {
        return ctx->state->delete_walk_active == 1 ? handle_all_leaves(ctx, node, target, kContainer)
                                                   : tmap_high_leaf_parse(ctx, node, target, node->tag, 0, process);
    }
    static constexpr struct tmap_node_cont_info kInfo = {.cont_handler = enter,
                                                         .child_handler = child,
                                                         .child_conts = nullptr,
                                                         .child_cont_count = 0,
                                                         .generator_data = nullptr,
                                                         .unsupported_ns = nullptr};

    static qerrno parse(tvk_map_ctx ctx, const Node *node, Node *target) {
        return parse_container(ctx, node, target, &kInfo, kContainer.ns);
    }
};

// Refuses the value of leaf, and lists the values that there are.
qerrno refuse_choice(tvk_map_ctx ctx, const Node *leaf, const ValuePair *values);

// Refuses the value of leaf as no identity of the module ns.
qerrno refuse_identity(tvk_map_ctx ctx, const Node *leaf, const char *ns);

// Enters any other container in a read. In a propagation all of it is meant, whatever children the node above has.
qerrno enter_read(tvk_map_ctx ctx);

// Handles a key leaf. In an edit the list's handler has taken it already; in a read it opens the entry.
template <const ListShape &kList>
qerrno handle_key(tvk_map_ctx ctx, const Node *node, Node *target) {
    const bool is_asked =
        is_read(ctx) && tvk_map_get_node_type(node) != TVK_NODE_TYPE_NONE && is_of_model(ctx, *node, kList.ns);
    Place place{};
    return is_asked && ctx->state->delete_walk_active != 1 && native_entry(ctx, kList) != nullptr
               ? open_entry(ctx, target, kList, place)
               : TVK_OK;
}

// Handles a child that the mapping has no handler for. In a read it selects nothing. In a propagation it is a node
// above, which needs nothing here.
qerrno handle_unmapped(tvk_map_ctx ctx, const Node *node, Node *target);

}  // namespace mapping

#endif
