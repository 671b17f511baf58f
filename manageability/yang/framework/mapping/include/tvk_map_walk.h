/*
 * Walking a request: the parse callbacks that generated mapping code calls, the tables that it hands them, the request
 * tree schema, and values of nodes that the walk is inside. The state that a walk keeps is in tvk_map_state.h.
 */
#ifndef TVK_MAP_WALK_H
#define TVK_MAP_WALK_H

#include <stdint.h>

#include "tvk_map_state.h"
#include "tvk_map_types.h"
#include "tvk_map_util.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Tables and handlers of mapping code ----------------------------------------------------------------- */

/*
 * Handles a node of the request; target is what the mapping builds. A non-zero status ends the walk. Any handler of
 * a table may be null: it then does nothing.
 */
typedef qerrno (*tmap_node_process_fp)(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                       struct qidl_tvk_datatree *target);

/* Handles a container itself, before its children. TVK_SKIP_NODE leaves the container out. */
typedef qerrno (*tmap_cont_handler_fp)(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, uint32_t child_count,
                                       struct qidl_tvk_datatree *target);

/* Handles an instance of an instance item, before its children are walked; the status is ignored. */
typedef qerrno (*tmap_instance_fp)(tvk_map_ctx ctx, struct qidl_tvk_datatree *instance,
                                   struct qidl_tvk_datatree *target, int reserved);

/* Bits of tmap_child_entry::flags. */
#define TMAP_CHILD_PROPAGATE 0x1u /* called as well when a delete or read is propagated below the parent */
#define TMAP_CHILD_KEY 0x2u       /* a key leaf of a list */

/* A child of a container or list with a handler of its own. */
struct tmap_child_entry {
    const char *ctag;
    tmap_node_process_fp handler;
    uint8_t flags; /* TMAP_CHILD_* */
};

/* The table of a container. */
struct tmap_node_cont_info {
    tmap_cont_handler_fp cont_handler;
    tmap_node_process_fp child_handler; /* children that no entry claims; in a propagation the container itself */
    const struct tmap_child_entry *child_conts;
    uint16_t child_cont_count;
    const void *generator_data; /* not read */
    const char *unsupported_ns; /* children of this namespace are refused, in a read left out; may be null */
};
typedef const struct tmap_node_cont_info *tmap_node_cont_info_p;

/* A key of a list. The last two are for tvk_map_check_oc_leafref. */
struct tmap_key_entry {
    const char *key_tag;
    const char *leafref_path;   /* hierarchy path of the list entry */
    const char *leafref_target; /* child of the entry that holds the key's copy */
};

/* The table of a list. */
struct tmap_node_list_info {
    tmap_node_process_fp list_handler;  /* the entry itself; may push an instance item. TVK_SKIP_NODE leaves it out */
    tmap_node_process_fp child_handler; /* children that no entry claims; in a propagation the list entry itself */
    const struct tmap_child_entry *child_conts;
    const struct tmap_key_entry *keys;
    uint16_t child_cont_count;
    uint8_t key_count;
    const char *list_path; /* for tvk_map_update_current_list_node */
    const char *unsupported_ns;
};
typedef const struct tmap_node_list_info *tmap_node_list_info_p;

/* ---- Parse callbacks --------------------------------------------------------------------------------------
 *
 * The request node is declared read-only and changed all the same: node types and key marks are set, and during a
 * replace or a propagation its operation and children are changed and given back.
 */

/*
 * Walks a container: calls cont_handler, then for each child the entry that bears its tag, or child_handler.
 *
 * A delete or remove with children is refused. A replace is walked twice: as a remove without children, then as a
 * merge with them; the node stays a merge. A container without children in a delete or read (or one that only
 * compares values) is propagated: every entry with TMAP_CHILD_PROPAGATE (in a get-config every entry) and then
 * child_handler are called with the container itself; the statuses of these calls are ignored. Outside a propagation
 * the container is a level of the node hierarchy meanwhile.
 *
 * Returns
 * - 0: the container is handled, or cont_handler answered TVK_SKIP_NODE.
 * - TVK_ERR_INVALID: node or target is null, with the error path recorded; or info is null; or a delete or remove has
 *   children.
 * - TVK_ERR_NOT_FOUND: a child has no tag, or the children's array is missing.
 * - TVK_ERR_NAMESPACE: a child that no entry claims is in unsupported_ns, outside a read. error_node_tag and the error
 *   path are recorded.
 * - any other: the first status other than 0 of a handler. It ends the walk.
 */
