/*
 * The data tree record and its codec.
 *
 * A data tree is a tree of records held by value: a record owns its strings and the contiguous array of its
 * children. A pointer into a child array is valid only until that array is next grown or shrunk.
 *
 * A field counts as set only when its presence bit is set: readers test the bit first, writers set it with the
 * field.
 */
#ifndef QIDL_TVK_DATATREE_H
#define QIDL_TVK_DATATREE_H

#include <stddef.h>
#include <stdint.h>

#include "tvk_status.h"

#ifdef __cplusplus
extern "C" {
#endif

/* An attribute of a node, or one key of an insert record. */
struct qidl_tvk_name_value {
    char *name;
    char *value;
    void *framework;
};

enum qidl_tvk_operation {
    TVK_OPERATION_MERGE = 0,
    TVK_OPERATION_REPLACE = 1,
    TVK_OPERATION_CREATE = 2,
    TVK_OPERATION_DELETE = 3,
    TVK_OPERATION_REMOVE = 4
};

/*
 * Calls entry(value, name) for each edit operation and its name in NETCONF, in the order of the values. Every table of
 * operations is made from this list, so that a new operation is named everywhere.
 */
#define TVK_FOR_EACH_OPERATION(entry)                                                                                 \
    entry(TVK_OPERATION_MERGE, "merge") entry(TVK_OPERATION_REPLACE, "replace") entry(TVK_OPERATION_CREATE, "create") \
        entry(TVK_OPERATION_DELETE, "delete") entry(TVK_OPERATION_REMOVE, "remove")

enum qidl_tvk_insert_position {
    TVK_INSERT_LAST = 0,
    TVK_INSERT_FIRST = 1,
    TVK_INSERT_BEFORE = 2,
    TVK_INSERT_AFTER = 3
};

/* Bits of qidl_tvk_edit_insert::insert_presence. */
#define TVK_INSERT_HAS_POSITION 0x1u
#define TVK_INSERT_HAS_KEYS 0x2u
#define TVK_INSERT_HAS_VALUE 0x4u

/* The YANG insert attribute of an entry that is ordered by the user. Copied as a whole, never field by field. */
struct qidl_tvk_edit_insert {
    uint32_t position;                /* enum qidl_tvk_insert_position */
    struct qidl_tvk_name_value *keys; /* keys of the entry that before and after refer to */
    int32_t key_count;
    char *keys_str;          /* the text that the keys were read from; copied, never interpreted */
    uint8_t keys_presence;   /* 2 bits: either one means that keys are present */
    char *value;             /* the leaf-list value that before and after refer to */
    uint8_t value_presence;  /* 2 bits: either one means that a value is present */
    uint8_t insert_presence; /* 3 bits: TVK_INSERT_HAS_* */
};

enum qidl_tvk_node_type {
    TVK_NODE_TYPE_NONE = 0,
    TVK_NODE_TYPE_SELECTION = 1,
    TVK_NODE_TYPE_SELECTION_ALT = 2,
    TVK_NODE_TYPE_CONTAINER = 3,
    TVK_NODE_TYPE_LIST = 4,
    TVK_NODE_TYPE_CONTENT_MATCH = 6
};

/* The low four bits of qidl_tvk_schema_info::flags say which fields are set; this one is node_type's. */
#define TVK_SCHEMA_INFO_PRESENCE 0x0fu
#define TVK_SCHEMA_INFO_HAS_NODE_TYPE 0x04u

struct qidl_tvk_schema_info {
    uint32_t framework_1;
    uint32_t framework_2;
    uint32_t node_type; /* enum qidl_tvk_node_type */
    uint32_t framework_3;
    uint8_t flags;
};

/* Verdict of the get filter: 2 keeps the node and the nodes kept below it, 3 keeps the node and all below it. */
enum qidl_tvk_node_kind {
    TVK_NODE_KIND_NONE = 0,
    TVK_NODE_KIND_DN = 1,
    TVK_NODE_KIND_KN = 2,
    TVK_NODE_KIND_KA = 3,
    TVK_NODE_KIND_DA = 4,
    TVK_NODE_KIND_TREE_TRAVERSE = 5
};

/* Presence bits of a record. The two top bits belong to the framework and survive a reset. */
#define TVK_HAS_TAG 0x0001u
#define TVK_HAS_DATA 0x0002u
#define TVK_HAS_NS 0x0004u
#define TVK_HAS_OPERATION 0x0010u
#define TVK_HAS_ATTRIBUTES 0x0020u
#define TVK_HAS_SUBTREES 0x0040u
#define TVK_HAS_SUBTREE_INDEX 0x0080u
#define TVK_HAS_SCHEMA_INFO 0x0100u
#define TVK_HAS_IS_KEY 0x0200u
#define TVK_HAS_EDIT_INSERT 0x0400u
#define TVK_HAS_NODE_KIND 0x0800u
#define TVK_HAS_DATA_NS 0x1000u
#define TVK_PRESENCE_FRAMEWORK 0xc000u

/* One node of a request or response. Exactly 200 bytes. */
struct qidl_tvk_datatree {
    char *tag;  /* name, without prefix */
    char *data; /* value of a leaf, leaf-list entry or key */
    char *ns;   /* namespace of the node */
    uint32_t framework_word;
    uint32_t operation; /* enum qidl_tvk_operation */
    struct qidl_tvk_name_value *attributes;
    int32_t attribute_count;
    struct qidl_tvk_datatree *subtrees; /* children by value, in document order */
    int32_t subtree_count;
    int32_t subtree_index; /* 1-based place among its siblings, set when it was appended as an instance of its own */
    struct qidl_tvk_schema_info schema_info;
    uint64_t framework_words[3];
    uint8_t is_key; /* 1 on a child that carries a list key */
    struct qidl_tvk_edit_insert edit_insert;
    uint32_t node_kind; /* enum qidl_tvk_node_kind */
    char *data_ns;      /* namespace that qualifies the value (of an identity) */
    uint8_t framework_byte;
    uint16_t presence; /* TVK_HAS_* */
};

typedef void *(*tvk_gpb_alloc_fp)(size_t size, void *arg);
typedef void (*tvk_gpb_free_fp)(void *block, void *arg);

/*
 * The codec's allocation functions, which callers hand to the operations below by address. They use the named heap and
 * ignore arg. tvk_gpb_alloc returns null when memory runs out. Freeing null does nothing.
 */
void *tvk_gpb_alloc(size_t size, void *arg);
void tvk_gpb_free(void *block, void *arg);

/*
 * Makes destination a deep copy of source. The old contents of destination are not looked at. Every string, attribute,
 * key, insert record and subtree is copied, and all plain fields and presence bits with them. The bits alone do not
 * decide: a string whose bit is clear is copied as well. attributes is followed only when attribute_count is
 * above zero; a null array with a count is copied as it is. Memory comes from allocate(size, arg).
 *
 * Returns
 * - 0: the copy is complete.
 * - any other: an allocation failed. destination holds a part of the copy that qidl_tvk_datatree_free_ext can release.
 */
qerrno qidl_tvk_datatree_duplicate(struct qidl_tvk_datatree *destination, const struct qidl_tvk_datatree *source,
                                   tvk_gpb_alloc_fp allocate, void *arg);

/*
 * Releases everything that record owns, with release(block, arg), and nulls it; never the record itself. Works
 * by pointers, whatever the presence bits say; follows attributes only when attribute_count is above zero.
 * options is reserved and given as 0. A null record does nothing.
 */
void qidl_tvk_datatree_free_ext(struct qidl_tvk_datatree *record, tvk_gpb_free_fp release, void *arg, uint32_t options);

/*
 * Makes destination a deep copy of an insert record, on the terms of qidl_tvk_datatree_duplicate.
 *
 * Returns
 * - 0: the copy is complete.
 * - any other: an allocation failed. destination can be released with the record that it stands in.
 */
qerrno qidl_tvk_edit_ins_duplicate(struct qidl_tvk_edit_insert *destination, const struct qidl_tvk_edit_insert *source,
                                   tvk_gpb_alloc_fp allocate, void *arg);

/*
 * Dumps tree to the debug log of log_filter, each line behind title (null for none). depth is the indent of the
 * first level, max_depth the number of levels to show (0 for all), options is reserved.
 *
 * Returns
 * - 0: always.
 */
qerrno tvk_gpb_datatree_trace_internal(void *const *log_filter, const struct qidl_tvk_datatree *tree, const char *title,
                                       uint32_t depth, uint32_t max_depth, uint32_t options);

#ifdef __cplusplus
}

#include <type_traits>
static_assert(std::is_standard_layout<struct qidl_tvk_datatree>::value, "the record crosses the C surface");
#define TVK_STATIC_ASSERT static_assert
#else
#define TVK_STATIC_ASSERT _Static_assert
#endif

TVK_STATIC_ASSERT(sizeof(struct qidl_tvk_datatree) == 200, "a data tree record is 200 bytes");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, operation) == 28, "layout of the data tree record");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, subtrees) == 48, "layout of the data tree record");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, schema_info) == 64, "layout of the data tree record");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, is_key) == 112, "layout of the data tree record");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, edit_insert) == 120, "layout of the data tree record");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, node_kind) == 176, "layout of the data tree record");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, data_ns) == 184, "layout of the data tree record");
TVK_STATIC_ASSERT(offsetof(struct qidl_tvk_datatree, presence) == 194, "layout of the data tree record");
TVK_STATIC_ASSERT(sizeof(struct qidl_tvk_name_value) == 3 * sizeof(void *), "three pointer-sized fields");

#endif
