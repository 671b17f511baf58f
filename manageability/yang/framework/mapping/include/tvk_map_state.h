/*
 * The state of a request, as the walk and path adding keep it: error path, node hierarchy, pending entry and output
 * list, current list, instance-tree stack, recorded paths, index of children; and its release.
 */
#ifndef TVK_MAP_STATE_H
#define TVK_MAP_STATE_H

#include <stdint.h>

#include "tvk_map_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Error path ----------------------------------------------------------------------------------------- */

/*
 * Records where the walk is as the request's error path: error_xpath, with the namespace of the outermost level in
 * error_xpath_ns. Both belong to the request state. Only the first call of a request that succeeds records; later
 * ones change nothing. Outside any container the path is empty and has no namespace.
 *
 * The path names each level as "ns1:" and its tag, ended by "/"; list entries with their keys, as in
 * ns1:interfaces/ns1:interface[name = 'eth0']/ns1:config/
 *
 * Returns
 * - 0: the error path is recorded, now or before.
 * - TVK_ERR_NO_MEMORY: memory runs out, the path does not fit 999 characters, a node or key leaf has no tag, a key leaf
 *   has no data, or the outermost node has no namespace. Nothing is recorded, and a later call may record.
 * - TVK_ERR_NOT_FOUND: there is no state record.
 */
TVK_MAP_API qerrno tvk_oc_error_path(tvk_map_ctx ctx);

/*
 * Appends the element of a list entry to the error path in buffer, of TVK_MAP_MAX_PATH bytes: "ns1:", the node's
 * tag, its keys (children marked as keys) in brackets, and "/".
 *
 * Returns
 * - 0: the element is appended.
 * - TVK_ERR_NO_MEMORY: it does not fit, or a tag or a key's data is missing. buffer keeps what did fit.
 * - TVK_ERR_INVALID: buffer or node is null. Nothing is logged.
 */
TVK_MAP_API qerrno tvk_oc_error_path_list_append(char *buffer, const struct qidl_tvk_datatree *node);

/* Returns the error option of the request. The context, its state and the request must be there. */
TVK_MAP_API uint32_t tvk_map_get_error_option(tvk_map_ctx ctx);

/* ---- Node hierarchy and current list -------------------------------------------------------------------------- */

/*
 * Pushes node (borrowed until it is popped) on the hierarchy as a level of kind TVK_LEVEL_*. A node with the
 * operation create becomes create_node, even when the push then fails. A path that does not fit 999 characters is
 * logged and kept without the part that did not fit. When memory runs out the level is without its path or tag.
 *
 * Returns
 * - 0: the level is pushed, with or without its whole path.
 * - TVK_ERR_INVALID: the context, node or the state record is null. Nothing is logged.
 * - TVK_ERR_NO_MEMORY: 50 levels are in use.
 */
TVK_MAP_API qerrno tvk_map_add_to_node_hierarchy(tvk_map_ctx ctx, struct qidl_tvk_datatree *node, uint32_t kind);

/*
 * Pops the top level, whatever node is; node is compared with create_node only, which it ends. An output entry on top
 * of its list that was made at this very container level goes with it.
 *
 * Returns
 * - 0: the level is popped.
 * - TVK_ERR_INVALID: the hierarchy is empty, or the context or state record is null. Nothing is logged.
 */
TVK_MAP_API qerrno tvk_map_remove_from_node_hierarchy(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node);

/*
 * Makes path the current list. The slot arrays of the context are kept when path is the current list or lies below
 * it, and cleared otherwise.
 *
 * Returns
 * - 0: path is the current list.
 * - TVK_ERR_NOT_FOUND: the context is null.
 * - TVK_ERR_INVALID: path is null.
 * - TVK_ERR_NO_MEMORY: path could not be copied. The former list stays current; the slots are cleared, unless path lies
 *   below it.
 */
TVK_MAP_API qerrno tvk_map_update_current_list_node(tvk_map_ctx ctx, const char *path);

/*
 * Stores resp_tree_instance_root.
 *
 * Returns
 * - 0: always. Nothing is stored without a context, state record or out pointer.
 */
TVK_MAP_API qerrno tvk_map_get_resp_tree_instance_root(tvk_map_ctx ctx, struct qidl_tvk_datatree **root);

/* ---- Pending entry and output list ---------------------------------------------------------------------------- */

/*
 * Keeps a copy of path as pending_trim_path, unless one is set: the first path wins until it is cleared.
 *
 * Returns
 * - 0: the copy is kept, or a former path was.
 * - TVK_ERR_NOT_FOUND: the copy could not be made.
 * - TVK_ERR_INVALID: path or the state record is null.
 */
TVK_MAP_API qerrno tvk_map_copy_trim_path_list_ctx(tvk_map_ctx ctx, const char *path);

/*
 * Releases pending_trim_path, if set.
 *
 * Returns
 * - 0: no trim path is pending any more.
 * - TVK_ERR_NOT_FOUND: the context or its state record is null.
 */
TVK_MAP_API qerrno tvk_map_free_trim_path_list_ctx(tvk_map_ctx ctx);

/*
 * Clears the whole pending entry and empties the output list. pending_hierarchy_path is forgotten without being
 * released: call tvk_map_release_pending_entry before, which releases it if the state owns it.
 *
 * Returns
 * - 0: the output list was empty.
 * - TVK_ERR_INVALID: the output list had to be emptied. A finished walk should have done so.
 * - TVK_ERR_NOT_FOUND: the context or its state record is null.
 */
TVK_MAP_API qerrno tvk_map_datatree_reset_trim_path_ctx(tvk_map_ctx ctx);

