/* Data trees: reading nodes, adding children, paths and list entries, trimming paths, counting children. */
#ifndef TVK_MAP_DATATREE_H
#define TVK_MAP_DATATREE_H

#include <stdint.h>

#include "tvk_map_state.h"
#include "tvk_map_types.h"
#include "tvk_map_util.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Reading a node ------------------------------------------------------------------------------------- */

/* Returns the request's data tree. The context and its state record must be there. */
TVK_MAP_API struct qidl_tvk_datatree *tvk_map_datatree_get_datatree(tvk_map_ctx ctx);

/*
 * Asks whether node is the key leaf key_name with the value key_value. ctx is not used.
 *
 * Returns
 * - 0: it is.
 * - TVK_ERR_NOT_FOUND: it is not, or an argument, the node's tag or the node's data is missing. Nothing is logged.
 */
TVK_MAP_API qerrno tvk_map_get_tree_from_key_data(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                                  const char *key_name, const char *key_value);

/*
 * Cuts path in place at "/" and stores its last token, a pointer into path. ctx is not used.
 *
 * Returns
 * - 0: always. token is unwritten when path has no token or an argument is null.
 */
TVK_MAP_API qerrno tvk_map_get_last_token_from_path(tvk_map_ctx ctx, char *path, char **token);

/* Sets the operation of node, with its presence bit. A null node does nothing. */
TVK_MAP_API void tvk_map_datatree_set_operation(struct qidl_tvk_datatree *node, uint32_t operation);

/*
 * Asks whether the request is an add request.
 *
 * Returns
 * - 1: its type is 1, 8 or 15.
 * - 0: it has another type, or there is no context, state record or request.
 */
TVK_MAP_API int tvk_map_is_request_add(tvk_map_ctx ctx);

/*
 * Asks whether node is to go.
 *
 * Returns
 * - 1: it carries the operation delete or remove.
 * - 0: it does not, or is null.
 */
TVK_MAP_API int tvk_map_is_request_delete(const struct qidl_tvk_datatree *node);

/*
 * Asks whether node is to be replaced.
 *
 * Returns
 * - 1: it carries the operation replace.
 * - 0: it does not, or is null.
 */
TVK_MAP_API int tvk_map_is_request_replace(const struct qidl_tvk_datatree *node);

/*
 * Stores node's children and their number (count may be null). The array stays the node's. ctx is not used.
 *
 * Returns
 * - 0: always. A node without children, or a null one, gives null and 0. With a null subtrees nothing is written.
 */
TVK_MAP_API qerrno tvk_map_get_subtrees(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                        struct qidl_tvk_datatree **subtrees, int32_t *count);

/*
 * Releases the three strings at strings, such as the tag, data and ns that a record begins with, through
 * release(string, arg), and nulls them. Null strings are passed over. strings and release must be there.
 */
TVK_MAP_API void qidl_tvk_datatree_free_ext_cpy(char **strings, tvk_gpb_free_fp release, void *arg);

/* ---- Adding children ------------------------------------------------------------------------------------ */

/* Flags of the operations that end in _flagged. */
#define TVK_ADD_MATCH_TAG_ONLY 0x1       /* an existing child matches by tag alone, else by tag and namespace */
#define TVK_ADD_RELATIVE 0x2             /* the path is relative to the current list entry: do not re-root it */
#define TVK_ADD_UNFILTERED 0x8           /* do not ask the get filter */
#define TVK_ADD_TRIM_PENDING 0x20        /* trim the path against pending_trim_path first */
#define TVK_ADD_TEMPLATE_ON_PATH 0x80    /* nodes on the path take the template too; a removed child never matches */
#define TVK_ADD_MARK_TREE_TRAVERSE 0x100 /* give the new node the node kind 5 */

