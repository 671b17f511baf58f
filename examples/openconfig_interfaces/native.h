// The native side of an edit: the list entry that values go to.
//
// That entry is the request's pending entry: paths that begin with its list's path are added below it. Paths given
// here lead on from there, or, while there is no such entry, from the root of the native tree.
#ifndef OPENCONFIG_INTERFACES_NATIVE_H
#define OPENCONFIG_INTERFACES_NATIVE_H

#include <cstdint>

#include "tvk_map.h"

namespace interfaces {

using Node = struct qidl_tvk_datatree;

inline constexpr char kNativeNs[] = "urn:example:native-interfaces";
inline constexpr char kNativeInterfaces[] = "interface-configurations";
inline constexpr char kNativeInterface[] = "interface-configurations/interface-configuration";
inline constexpr char kNativeStates[] = "interface-states";

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

// The node at path below node; null when it is missing.
const Node *find(const Node *node, const char *path);

inline bool equal(const char *a, const char *b) {
    return tvk_map_do_these_match(a, b) != 0;
}

// Records node as what the request fails at.
qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status);

}  // namespace interfaces

#endif
