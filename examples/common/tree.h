// Trees of the native side as the example mappings edit them: finding nodes and list entries, and what an edit does
// to those that it deletes, replaces or finds deleted.
#ifndef EXAMPLES_COMMON_TREE_H
#define EXAMPLES_COMMON_TREE_H

#include <cstdint>

#include "tvk_datatree.hpp"
#include "tvk_map.h"

namespace mapping {

using tvk::Node;
using tvk::NodeRange;
using Nodes = NodeRange<const Node>;

inline bool equal(const char *a, const char *b) {
    return tvk_map_do_these_match(a, b) != 0;
}

// The children of a node. A null node has none.
inline Nodes children_of(const Node *node) {
    return node != nullptr ? tvk::children(*node) : Nodes();
}
inline NodeRange<Node> children_of(Node *node) {
    return node != nullptr ? tvk::children(*node) : NodeRange<Node>();
}

// The node at path below node; null when it is missing.
const Node *find(const Node *node, const char *path);
Node *find(Node *node, const char *path);

// A list of the native tree, in a container of its own.
struct List {
    const char *container;
    const char *name;
    const char *key;
    const char *ns;
};

// Makes the entry of that key, below parent, the current one; adds it, and the container around it, if need be. The
// current entry is the request's pending list node, without a trim path: paths lead on from the entry.
qerrno enter_entry(tvk_map_ctx ctx, Node *parent, const List &list, const char *key_value);

inline Node *current_entry(tvk_map_ctx ctx) {
    return ctx->state->pending_list_node;
}

// The current entry; target while there is none.
inline Node *current_node(tvk_map_ctx ctx, Node *target) {
    return current_entry(ctx) != nullptr ? current_entry(ctx) : target;
}

// ---- Operations ----
//
// What stands in the native tree is sent to a device that may hold other data. So an operation of the request is joined
// with what the same request has done to that node before: a replace stays one when something is merged into it, and
// what was deleted and is there again replaces what the device has.

// What was marked as deleted replaces what the device has. A null node was not marked.
void take_back_removal(Node *native);

// Marks native with the operation of the request node that it stands for, if that has one of its own. within is the
// list entry around native when native was there before this node of the request, else null.
void give_operation(tvk_map_ctx ctx, const Node *node, Node *native, const Node *within);

// Leaves an entry nothing but its first key_count children, the keys, and marks it with the operation of node, a
// delete.
void remove_entry(tvk_map_ctx ctx, const Node *node, Node *entry, int32_t key_count, const Node *within);

// Gives the current entry, just entered, the operation of the list entry that it stands for. A deleted one keeps its
// keys alone and answers TVK_SKIP_NODE, as nothing below it matters.
qerrno settle_entry(tvk_map_ctx ctx, const Node *node, int32_t key_count);

// The same for the current entry, natively no part of the one that holds it in the request: what creates the one
// creates the other.
void give_creation(tvk_map_ctx ctx);

// ---- Refusing ----

// Records node as what the request fails at, and the reason, made as printf makes it. The reason goes on behind the
// node's name, as in "mtu: 'banana' is no uint16".
[[gnu::format(printf, 4, 5)]] qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status, const char *reason, ...);

// A value as it stands in a reason, cut where it is long.
struct Quoted {
    explicit Quoted(const char *value);
    char text[80];
};

// A node of the request that the mapping does not know, or that cannot be edited, for a reason. Unless the framework
// gathers them, it ends the request.
qerrno leave_unmapped(tvk_map_ctx ctx, const Node *node, const char *reason = nullptr);

}  // namespace mapping

#endif