/*
 * Releases the pending entry: its trim path, its hierarchy path if the state owns one, and the hold on its node.
 * Nothing is logged.
 *
 * Returns
 * - 0: nothing is pending any more.
 * - TVK_ERR_INVALID: the context or its state record is null.
 */
TVK_MAP_API qerrno tvk_map_release_pending_entry(tvk_map_ctx ctx);

/*
 * Moves the pending entry (pending_*) to the end of the output list, which takes its strings over. A pending hierarchy
 * path without a kind is not the state's (see stitching in tvk_map_xpath.h) and does not go with it: mapping code that
 * fills the entry itself sets pending_hierarchy_kind with the path.
 *
 * Returns
 * - 0: the entry is moved; or there is no pending trim path, context or state record, and nothing changes.
 * - TVK_ERR_NOT_FOUND: 50 entries are in use. The entry stays pending.
 */
TVK_MAP_API qerrno tvk_add_to_output_list_ctx(tvk_map_ctx ctx);

/*
 * Drops the last output entry with its strings. The two nodes are not used. A null context stops the process.
 *
 * Returns
 * - 0: the entry is dropped.
 * - TVK_ERR_INVALID: the list is empty, or there is no state record (ERR "Invalid arguments passed!").
 */
TVK_MAP_API qerrno tvk_remove_from_output_list_ctx(tvk_map_ctx ctx,
                                                   const struct qidl_tvk_datatree *ignored_1 TVK_MAP_DEFAULT(nullptr),
                                                   const struct qidl_tvk_datatree *ignored_2 TVK_MAP_DEFAULT(nullptr));

/* ---- Instance-tree stack ---------------------------------------------------------------------------------- */

#define TVK_LIST_INSTANCE_TAG "LIST_INSTANCE_NODE"

/*
 * Pushes an item. When the first node's tag is "LIST_INSTANCE_NODE" the item owns the array (of the named heap)
 * and its records from then on; otherwise it borrows it. A 51st item stops the process with an assertion.
 *
 * Returns
 * - 0: always. When memory runs out, or there is no context or state record, nothing is pushed, which
 *   tvk_map_util_itree_stack_size tells, and the array stays the caller's.
 */
TVK_MAP_API qerrno tvk_map_util_itree_stack_push(tvk_map_ctx ctx, struct qidl_tvk_datatree *nodes, uint32_t node_count,
                                                 uintptr_t extra);

/*
 * Pops the top item, releases it with all that it owns, and forgets all recorded paths (also when the stack is empty).
 * An item without nodes is only taken off the stack; mapping code that needs its record back peeks it first and
 * releases it with kel_named_free.
 *
 * Returns
 * - 0: always.
 */
TVK_MAP_API qerrno tvk_map_util_itree_stack_pop(tvk_map_ctx ctx);

/*
 * Stores the top item, which the stack owns.
 *
 * Returns
 * - 0: always. item stays as it was when the stack is empty.
 */
TVK_MAP_API qerrno tvk_map_util_itree_stack_peak(tvk_map_ctx ctx, struct tvk_map_itree_item **item);

/*
 * Stores the item of a level, counted from 1 at the bottom over the items that have nodes and are not list
 * instances. Level 0 is an item without nodes below all those. The stack owns the item.
 *
 * Returns
 * - 0: always. item stays as it was when there is none of that level.
 */
TVK_MAP_API qerrno tvk_map_util_itree_stack_peak_level(tvk_map_ctx ctx, uint32_t level,
                                                       struct tvk_map_itree_item **item);

/* Returns the number of items; 0 without a context. */
TVK_MAP_API uint32_t tvk_map_util_itree_stack_size(tvk_map_ctx ctx);

/* ---- Recorded paths ------------------------------------------------------------------------------------------- */

/*
 * Forgets all recorded paths.
 *
 * Returns
 * - 0: always, also without a context or state record.
 */
TVK_MAP_API qerrno tvk_map_clear_xpath_ctx(tvk_map_ctx ctx);

/* ---- Finding children in constant time ------------------------------------------------------------------- */

/*
 * Forgets what the library remembers of the children of parent, of all below them, and of parent as an entry of its
 * list. The other entries stay known, so that the cost does not grow with the list.
 *
 * It matters only under a framework that has set tvk_map_context::index_children_from. Mapping code calls it before it
 * changes a tag, a namespace, an instance number or a key value of these children itself, gives the node an array,
 * takes it away or releases it. A null parent stands for all trees of the request, and releases the memory of the
 * index; such a call may come after the changes instead of before. The next lookup looks at the children anew. When
 * nothing is remembered the call costs nothing.
 *
 * Returns
 * - 0: the children are forgotten.
 * - TVK_ERR_INVALID: ctx or its state record is null. Nothing is logged.
 */
TVK_MAP_API qerrno tvk_map_forget_children(tvk_map_ctx ctx, const struct qidl_tvk_datatree *parent);

/* ---- End of a request ----------------------------------------------------------------------------------------- */

/*
 * Releases all that a request has left in its state and context: error path and error node tag, pending entry, output
 * list, hierarchy, instance-tree stack with its items, request tree schema, children index and current list. The
 * framework calls it when the request has ended, before it releases the state record and the trees, which stay its own.
 * It logs nothing, and needs no memory. A second call finds nothing to release.
 *
 * Returns
 * - 0: nothing is left.
 * - TVK_ERR_INVALID: the context or its state record is null.
 */
TVK_MAP_API qerrno tvk_map_release_request_state(tvk_map_ctx ctx);

#ifdef __cplusplus
}
#endif

#endif
