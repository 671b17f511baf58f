// Describes the lists of the response, and the native entries that they are answered from.
#ifndef EXAMPLES_COMMON_LIST_SHAPE_H
#define EXAMPLES_COMMON_LIST_SHAPE_H

#include "memory.h"
#include "value_types.h"

namespace mapping {

// Tells whether the request is a read.
bool is_read(tvk_map_ctx ctx);

// Returns the root of the native tree, by way of the request's session, or null when the session has none.
const Node *native_root(tvk_map_ctx ctx);

// A second key that has the same value in all entries of the native side.
struct FixedKey {
    const char *tag;
    const char *value;
    const char *value_ns;  // the module of an identity, else null
};

// A list of the response. A list inside of another one is of the next level.
struct ListShape {
    int level;
    const ListShape *parent;
    const char *path;  // below the top container
    const char *key;
    const ValueType *key_type;  // null when native_key knows the values
    const char *ns;
    // Returns the nodes that may stand for an entry, given the native node of the entry around it, or the native root.
    Nodes (*candidates)(tvk_map_ctx ctx, const Node *outer);
    // Returns the key of a candidate, given the key of the entry around it, or null. Null says that it is no entry.
    const char *(*key_of)(const Node *candidate, const char *outer_key, Scratch &scratch);
    // Returns the text that a candidate is found by.
    TextOf text_of;
    // Returns the text to find an entry by its key, or null when the native side has no such entry. Without it the text
    // is the key.
    const char *(*native_key)(const char *key, const char *outer_key, Scratch &scratch) = nullptr;
    // Returns the key of the outer entry of a candidate. It is for candidates of all outer entries in one list.
    TextOf outer_key_of = nullptr;
    const char *key_ns = nullptr;  // the module of keys that are identities
    const FixedKey *fixed_key = nullptr;
};

// Tells whether the value of leaf, if it names a module, names value_ns. When value_ns is null, any module will do.
bool is_of_module(const Node &leaf, const char *value_ns);

// These return the native node and the key of the entry of list that is being answered, or null while none is.
const Node *native_entry(tvk_map_ctx ctx, const ListShape &list);
const char *entry_key(tvk_map_ctx ctx, const ListShape &list);

// Returns the entry of a native list with that text, or null when there is none, or no memory to find it.
const Node *find_entry(tvk_map_ctx ctx, Nodes list, TextOf text_of, const char *text);

// Returns the value of the child of that name, for a text_of.
Text child_text(const Node &entry, const char *tag);

// Tells whether the namespace of a request node is the model's. A read accepts a node without a namespace, too.
bool is_of_model(tvk_map_ctx ctx, const Node &node, const char *ns);
// Refuses node, which is not in namespace ns.
qerrno refuse_namespace(tvk_map_ctx ctx, const Node *node, const char *ns);

}  // namespace mapping

#endif
