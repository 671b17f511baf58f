// Finds and enters nodes and list entries of the native tree, and joins the operations of an edit on them.
#ifndef EXAMPLES_COMMON_TREE_H
#define EXAMPLES_COMMON_TREE_H

#include <cstdint>

#include "tvk_datatree.hpp"
#include "tvk_map.h"

namespace mapping {

using tvk::Node;
using tvk::NodeRange;
using Nodes = NodeRange<const Node>;

// Tells whether two texts are there and equal.
inline bool equal(const char *a, const char *b) {
    return tvk_map_do_these_match(a, b) != 0;
}

// Returns the children of a node. A null node has none.
inline Nodes children_of(const Node *node) {
    return node != nullptr ? tvk::children(*node) : Nodes();
}
inline NodeRange<Node> children_of(Node *node) {
    return node != nullptr ? tvk::children(*node) : NodeRange<Node>();
}

// Returns the node at path below node, or null when it is missing or node is null.
const Node *find(const Node *node, const char *path);
Node *find(Node *node, const char *path);

// A list of the native tree, with the container around it.
struct List {
    const char *container;
    const char *name;
    const char *key;
    const char *ns;
};

// Makes the entry of that key below parent the current one, and adds it and the container around it when they are
// missing. The current entry is the request's pending list node, without a trim path: paths lead on from the entry.
qerrno enter_entry(tvk_map_ctx ctx, Node *parent, const List &list, const char *key_value);

// Returns the current entry, or null.
inline Node *current_entry(tvk_map_ctx ctx) {
    return ctx->state->pending_list_node;
}

// Returns the current entry, or target while there is none.
inline Node *current_node(tvk_map_ctx ctx, Node *target) {
    return current_entry(ctx) != nullptr ? current_entry(ctx) : target;
}

// ---- Operations ----
//
// The native tree is sent to a device that may hold other data. So an operation of the request is joined with what the
// same request has done to that node before: a replaced node stays replaced when something is merged into it, and a
// deleted node that is there again replaces the device's node.

// Lets a node that is marked as deleted replace the device's node. Does nothing to other nodes, and to a null one.
void take_back_removal(Node *native);

// Marks native with the operation of node, the request node that it stands for, if that carries one of its own. within
// is the list entry around native when native was there before this node of the request, else null.
void give_operation(tvk_map_ctx ctx, const Node *node, Node *native, const Node *within);

// Drops all children of an entry but the first key_count, the keys, and marks it with the operation of node, a delete.
void remove_entry(tvk_map_ctx ctx, const Node *node, Node *entry, int32_t key_count, const Node *within);

// Gives the current entry, just entered, the operation of node, the list entry that it stands for. A deleted entry
// keeps its keys alone. Returns TVK_SKIP_NODE for a deleted entry, as nothing below it matters, else TVK_OK.
qerrno settle_entry(tvk_map_ctx ctx, const Node *node, int32_t key_count);

// Marks the current entry as created when a node around it in the request is created. It is for native entries that
// stand apart from the native node of that one.
void give_creation(tvk_map_ctx ctx);

// ---- Refusing ----

// Records node as the node that the request fails at, and the reason, which is made as printf makes it. Returns status.
// The reason goes on behind the node's name, as in "mtu: 'banana' is no uint16".
[[gnu::format(printf, 4, 5)]] qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status, const char *reason, ...);

// Holds a value as it stands in a reason: in quotes, and cut when it is long. A null value is shown as an empty one.
struct Quoted {
    explicit Quoted(const char *value);
    char text[80];
};

// Leaves out a node of the request that the mapping does not know or cannot edit. The framework gathers such nodes and
// their reasons; one that does not gets a failure. reason may be null.
qerrno leave_unmapped(tvk_map_ctx ctx, const Node *node, const char *reason = nullptr);

}  // namespace mapping

#endif