TVK_MAP_API qerrno tmap_high_container_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                             struct qidl_tvk_datatree *target, tmap_node_cont_info_p info);

/*
 * Walks a list entry: checks its keys, calls list_handler, then handles its children as a container's, or, when
 * list_handler pushed an instance item, the children of each instance. The item is popped at the end, unless it has
 * no nodes: then it stays until mapping code pops it. A delete or remove with children is not refused.
 *
 * The check of the keys only counts: there must be as many leaves called like one of the keys as the list has keys
 * (modulo 256), or none; likewise with a value. A key given twice makes up for one that is missing. So every handler
 * looks up each key by name, and checks that it is there with a value, before it uses it.
 *
 * A delete or read of an entry that is named by its keys alone is propagated as a container's, with the keys on top of
 * the instance-tree stack; of these calls the last entry's status counts. In a read that selects entries by other
 * leaves than keys the key leaves are added to node, and the status of the last one counts.
 *
 * Returns
 * - 0: the entry is handled, or list_handler answered TVK_SKIP_NODE.
 * - TVK_ERR_INVALID: node or target is null, with the error path recorded; or info is null; or its list_path is null,
 *   and no handler was called.
 * - TVK_ERR_NOT_FOUND: an add request names no children at all, a child has no tag, or the children's array is missing.
 * - TVK_ERR_LIST_KEY: by the count keys are missing or, in an add request, without value. error_node_tag and the error
 *   path are recorded.
 * - TVK_ERR_KEY_OPERATION: a key leaf is to be deleted. The error path is recorded.
 * - TVK_ERR_NAMESPACE: a child that no entry claims is in unsupported_ns, outside a read; or tvk_map_check_oc_leafref
 *   returned it, and node then stays a level of the hierarchy. error_node_tag and the error path are recorded.
 * - TVK_ERR_NO_MEMORY: list_path could not be kept as the current list, and no handler was called; or an entry named by
 *   its keys alone is to be deleted or read whole, its keys could not be kept at hand, and none of its children's
 *   handlers was called for that; or a key leaf could not be added.
 * - any other: the first status other than 0 of a handler, which ends the walk; or the status of the last call of a
 *   propagation by keys, or of the last key leaf added.
 */
TVK_MAP_API qerrno tmap_high_list_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                        struct qidl_tvk_datatree *target, tmap_node_list_info_p info);

/*
 * Handles a leaf: calls process, then, outside propagation and key work, marks the leaf's node type for the get
 * filter. process must not add siblings to the leaf, which would move it. name and value are not used.
 *
 * Returns
 * - TVK_ERR_INVALID: leaf or target is null, with the error path recorded; or process is null.
 * - any other: the status of process.
 */
TVK_MAP_API qerrno tmap_high_leaf_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *leaf,
                                        struct qidl_tvk_datatree *target, const char *name, uint8_t value,
                                        tmap_node_process_fp process);

/*
 * A hook that generated code calls at a fixed point. It does nothing, and uses no argument.
 *
 * Returns
 * - 0: always.
 */
TVK_MAP_API qerrno tmap_high_augment_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                           struct qidl_tvk_datatree *target, tmap_node_cont_info_p info);
TVK_MAP_API qerrno tvk_map_cont_handle_when_statement(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                                      struct qidl_tvk_datatree *target, tmap_node_cont_info_p info);
TVK_MAP_API qerrno tvk_map_list_handle_when_statement(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                                      struct qidl_tvk_datatree *target, tmap_node_list_info_p info);

/* ---- Request tree schema ----------------------------------------------------------------------------------
 *
 * A skeleton of the tags and namespaces that a request visited, below a root called "root". A node that has been
 * descended into keeps its parent in attributes, with attribute_count 0.
 */

/* Kind of a leaf, which is not descended into. */
#define TVK_SCHEMA_LEAF 3u

