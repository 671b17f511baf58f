// Leaves by rule: where the value of each goes in an edit, and comes from in a read.
#ifndef EXAMPLES_COMMON_LEAF_RULES_H
#define EXAMPLES_COMMON_LEAF_RULES_H

#include <cstddef>
#include <span>

#include "answer.h"
#include "parse.h"

namespace mapping {

struct ValuePair {
    const char *openconfig;
    const char *native;
};

// The value that stands beside the one given, which may be null; null when there is none.
const char *native_value(const ValuePair *values, const char *openconfig);
const char *openconfig_value(const ValuePair *values, const char *native);

// The form that a value has on the other side, at rest in scratch if need be; null when it has none there.
using Convert = const char *(*)(const char *value, Scratch &scratch);

// One OpenConfig leaf.
struct LeafRule {
    const char *tag;
    const ValueType *type = nullptr;    // null for those with values
    const char *path = nullptr;         // of the native leaf below the current entry
    const ValuePair *values = nullptr;  // ended by a null pair; null when it is no enumeration and no identity
    Convert to_native = nullptr;        // null, like the next, when the value is the same on both sides
    Convert from_native = nullptr;
    const char *native_form = nullptr;  // the name of what to_native takes, where that is less than the type
    const char *default_value = nullptr;
    // Null: the value goes to path, or nowhere. A deleted leaf comes without a value.
    qerrno (*edit)(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *value) = nullptr;
    // The value from the native node of the entry; null: it comes from path, or is the entry's key.
    const char *(*read)(tvk_map_ctx ctx, const Node *native) = nullptr;
    const char *ns = nullptr;        // null: that of the container
    const char *value_ns = nullptr;  // of an identity
    bool in_state_alone = false;
};

// A container whose children are leaves.
struct LeafContainer {
    std::span<const LeafRule> rules;
    const ListShape *list;  // what it stands in; null for none
    const char *path;       // below the entry of list, or below the top container
    const char *ns;
    tmap_cont_handler_fp enter;  // in an edit; null for a state container, which cannot be edited
};

// Each mapping has its own way of building the native tree: adds value (null for none) at path below the current
// entry, or target when there is none, with the operation of leaf.
qerrno add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value);

// A container that is one container on the native side, too, at path below the current entry: created, deleted or
// replaced as a whole. Answers TVK_SKIP_NODE when it is deleted.
qerrno settle_container(tvk_map_ctx ctx, const Node *node, Node *target, const char *path);

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

// Refuses a value that is none of those, and tells them.
qerrno refuse_choice(tvk_map_ctx ctx, const Node *leaf, const ValuePair *values);

// Refuses a value that is of another module, or of none.
qerrno refuse_identity(tvk_map_ctx ctx, const Node *leaf, const char *ns);

// Entering any other container in a read: in a propagation all of it is meant, whatever the node above has.
qerrno enter_read(tvk_map_ctx ctx);

// A key leaf: the list's handler has taken it already; in a read it opens the entry.
template <const ListShape &kList>
qerrno handle_key(tvk_map_ctx ctx, const Node *node, Node *target) {
    const bool is_asked =
        is_read(ctx) && tvk_map_get_node_type(node) != TVK_NODE_TYPE_NONE && is_of_model(ctx, *node, kList.ns);
    Place place{};
    return is_asked && ctx->state->delete_walk_active != 1 && native_entry(ctx, kList) != nullptr
               ? open_entry(ctx, target, kList, place)
               : TVK_OK;
}

// A child that the mapping has no handler for: it selects nothing in a read. In a propagation it is a node above, which
// needs nothing here.
qerrno handle_unmapped(tvk_map_ctx ctx, const Node *node, Node *target);

}  // namespace mapping

#endif