/*
 * Adds a child to parent, or finds the one that is there. Every node that the library adds comes from here.
 *
 * parent    the node that gets the child
 * tag, ns   name and namespace, copied
 * data      value, copied; may be null
 * template_node  may be null: a new node takes over its operation, insert record and node kind
 * out       may be null; receives the child, new or found. The pointer holds until parent next gets a child
 * append    non-zero: always add a new child, and number it with its 1-based place (subtree_index)
 * flags     TVK_ADD_MATCH_TAG_ONLY, TVK_ADD_TEMPLATE_ON_PATH and TVK_ADD_MARK_TREE_TRAVERSE have a meaning here
 *
 * Without append the first matching child without a subtree_index is taken. When all matching children carry one,
 * the last of them is taken, and keeps its data. With a template and without TVK_ADD_TEMPLATE_ON_PATH the first
 * matching child is taken, whether or not it carries one. Any other child that is taken gets the new data, if there
 * is any. The template does not touch a child that is taken.
 *
 * A node "vrrp" is an excluded node on a platform of router type 7, 8 or 18: it is never added.
 *
 * Returns
 * - 0: the child was added or found; or an excluded node was left out of a request that adds nothing, with out
 *   unwritten.
 * - TVK_ERR_INVALID: parent, tag or ns is null.
 * - TVK_ERR_NO_MEMORY: parent keeps the children that it had. A found child whose new value could not be copied is left
 *   without data, and is stored in out. Also when parent has as many children as its count can hold.
 * - TVK_ERR_UNSUPPORTED: an excluded node in an add request. error_node_tag and the error path are recorded.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_subtree_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent,
                                                        const char *tag, const char *ns, const char *data,
                                                        const struct qidl_tvk_datatree *template_node,
                                                        struct qidl_tvk_datatree **out, int append, int flags);

/* Does as tvk_map_datatree_add_subtree_flagged with flags 0, and returns its status. */
TVK_MAP_API qerrno tvk_map_datatree_add_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent, const char *tag,
                                                const char *ns, const char *data,
                                                const struct qidl_tvk_datatree *template_node,
                                                struct qidl_tvk_datatree **out, int append);

/*
 * Adds a child with source's tag, namespace and data. When source has children, the new node then shows the very
 * same array: it is shared, not copied, and source keeps it. The holder of the two trees takes it out of one of them
 * before releasing both.
 *
 * Without append a child that is there already is found, and loses the children that it had without their being
 * released.
 *
 * Returns
 * - 0: the child was added or found; or it is an excluded node, and the request adds nothing.
 * - TVK_ERR_INVALID: parent or source is null, source is parent itself, or source has no tag or namespace.
 * - TVK_ERR_NO_MEMORY, TVK_ERR_UNSUPPORTED: as tvk_map_datatree_add_subtree_flagged. Nothing is shared.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_subtree_with_data(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent,
                                                          const struct qidl_tvk_datatree *source, int append);

/*
 * Moves source's children to the end of target's, in order: each is appended by its tag, namespace and data, and
 * takes its own children along. The emptied children stay in source, with has_subtrees set and no array. With source
 * itself as target nothing moves; a target among source's children stays where it is.
 *
 * A child that cannot be added, or is an excluded node, is emptied as well. Its array and all in it are released: the
 * array must be the child's alone. The caller takes an array that another node shows too
 * (tvk_map_datatree_add_subtree_with_data) out of the child before.
 *
 * Returns
 * - 0: all children were moved or emptied.
 * - TVK_ERR_INVALID: target or source is null; or a child has no tag or namespace.
 * - TVK_ERR_NO_MEMORY, TVK_ERR_UNSUPPORTED: as tvk_map_datatree_add_subtree_flagged, for a child.
 *
 * When a child fails, those before it have moved and those after it are untouched.
 */
TVK_MAP_API qerrno tvk_map_add_subtrees_from_source_to_target(tvk_map_ctx ctx, struct qidl_tvk_datatree *target,
                                                              struct qidl_tvk_datatree *source);

/* ---- Adding paths --------------------------------------------------------------------------------------- */

/*
 * Adds the nodes of path below tree, taking existing ones where they match.
 *
 * path is a list of plain tags separated by "/"; empty components do nothing; all nodes get the namespace ns.
 * data, template_node, out and append are the last node's, as in tvk_map_datatree_add_subtree_flagged; with
 * TVK_ADD_TEMPLATE_ON_PATH the nodes before it take the template too.
 *
 * In path-recording mode (path_record_mode) a path is not added when it begins with a recorded one or a recorded one
 * begins with it, when 50 paths are recorded, or when it has 1000 characters or more. A path that is added is
 * recorded; in mode 1 it is added without its last component, unless that is its only one.
 *
 * While the context's intf_config_flag is 1, an "interface-configuration" component looks for the entry of
 * subinterface 0 called intf_name, and what belongs to a bundle is placed there.
 *
 * Returns
 * - 0: the path was added; or, with out unwritten, nothing was to be added: the path is empty, is left out by path
 *   recording, or leads to an excluded node in a request that adds nothing.
 * - TVK_ERR_INVALID: tree, path or ns is null.
 * - TVK_ERR_NO_MEMORY: path could not be copied, or a node could not be added.
 * - TVK_ERR_UNSUPPORTED: as tvk_map_datatree_add_subtree_flagged.
 *
 * On failure the nodes added before the failing one stay, and so does the record of the path.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_path_common_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree,
                                                            const char *path, const char *ns, const char *data,
                                                            const struct qidl_tvk_datatree *template_node,
                                                            struct qidl_tvk_datatree **out, int append, int flags);

/* Does as tvk_map_datatree_add_path_common_flagged with flags 0, and returns its status. */
TVK_MAP_API qerrno tvk_map_datatree_add_path_common(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                    const char *ns, const char *data,
                                                    const struct qidl_tvk_datatree *template_node,
                                                    struct qidl_tvk_datatree **out, int append);