/*
 * Adds a node with node's tag and namespace below the node that was added last, and descends to it unless kind is
 * TVK_SCHEMA_LEAF. The first call of a request makes the root and descends whatever kind is. A child of the same
 * tag and namespace is descended into again; a child whose namespace equals node's tag counts as there already,
 * and nothing changes.
 *
 * Returns
 * - 0: the node is in the schema; or it is an excluded node, and the request adds nothing.
 * - TVK_ERR_INVALID: the context, the state record or node is null, with nothing logged; or node has no tag or
 *   namespace.
 * - TVK_ERR_NO_MEMORY: the schema is as it was; after the first call there is none, or its bare root.
 * - TVK_ERR_UNSUPPORTED: as tvk_map_datatree_add_subtree_flagged.
 */
TVK_MAP_API qerrno tvk_map_add_node_to_req_tree_schema(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                                       uint32_t kind);

/*
 * Ascends to the parent; the root is its own. Ascending before anything was added stops the process with an assertion.
 *
 * Returns
 * - 0: always. Without a context or state record nothing changes.
 */
TVK_MAP_API qerrno tvk_map_update_req_tree_schema(tvk_map_ctx ctx);

/*
 * Releases the schema. The next node that is added starts a new one; do not ascend before. Without a context, state
 * record or schema nothing happens.
 */
TVK_MAP_API void tvk_map_free_req_tree_schema(tvk_map_ctx ctx);

/* ---- Values of nodes that the walk is inside --------------------------------------------------------------
 *
 * path is the path of a hierarchy level, such as "/interfaces/interface"; the tags lead down from its node. The
 * first match counts; values and nodes stay the request's. A null path or tag matches nothing. Any out argument may be
 * null. Nothing is logged.
 */

/*
 * Stores the value of a child. During propagation and key work a node of the top instance item counts as well.
 *
 * Returns
 * - 0: value is the child's, null when it has none.
 * - TVK_ERR_INVALID: there is no such child. value is unwritten.
 */
TVK_MAP_API qerrno tvk_map_get_node_info(tvk_map_ctx ctx, const char *path, const char *tag, char **value);

/* Returns a child, or null. */
TVK_MAP_API struct qidl_tvk_datatree *tvk_map_get_node(tvk_map_ctx ctx, const char *path, const char *tag);

/*
 * Stores the value of a grandchild, and the grandchild.
 *
 * Returns
 * - 0: node is the grandchild, value its value, null when it has none.
 * - TVK_ERR_INVALID: there is no such grandchild. value and node are unwritten.
 */
TVK_MAP_API qerrno tvk_map_dfs_get_child_match(tvk_map_ctx ctx, const char *path, const char *child_tag,
                                               const char *grandchild_tag, char **value,
                                               struct qidl_tvk_datatree **node);

/*
 * Stores the value of a grandchild.
 *
 * Returns
 * - 0: value is the grandchild's, null when it has none.
 * - TVK_ERR_INVALID: there is no such grandchild. value is unwritten.
 */
TVK_MAP_API qerrno tvk_map_get_node_info_mpls_static(tvk_map_ctx ctx, const char *path, const char *child_tag,
                                                     const char *grandchild_tag, char **value);

/*
 * Stores the value of a great-grandchild.
 *
 * Returns
 * - 0: value is the great-grandchild's, null when it has none.
 * - TVK_ERR_INVALID: there is no such great-grandchild. value is unwritten.
 */
TVK_MAP_API qerrno tvk_map_get_node_info_inv_thresh_static(tvk_map_ctx ctx, const char *path, const char *child_tag,
                                                           const char *grandchild_tag, const char *great_grandchild_tag,
                                                           char **value);

/*
 * Checks that the key key_tag of an OpenConfig list entry has the value of its copy below leafref_target. A node
 * whose namespace does not contain "openconfig" passes, as does every request that is not an add request, and an
 * entry without the copy or the key. A copy with the operation delete does not pass.
 *
 * Returns
 * - 0: the entry passes.
 * - TVK_ERR_INVALID: list_node is null.
 * - TVK_ERR_NAMESPACE: it does not pass. The copy's value is recorded in error_node_tag, and the error path is
 *   recorded.
 */
TVK_MAP_API qerrno tvk_map_check_oc_leafref(tvk_map_ctx ctx, const char *leafref_path, const char *leafref_target,
                                            const char *key_tag, const struct qidl_tvk_datatree *list_node);

#ifdef __cplusplus
}
#endif

#endif
