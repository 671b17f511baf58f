/*
 * The mapping context, the request state record and the limits, which all operations of the library share.
 *
 * Conventions that hold for every call:
 *
 * - Ownership. Arguments are borrowed unless the operation says that it takes them over. A tree belongs to the
 *   holder of its root. Strings and arrays of a node belong to the node. Strings handed in are copied.
 * - Lifetime. A pointer to a node is valid until the child array that the node stands in is next grown or shrunk:
 *   adding a sibling may move it. Hold the parent and the position instead.
 * - Null. A null mapping context stops the process with an assertion, unless the operation names an answer to it.
 *   An operation that logs "Start" asserts at once, any other one when it comes to a message. Any other null
 *   argument that an operation does not allow is logged as ERR "NULL argument(s) passed!" and answered with
 *   TVK_ERR_INVALID, before any effect, unless the operation says otherwise. A null request state record, or one
 *   without a request, counts as no flags set and no read, add or delete request.
 * - Out arguments are written on success only, unless the operation says otherwise.
 * - Status. Zero is success. The comment of an operation lists each status with its condition. Messages go to the
 *   debug log and the trace; they never change the status.
 * - Threads. A context and its trees are used by one thread at a time. The library has no threads, no locks and
 *   no main loop.
 */
#ifndef TVK_MAP_TYPES_H
#define TVK_MAP_TYPES_H

#include <stdint.h>

#include "qidl_tvk_datatree.h"
#include "tvk_session.h"
#include "tvk_status.h"

#if defined(__GNUC__)
#define TVK_MAP_API __attribute__((visibility("default")))
#else
#define TVK_MAP_API
#endif

/* C++ callers may leave such an argument out; C callers pass the value. */
#ifdef __cplusplus
#define TVK_MAP_DEFAULT(value) = value
#else
#define TVK_MAP_DEFAULT(value)
#endif

#define TVK_MAP_MAX_HIERARCHY_LEVELS 50
#define TVK_MAP_MAX_OUTPUT_ENTRIES 50
#define TVK_MAP_MAX_ITREE_ITEMS 50
#define TVK_MAP_MAX_RECORDED_PATHS 50
#define TVK_MAP_MAX_PATH 1000 /* bytes, with the terminator */
#define TVK_MAP_CURRENT_LIST_SLOTS 32

/* Bits of tvk_map_request_state::build_flags. */
#define TVK_BUILD_FILTERED 0x4u          /* count appended nodes; with TVK_BUILD_UNFILTERED clear, ask the get filter */
#define TVK_BUILD_UNFILTERED 0x8u        /* do not ask the get filter */
#define TVK_BUILD_REPLACE_REMOVING 0x40u /* first pass of a replace */
#define TVK_BUILD_REPLACE_MERGING 0x80u  /* second pass of a replaced container */
#define TVK_BUILD_ERROR_NODE 0x100u      /* the next path added is kept as the error path */

/* Bits of tvk_map_request_state::walk_flags. */
#define TVK_WALK_ALL_CHILDREN 0x1u
#define TVK_WALK_SELECTION_SEEN 0x2u
#define TVK_WALK_CONTENT_MATCH_SEEN 0x4u
#define TVK_WALK_CONTENT_MATCH_IN_REQUEST 0x10000u

/* Values of tvk_map_request_state::path_record_mode. */
#define TVK_PATH_RECORD_OFF 0u
#define TVK_PATH_RECORD_CUT_LAST 1u
#define TVK_PATH_RECORD_KEEP_LAST 2u

/* Values of tvk_map_request_state::list_key_state. */
#define TVK_LIST_KEY_NONE 0u
#define TVK_LIST_KEY_PROPAGATING 1u /* an entry named by its keys alone is propagated */
#define TVK_LIST_KEY_IN_HANDLER 2u  /* a list handler runs, for a delete of an entry by its keys */

/* Kinds of a hierarchy level. */
#define TVK_LEVEL_CONTAINER 1u
#define TVK_LEVEL_LIST 2u

