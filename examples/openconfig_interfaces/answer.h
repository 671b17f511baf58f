// The OpenConfig side of a read: the entries that the native tree has for a list, and the values that it answers
// with. What the filter did not ask for is left out while the response is built, or pruned from it afterwards.
#ifndef OPENCONFIG_INTERFACES_ANSWER_H
#define OPENCONFIG_INTERFACES_ANSWER_H

#include "native.h"

namespace interfaces {

bool is_read(tvk_map_ctx ctx);

// The root of the native tree, by way of the request's session. Null when the session has none.
const Node *native_root(tvk_map_ctx ctx);

// The children of a native node.
struct NodeRange {
    Node *first;
    int32_t count;
    Node *begin() const { return first; }
    Node *end() const { return first + count; }
};
NodeRange children_of(const Node *node);

// A list of the response. A list inside another one is of the next level.
struct ListShape {
    int level;
    const ListShape *parent;
    const char *path;  // below the top container
    const char *key;
    const char *ns;
    // The nodes that may stand for an entry, given the native node of the entry around it (or the native root).
    NodeRange (*candidates)(tvk_map_ctx ctx, const Node *outer);
    // The key of a candidate, given the key of the entry around it (or null); null when it stands for none.
    const char *(*key_of)(const Node *candidate, const char *outer_key);
};

// The native node, and the key, of the entry of list that is being answered.
const Node *native_entry(tvk_map_ctx ctx, const ListShape &list);
const char *entry_key(tvk_map_ctx ctx, const ListShape &list);

// A list parse that answers a read: each native entry that the request's keys admit is an instance. In an edit it is
// tmap_high_list_parse alone. push_instances is what the list handler does in a read.
qerrno parse_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list);
qerrno push_instances(tvk_map_ctx ctx, const ListShape &list);

// Adds the entry of list that is being answered, with its key, and those around it, where the response has them not.
qerrno open_entry(tvk_map_ctx ctx, Node *target, const ListShape &list);

// A leaf of the response, at path below the top container.
struct Answer {
    const ListShape *list;  // null: it stands in none
    const char *path;
    const char *in_ns;  // namespace of what it stands in
    const char *ns;
    const char *value;
    const char *value_ns;  // null: no identity
    bool is_default;       // to be told as one
};
qerrno answer_value(tvk_map_ctx ctx, Node *target, const Answer &answer);

}  // namespace interfaces

#endif
