// The OpenConfig side of a read: the entries that the native tree has for a list, and the values that it answers
// with. What the filter did not ask for is left out while the response is built, or pruned from it afterwards.
#ifndef EXAMPLES_COMMON_ANSWER_H
#define EXAMPLES_COMMON_ANSWER_H

#include "memory.h"
#include "value_types.h"

namespace mapping {

bool is_read(tvk_map_ctx ctx);

// The root of the native tree, by way of the request's session. Null when the session has none.
const Node *native_root(tvk_map_ctx ctx);

// A second key, with the same value in all entries that the native side knows of.
struct FixedKey {
    const char *tag;
    const char *value;
    const char *value_ns;  // of an identity, else null
};

// A list of the response. A list inside another one is of the next level.
struct ListShape {
    int level;
    const ListShape *parent;
    const char *path;  // below the top container
    const char *key;
    const ValueType *key_type;  // null: its values are those that native_key knows
    const char *ns;
    // The nodes that may stand for an entry, given the native node of the entry around it, or the native root.
    Nodes (*candidates)(tvk_map_ctx ctx, const Node *outer);
    // The key of a candidate, given the key of the entry around it (or null); null when it stands for none.
    const char *(*key_of)(const Node *candidate, const char *outer_key, Scratch &scratch);
    // What candidates are told apart by, and that of the entry with a key, null when the native side has no such one.
    TextOf text_of;
    const char *(*native_key)(const char *key, const char *outer_key, Scratch &scratch) = nullptr;  // null: the key
    // Where the candidates of all outer entries stand in one list: the key of its outer entry.
    TextOf outer_key_of = nullptr;
    const char *key_ns = nullptr;  // of keys that are identities
    const FixedKey *fixed_key = nullptr;
};

// Whether the value of leaf, if it names a module, names that of value_ns. A null value_ns is of no module.
bool is_of_module(const Node &leaf, const char *value_ns);

// The native node, and the key, of the entry of list that is being answered; null while none is.
const Node *native_entry(tvk_map_ctx ctx, const ListShape &list);
const char *entry_key(tvk_map_ctx ctx, const ListShape &list);

// The entry of a native list with that text; null when there is none, or no memory to find it.
const Node *find_entry(tvk_map_ctx ctx, Nodes list, TextOf text_of, const char *text);

// The value of the child of that name, as a text to tell entries apart by.
Text child_text(const Node &entry, const char *tag);

// True when the namespace of a request node is the model's. A read accepts a node without a namespace, too.
bool is_of_model(tvk_map_ctx ctx, const Node &node, const char *ns);
qerrno refuse_namespace(tvk_map_ctx ctx, const Node *node, const char *ns);

// A container parse for a container of that namespace: in an edit one of another is refused, in a read it selects
// nothing.
qerrno parse_container(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns);

// A list parse. In an edit the keys are checked first, each by its name, since the library counts them alone. In a read
// each native entry that the request's keys admit is an instance; push_instances is what the list handler does then.
qerrno parse_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list);
qerrno push_instances(tvk_map_ctx ctx, const ListShape &list);

// Each mapping has its own way of building the response: adds the entry of list that is being answered, with its keys,
// and those around it, where the response has them not. The output list holds an entry for each level that is open,
// outermost first. Place is where a leaf of the entry is added, by its path below the top container.
struct Place {
    Node *node;
    int flags;
};
qerrno open_entry(tvk_map_ctx ctx, Node *target, const ListShape &list, Place &place);

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

// Records the first failure of an answer, which fails the read, and returns status.
qerrno note_failure(tvk_map_ctx ctx, qerrno status);

// Walks a top container. In an edit its target is the native root, in a read its own node in the response.
qerrno parse_top(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns);

}  // namespace mapping

#endif