/*
 * Adds a path as tvk_map_datatree_add_path_common_flagged does, at the place where the request stands. Bit
 * TVK_BUILD_REPLACE_MERGING of build_flags is added to flags (it is TVK_ADD_TEMPLATE_ON_PATH).
 *
 * First, a path that the get filter does not select is skipped with 0 (with TVK_ADD_UNFILTERED the filter is not
 * asked), and a pending error node (TVK_BUILD_ERROR_NODE) takes the path into error_xpath. Then the path goes, by the
 * first of these that holds:
 *   - outside a filtered read with pending_trim_path set: the rest of the path behind it goes below
 *     pending_list_node; a path that does not hold it goes below tree as it is;
 *   - with TVK_ADD_TRIM_PENDING: the rest of the path behind pending_trim_path goes below tree;
 *   - without TVK_ADD_RELATIVE and with an output entry open: the rest of the path behind that entry's trim path goes
 *     below its list node;
 *   - else the path goes below tree as it is.
 *
 * Returns
 * - 0: the path was added; or, with out unwritten, it was skipped or nothing was to be added, as in
 *   tvk_map_datatree_add_path_common_flagged.
 * - TVK_ERR_INVALID: tree, path or ns is null; or the path holds the pending trim path and there is no
 *   pending_list_node to put it below, see tvk_map_search_or_add_list.
 * - TVK_ERR_NOT_FOUND: the path does not hold the trim path that it must be cut by, or there is none to cut it by.
 *   Nothing is added.
 * - TVK_ERR_NO_MEMORY, TVK_ERR_UNSUPPORTED: as tvk_map_datatree_add_path_common_flagged.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_path_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                     const char *ns, const char *data,
                                                     const struct qidl_tvk_datatree *template_node,
                                                     struct qidl_tvk_datatree **out, int append, int flags);

/* Does as tvk_map_datatree_add_path_flagged with flags 0, and returns its status. */
TVK_MAP_API qerrno tvk_map_datatree_add_path(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                             const char *ns, const char *data,
                                             const struct qidl_tvk_datatree *template_node,
                                             struct qidl_tvk_datatree **out, int append);

/*
 * Asks whether node was removed by the first pass of a replace whose list entry is a merge. The two integers are
 * ignored.
 *
 * Returns
 * - 1: replace_converted is set, the context's list_operation is merge, and node's operation is remove. The presence
 *   bit of the operation is not looked at.
 * - 0: one of these does not hold.
 * - TVK_ERR_INVALID: node is null. As a condition this is true, too.
 */
TVK_MAP_API qerrno tvk_map_validate_replace_subtree(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                                    int ignored_1 TVK_MAP_DEFAULT(0), int ignored_2 TVK_MAP_DEFAULT(0));

/* ---- List entries ----------------------------------------------------------------------------------------
 *
 * A list is held as siblings of one name, one per entry, each with its key leaves among its children.
 */

/*
 * Finds the first entry of the list list_name below parent whose key leaf key_name has the value key_value, or adds
 * one at the end. The caller adds the key leaf of a new entry. Entries in another namespace are not looked at. The very
 * first child of parent (TVK_HAS_SUBTREES clear) is not numbered; later entries are (subtree_index).
 *
 * Returns
 * - 0: entry is the entry, and holds until parent next gets a child; or it is null, as the entry is an excluded node
 *   and the request adds nothing.
 * - TVK_ERR_INVALID: an argument is null. entry is unwritten.
 * - TVK_ERR_NO_MEMORY, TVK_ERR_UNSUPPORTED: as tvk_map_datatree_add_subtree_flagged. entry is null.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_list_node(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent,
                                                  const char *list_name, const char *ns, const char *key_name,
                                                  const char *key_value, struct qidl_tvk_datatree **entry);

/*
 * Asks whether one of count records at subtrees (may be null) is called name and, with match_value other than 0, has
 * that value (null: no data). The presence bit of the data is not looked at.
 *
 * Returns
 * - 1: found, unless null, is the first such record.
 * - 0: there is none. found is unwritten.
 */
