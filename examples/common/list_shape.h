// The lists of the response, and the native entries that they are answered from.
#ifndef EXAMPLES_COMMON_LIST_SHAPE_H
#define EXAMPLES_COMMON_LIST_SHAPE_H

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

}  // namespace mapping

#endif
