// The native side: the list entry that values go to, and rules that say where a leaf's value goes below it.
#ifndef OPENCONFIG_INTERFACES_NATIVE_H
#define OPENCONFIG_INTERFACES_NATIVE_H

#include <cstddef>
#include <cstdint>

#include "tvk_map.h"

namespace interfaces {

using Node = struct qidl_tvk_datatree;

inline constexpr char kNativeNs[] = "urn:example:native-interfaces";
inline constexpr char kNativeInterfaces[] = "interface-configurations";
inline constexpr char kNativeInterface[] = "interface-configurations/interface-configuration";

// ---- The current native entry --------------------------------------------------------------------------------
//
// Paths that begin with its list's path are added below it: it is the request's pending entry.

inline Node *current_entry(tvk_map_ctx ctx) {
    return ctx->state->pending_list_node;
}

// Makes the entry key_name = key_value of the list at list_path, below root, the current one; adds it if need be.
qerrno enter_list(tvk_map_ctx ctx, Node *root, const char *list_path, const char *key_name, const char *key_value);

// The same for the native interface of that name. Entering the one that is current already costs nothing.
qerrno enter_interface(tvk_map_ctx ctx, Node *target, const char *name);

inline constexpr int32_t kInterfaceKeyCount = 2;

// Gives the current entry the operation of the list entry that it stands for. A deleted one keeps its keys alone
// (the first key_count children) and answers TVK_SKIP_NODE, as nothing below it matters.
qerrno settle_entry(tvk_map_ctx ctx, const Node *node, int32_t key_count);

// Marks an entry as deleted by operation, and leaves it nothing but its keys.
void remove_entry(Node *entry, int32_t key_count, uint32_t operation);

// A container that is one container on the native side, too, at path: deleted or replaced as a whole. Answers
// TVK_SKIP_NODE when it is deleted.
qerrno settle_container(tvk_map_ctx ctx, const Node *node, Node *target, const char *path);

// Adds a value at path with the operation of leaf.
qerrno add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value);

// ---- Rules ---------------------------------------------------------------------------------------------------

struct ValuePair {
    const char *openconfig;
    const char *native;
};

// One OpenConfig leaf.
struct LeafRule {
    const char *tag;
    const char *path;              // of the native leaf; null when the leaf has no counterpart (the copy of a key)
    const ValuePair *values;       // ended by a null pair; null when values are the same on both sides
    tmap_node_process_fp process;  // null, or what is done instead of adding the value at path
};

struct LeafRules {
    const LeafRule *rules;
    std::size_t count;
};

template <std::size_t kCount>
constexpr LeafRules leaf_rules(const LeafRule (&rules)[kCount]) {
    return {rules, kCount};
}

// A leaf by its rule; in a propagation, where node is not the leaf, all leaves of the table.
qerrno map_leaf(tvk_map_ctx ctx, const Node *node, Node *target, const LeafRules &rules);
qerrno map_all_leaves(tvk_map_ctx ctx, const Node *node, Node *target, const LeafRules &rules);

// The child handler of a container whose children are leaves.
template <const LeafRules &kRules>
qerrno leaves(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (ctx->state->delete_walk_active == 1) {
        return map_all_leaves(ctx, node, target, kRules);
    }
    return tmap_high_leaf_parse(ctx, node, target, node->tag, 0,
                                [](tvk_map_ctx c, const Node *leaf, Node *t) { return map_leaf(c, leaf, t, kRules); });
}

// Records node as what the request fails at.
qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status);

// A child that the mapping has no handler for.
qerrno refuse_child(tvk_map_ctx ctx, const Node *node, Node *target);

}  // namespace interfaces

#endif