TVK_MAP_API int tvk_map_is_node_in_subtrees(tvk_map_ctx ctx, const struct qidl_tvk_datatree *subtrees, uint32_t count,
                                            const char *name, const char *value, int match_value,
                                            const struct qidl_tvk_datatree **found);

/*
 * Asks whether a child of the node at path has a child key_name with the value key_value (null: no data), whatever its
 * own name is. The path names the node around the entries and is added where it is missing
 * (tvk_map_datatree_add_path_flagged, namespace http://openconfig.net/yang/bgp). An entry without children hides those
 * behind it. The fourth argument is ignored.
 *
 * Returns
 * - 1: entry, unless null, is the first such child.
 * - 0: there is none; tree, path or key_name is null; or the path cannot be added or is left out. entry is unwritten.
 */
TVK_MAP_API int tvk_map_is_list_node_already_present(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                     const char *ignored, const char *key_name, const char *key_value,
                                                     const struct qidl_tvk_datatree **entry);

/* ---- Trimming and asking paths -------------------------------------------------------------------------- */

/*
 * Moves *path behind the first occurrence of prefix in it, wherever that is. The string is not changed. path and
 * *path must be there.
 *
 * Returns
 * - 0: *path has moved.
 * - TVK_ERR_NOT_FOUND: prefix does not occur, or is null. Two messages are logged, and *path is unchanged.
 */
TVK_MAP_API qerrno tvk_map_datatree_trim_path(tvk_map_ctx ctx, const char **path, const char *prefix);

/*
 * Re-roots a path under the current output entry: trims *path against its trim path, and stores its list node.
 *
 * Returns
 * - 0: the path is re-rooted; or there is no open output entry or no state record, and nothing changes.
 * - TVK_ERR_INVALID: an output entry is open, and node, path or *path is null.
 * - TVK_ERR_NOT_FOUND: the context is null; or *path does not hold the trim path. Nothing changes.
 */
TVK_MAP_API qerrno tvk_map_datatree_process_list_ctx(tvk_map_ctx ctx, struct qidl_tvk_datatree **node,
                                                     const char **path);

/*
 * Stores the last child of the node at path below tree. The path is added where it is missing
 * (tvk_map_datatree_add_path_flagged, namespace http://openconfig.net/yang/bgp). out is unwritten on failure.
 *
 * Returns
 * - 0: out is the child.
 * - TVK_ERR_INVALID: an argument is null, or adding the path returned it; or the node has no children or the path is
 *   left out, with the error path recorded.
 * - TVK_ERR_NOT_FOUND, TVK_ERR_NO_MEMORY, TVK_ERR_UNSUPPORTED: as tvk_map_datatree_add_path_flagged.
 */
TVK_MAP_API qerrno tvk_map_datatree_get_last_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                     struct qidl_tvk_datatree **out);

/*
 * Counts the children of the node at path, whose first component is the tag of tree itself. A last component that
 * names no child counts the children of the node before it; that of a path of one component is not compared at all.
 * Below a node without children the count is 0, whatever follows in path.
 *
 * Returns
 * - 0: count is the number; or it is unwritten, as path has no component and tree has children.
 * - TVK_ERR_INVALID: an argument is null.
 * - TVK_ERR_NO_MEMORY: path could not be copied. count is unwritten.
 * - TVK_ERR_NOT_FOUND: the path leaves the tree, or meets a node without a tag. count is unwritten.
 */
TVK_MAP_API qerrno tvk_map_datatree_get_subtree_num(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree,
                                                    const char *path, uint32_t *count);

/*
 * Drops the last child of node, unless it is the only one.
 *
 * Returns
 * - 0: the child is dropped, or node has fewer than two children.
 * - TVK_ERR_INVALID: node is null. Only then must there be a context.
 */
TVK_MAP_API qerrno tvk_map_datatree_remove_last_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *node);

#ifdef __cplusplus
}
#endif

#endif