#ifdef __cplusplus
extern "C" {
#endif

/* One container or list entry that the walk is inside. */
struct tvk_map_hierarchy_level {
    char *tag;                      /* owned */
    char *path;                     /* owned buffer of TVK_MAP_MAX_PATH bytes: "/" and the tags down to this level */
    struct qidl_tvk_datatree *node; /* borrowed */
    uint32_t kind;                  /* TVK_LEVEL_* */
};

/* A list entry of the output tree, tied to the hierarchy path at which it was made. */
struct tvk_map_output_entry {
    struct qidl_tvk_datatree *list_node; /* borrowed */
    char *trim_path;                     /* owned */
    char *hierarchy_path;                /* owned */
    uint32_t hierarchy_kind;
};

/* One level of the instance-tree stack: the instances that mapping code produced for a list. */
struct tvk_map_itree_item {
    struct qidl_tvk_datatree *nodes; /* owned when the first one's tag is "LIST_INSTANCE_NODE", else borrowed */
    uint32_t node_count;
    uint32_t borrowed; /* 1: the nodes are borrowed, whatever their tags are */
    uintptr_t extra;   /* 0, or a tmap_instance_fp (tvk_map_walk.h) */
};

struct tvk_map_itree_stack {
    struct tvk_map_itree_item *items[TVK_MAP_MAX_ITREE_ITEMS];
    uint32_t item_count;
};

/*
 * State of one request. The framework creates it zeroed with the context. When the request has ended, it calls
 * tvk_map_release_request_state (tvk_map_state.h), and then releases the record.
 */
struct tvk_map_request_state {
    struct tvk_request *request;
    char *error_node_tag; /* owned: the node, key or value that a failed request names */
    uint32_t build_flags; /* TVK_BUILD_* */
    uint32_t added_node_count;
    char path_record[TVK_MAP_MAX_RECORDED_PATHS][TVK_MAP_MAX_PATH];
    uint32_t path_record_count;
    uint32_t path_record_mode;
    struct qidl_tvk_datatree *datatree; /* the request's tree; the filter of a get */
    uint32_t replace_converted;         /* 1 while a replace is carried out as remove and merge */

    struct qidl_tvk_datatree *resp_tree_instance_root;
    struct qidl_tvk_datatree *req_tree_schema; /* owned */
    struct qidl_tvk_datatree *req_tree_schema_parent;
    struct qidl_tvk_datatree *req_tree_schema_last;
    uint8_t output_list_count;
    struct tvk_map_output_entry output_list[TVK_MAP_MAX_OUTPUT_ENTRIES];
    struct qidl_tvk_datatree *pending_list_node;
    char *pending_trim_path;      /* owned */
    char *pending_hierarchy_path; /* owned while pending_hierarchy_kind is not 0 */
    uint32_t pending_hierarchy_kind;
    uint8_t hierarchy_depth;
    struct tvk_map_hierarchy_level hierarchy[TVK_MAP_MAX_HIERARCHY_LEVELS];
    struct tvk_map_itree_stack *itree_stack; /* owned */
    struct qidl_tvk_datatree *create_node;
    uint32_t create_operation;

    char *error_xpath;    /* owned: set by the first failure of the request */
    char *error_xpath_ns; /* owned: the namespace that the prefix "ns1:" in error_xpath stands for */

    uint32_t delete_walk_active; /* 1 while a delete or read is propagated below a node */
    uint32_t list_key_state;     /* TVK_LIST_KEY_*: not 0 while the keys of a list entry are worked on */
    uint32_t walk_flags;         /* TVK_WALK_* */

    struct tvk_map_children_index *children_index; /* owned: made by lookups, see index_children_from */
    struct qidl_tvk_datatree *xpath_attachment;    /* the node that tvk_map_tree_xpath_operations is adding below */
};

/* The mapping context. The framework creates one per request. */
struct tvk_map_context {
    tvk_request_ctx *req_ctx;
    struct tvk_map_request_state *state;
    void *log_filter;
    void *err_log_handle;
    void *trc_log_handle;
    void *trace_handle;
    uint32_t trace_enabled;    /* non-zero: messages go to the trace as well */
    uint32_t list_operation;   /* operation of the list entry being parsed */
    uint32_t print_enabled;    /* non-zero: tvk_map_print_datatree_internal prints */
    uint32_t intf_config_flag; /* 1: intf_name places the next "interface-configuration" path */
    char *intf_name;

    uint32_t current_list_slot_count;
    char *current_list_node;                                    /* owned: path of the list that the walk is in */
    void *current_list_slot_first[TVK_MAP_CURRENT_LIST_SLOTS];  /* borrowed */
    void *current_list_slot_second[TVK_MAP_CURRENT_LIST_SLOTS]; /* borrowed */

    uint32_t dfs_trace; /* non-zero: the container filter phase traces its tables */

    /*
     * The children of a node with so many children or more are indexed: finding one of them by name, or a list entry by
     * its keys, then takes the same time however many there are. With 0 nothing is indexed: lookups scan, and read
     * nothing but the tree. 16 is a good value. Statuses, results and messages are the same either way.
     *
     * A framework that sets it promises, for as long as the request lasts, that only the library changes tags,
     * namespaces, instance numbers (subtree_index) and key values of children, and only the library adds, removes and
     * releases children. Other code that does so calls tvk_map_forget_children before. The index goes with
     * tvk_map_release_request_state.
     */
    uint32_t index_children_from;

    /*
     * Mapping code and framework talk to each other by the fields below. The library neither reads nor writes them.
     */
    void *mapping_data; /* the mapping's own, see tvk_map_module (tvk_map_module.h) */
    /*
     * A handler that fails the request may say why. failed_node is the node of the request at fault (borrowed).
     * failure_reason is a text that names the value and what would be right, as in "'banana' is no uint16": a block of
     * the named heap, which the framework releases with kel_named_free. Either may be null. A handler that sets them
     * anew releases the former reason before.
     */
    const struct qidl_tvk_datatree *failed_node;
    char *failure_reason;
    /*
     * In an edit a mapping calls this for each node of the request that it does not map, or that cannot be edited, and
     * goes on with TVK_OK. The framework takes the failure_reason over, if there is one, fails the request at the end,
     * and names all of these nodes at once. node must be a record of the request's tree. When the pointer is null the
     * mapping refuses the first such node itself.
     */
    void (*note_unmapped)(struct tvk_map_context *ctx, const struct qidl_tvk_datatree *node);
    void *framework_data; /* the framework's own */
};
typedef struct tvk_map_context *tvk_map_ctx;

#ifdef __cplusplus
}
#endif

#endif
