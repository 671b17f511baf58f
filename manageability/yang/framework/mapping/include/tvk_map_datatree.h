/* Data trees: reading nodes, adding children and paths, trimming and counting, printing. */
#ifndef TVK_MAP_DATATREE_H
#define TVK_MAP_DATATREE_H

#include <stdint.h>

#include "tvk_map_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Reading a node ------------------------------------------------------------------------------------- */

/* The request's data tree. The context and its state record must be there. */
TVK_MAP_API struct qidl_tvk_datatree *tvk_map_datatree_get_datatree(tvk_map_ctx ctx);

/*
 * Asks whether node is the key leaf key_name with the value key_value.
 * Returns 0 when it is; TVK_ERR_NOT_FOUND otherwise, also when the name, the node's tag, the value or the node's
 * data is missing. ctx is not used.
 */
TVK_MAP_API qerrno tvk_map_get_tree_from_key_data(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                                  const char *key_name, const char *key_value);

/*
 * Cuts path in place at "/" and stores its last token (a pointer into path). A path without a token leaves token
 * as it was. Always 0. ctx is not used.
 */
TVK_MAP_API qerrno tvk_map_get_last_token_from_path(tvk_map_ctx ctx, char *path, char **token);

/* Sets the operation of node, with its presence bit. A null node does nothing. */
TVK_MAP_API void tvk_map_datatree_set_operation(struct qidl_tvk_datatree *node, uint32_t operation);

/* 1 when the request is an add request (type 1, 8 or 15), else 0. */
TVK_MAP_API int tvk_map_is_request_add(tvk_map_ctx ctx);

/* 1 when node carries the operation delete or remove, else 0. */
TVK_MAP_API int tvk_map_is_request_delete(const struct qidl_tvk_datatree *node);

/* 1 when node carries the operation replace, else 0. */
TVK_MAP_API int tvk_map_is_request_replace(const struct qidl_tvk_datatree *node);

/*
 * Stores node's children and their number; null and 0 when it has none. With a null subtrees nothing is written.
 * The array stays the node's. Always 0. ctx is not used.
 */
TVK_MAP_API qerrno tvk_map_get_subtrees(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                        struct qidl_tvk_datatree **subtrees, int32_t *count);

/* ---- Small text and time helpers ------------------------------------------------------------------------ */

/* 1 when part occurs in text, else 0; 0 when either is null. */
TVK_MAP_API int tvk_map_does_it_have(const char *text, const char *part);

/* The wall clock in microseconds since the epoch. */
TVK_MAP_API uint64_t tvk_map_get_timestamp(void);

/* 1 when text begins with prefix, both taken without leading white space, else 0; 0 when either is null. */
TVK_MAP_API int tvk_map_trim_strcmpbeg(const char *text, const char *prefix);

/*
 * Releases the three strings at strings (the tag, data and ns of a record, say) with release(string, arg) and
 * nulls them. Null strings are passed over.
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
 * Without append the first child of that tag and namespace is taken; children that carry a subtree_index are
 * passed over while there are further ones (unless a template is given without TVK_ADD_TEMPLATE_ON_PATH), so that
 * the last one is found. A found child gets the new data, if any, unless it carries a subtree_index and was passed
 * over; the template does not touch it.
 * A tag "vrrp" on a platform that excludes it adds nothing.
 *
 * Returns 0, also when an excluded node was left out of a request that adds nothing: out is then unwritten.
 * TVK_ERR_INVALID: ctx is there and parent, tag or ns is null. TVK_ERR_NO_MEMORY: parent keeps the children that
 * it had; a found child whose new value could not be copied is left without data.
 * TVK_ERR_UNSUPPORTED: an excluded node in an add request; error_node_tag and the error path are recorded.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_subtree_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent,
                                                        const char *tag, const char *ns, const char *data,
                                                        const struct qidl_tvk_datatree *template_node,
                                                        struct qidl_tvk_datatree **out, int append, int flags);

/* tvk_map_datatree_add_subtree_flagged with flags 0. */
TVK_MAP_API qerrno tvk_map_datatree_add_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent, const char *tag,
                                                const char *ns, const char *data,
                                                const struct qidl_tvk_datatree *template_node,
                                                struct qidl_tvk_datatree **out, int append);

/*
 * Adds a child with source's tag, namespace and data. When source has children, the new node then shows the very
 * same array: it is shared, not copied, and source keeps it. Whoever releases the two trees must take it out of
 * one of them first.
 * Without append a child that is there already is found, and loses the children that it had without their being
 * released.
 * Returns as tvk_map_datatree_add_subtree_flagged; TVK_ERR_INVALID also for a null source, or parent itself as one.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_subtree_with_data(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent,
                                                          const struct qidl_tvk_datatree *source, int append);

/*
 * Moves source's children to the end of target's, in order: each is appended by its tag, namespace and data, and
 * takes its own children along. The emptied children stay in source, with has_subtrees set and no array. source
 * itself as target moves nothing, and a target among source's children stays where it is.
 * Returns 0, or the status of the first child that could not be added; those before it have moved, those after it
 * are untouched.
 * A child that could not be added, or is one that is left out, is emptied as well. Its array and all in it are
 * released: the array must be the child's alone. One that another node shows too
 * (tvk_map_datatree_add_subtree_with_data) is to be taken out of the child before.
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
 * In path-recording mode (path_record_mode) a path that begins with a recorded one, or a recorded one with it, is
 * not added, nor any path once 50 are recorded or of 1000 characters and more; a path that is added is recorded
 * and, in mode 1, added without its last component. While the context's intf_config_flag is 1, an
 * "interface-configuration" component looks for the entry of subinterface 0 called intf_name, and what belongs to
 * a bundle is placed there.
 *
 * Returns 0 (out unwritten when nothing was added: an empty or recorded path, an excluded node).
 * TVK_ERR_INVALID: tree, path or ns is null. TVK_ERR_NO_MEMORY: path could not be copied, or a node not added.
 * TVK_ERR_UNSUPPORTED: see tvk_map_datatree_add_subtree_flagged. Nodes added before the failing one stay.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_path_common_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree,
                                                            const char *path, const char *ns, const char *data,
                                                            const struct qidl_tvk_datatree *template_node,
                                                            struct qidl_tvk_datatree **out, int append, int flags);

/* tvk_map_datatree_add_path_common_flagged with flags 0. */
TVK_MAP_API qerrno tvk_map_datatree_add_path_common(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                    const char *ns, const char *data,
                                                    const struct qidl_tvk_datatree *template_node,
                                                    struct qidl_tvk_datatree **out, int append);

/*
 * Adds a path as tvk_map_datatree_add_path_common_flagged does, where the request's state says. Bit
 * TVK_BUILD_REPLACE_MERGING of build_flags is added to flags (it is TVK_ADD_TEMPLATE_ON_PATH).
 *
 * First, a path that the get filter does not select is skipped with 0 (TVK_ADD_UNFILTERED: not asked), and a
 * pending error node (TVK_BUILD_ERROR_NODE) takes the path into error_xpath. Then the path goes, by the first of
 * these that holds:
 *   - outside a filtered read with pending_trim_path set: what follows that path goes below pending_list_node; a
 *     path that does not hold it goes below tree as it is;
 *   - TVK_ADD_TRIM_PENDING: what follows pending_trim_path goes below tree;
 *   - without TVK_ADD_RELATIVE and with an output entry open: what follows that entry's trim path goes below its
 *     list node;
 *   - else the path goes below tree as it is.
 *
 * A pending trim path without pending_list_node ends in TVK_ERR_INVALID, as there is nowhere to put the path: see
 * tvk_map_search_or_add_list.
 *
 * Returns as tvk_map_datatree_add_path_common_flagged, and TVK_ERR_NOT_FOUND when the path does not hold the trim
 * path that it must be cut by; nothing is added then.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_path_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                     const char *ns, const char *data,
                                                     const struct qidl_tvk_datatree *template_node,
                                                     struct qidl_tvk_datatree **out, int append, int flags);

/* tvk_map_datatree_add_path_flagged with flags 0. */
TVK_MAP_API qerrno tvk_map_datatree_add_path(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                             const char *ns, const char *data,
                                             const struct qidl_tvk_datatree *template_node,
                                             struct qidl_tvk_datatree **out, int append);

/*
 * Asks whether node was removed by the first pass of a replace whose list entry is a merge: 1 while
 * replace_converted is set, the context's list_operation is merge and node's operation is remove (its presence
 * bit is not looked at), else 0. TVK_ERR_INVALID, which is true as well, for a null node. The two integers are
 * ignored.
 */
TVK_MAP_API qerrno tvk_map_validate_replace_subtree(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                                    int ignored_1 TVK_MAP_DEFAULT(0), int ignored_2 TVK_MAP_DEFAULT(0));

/* Forgets all recorded paths. Always 0. */
TVK_MAP_API qerrno tvk_map_clear_xpath_ctx(tvk_map_ctx ctx);

/* ---- Finding children in constant time ------------------------------------------------------------------- */

/*
 * Forgets what the library remembers of the children of parent, of all below them, and of parent as an entry of its
 * list; the other entries stay known, so that one costs the same in a list of any length. Under a framework that has
 * set tvk_map_context::index_children_from, mapping code calls it before it changes a tag, a namespace, an instance
 * number or a key value of these children itself, gives the node an array, takes it away or releases it. A null parent
 * stands for all trees of the request; the framework calls it so when the request ends, which releases the memory, and
 * mapping code may do so afterwards instead of before. Costs nothing when nothing is remembered; the next lookup looks
 * at the children anew.
 * Returns 0; TVK_ERR_INVALID when ctx or its state record is null, with no message.
 */
TVK_MAP_API qerrno tvk_map_forget_children(tvk_map_ctx ctx, const struct qidl_tvk_datatree *parent);

/* ---- List entries ----------------------------------------------------------------------------------------
 *
 * A list is held as siblings of one name, one per entry, each with its key leaves among its children.
 */

/*
 * Finds the first entry of the list list_name below parent whose key leaf key_name has the value key_value, or adds
 * one at the end. The key leaf of a new entry is not added: that is the caller's. Entries in another namespace are not
 * looked at. The very first child of parent (TVK_HAS_SUBTREES clear) is not numbered, later entries are
 * (subtree_index).
 * Returns 0 and the entry, which holds until parent next gets a child, or null when it is an excluded node and the
 * request adds nothing; TVK_ERR_INVALID for a null argument (entry unwritten); else, with entry null, what
 * tvk_map_datatree_add_subtree_flagged returned.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_list_node(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent,
                                                  const char *list_name, const char *ns, const char *key_name,
                                                  const char *key_value, struct qidl_tvk_datatree **entry);

/*
 * Asks whether one of count records at subtrees (may be null) is called name and, with match_value other than 0, has
 * that value (null: no data; the presence bit is not looked at). Returns 1 and stores the first one in found (may be
 * null), or 0 with found unwritten.
 */
TVK_MAP_API int tvk_map_is_node_in_subtrees(tvk_map_ctx ctx, const struct qidl_tvk_datatree *subtrees, uint32_t count,
                                            const char *name, const char *value, int match_value,
                                            const struct qidl_tvk_datatree **found);

/*
 * Asks whether a child of the node at path has a child key_name with the value key_value, whatever the child's own
 * name is. The path names the node around the entries and is added where it is missing
 * (tvk_map_datatree_add_path_flagged, namespace http://openconfig.net/yang/bgp). An entry without children hides those
 * behind it. The fourth argument is ignored. Returns 1 and stores the first such entry (entry may be null), or 0 with
 * entry unwritten, also when an argument is null or the path cannot be added or is left out.
 */
TVK_MAP_API int tvk_map_is_list_node_already_present(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                     const char *ignored, const char *key_name, const char *key_value,
                                                     const struct qidl_tvk_datatree **entry);

/* ---- Trimming and asking paths -------------------------------------------------------------------------- */

/*
 * Moves *path to what follows the first occurrence of prefix in it, wherever that is. The string is not changed.
 * path and *path must be there. Returns 0; TVK_ERR_NOT_FOUND when prefix does not occur, or is null, with two
 * messages and *path unchanged.
 */
TVK_MAP_API qerrno tvk_map_datatree_trim_path(tvk_map_ctx ctx, const char **path, const char *prefix);

/*
 * Re-roots a path under the current output entry: trims *path against its trim path and stores its list node.
 * Without an open output entry nothing changes. Returns 0; TVK_ERR_NOT_FOUND for a null context (no assertion),
 * or when the path does not hold the trim path.
 */
TVK_MAP_API qerrno tvk_map_datatree_process_list_ctx(tvk_map_ctx ctx, struct qidl_tvk_datatree **node,
                                                     const char **path);

/*
 * Stores the last child of the node at path below tree. The path is added where it is missing
 * (tvk_map_datatree_add_path_flagged, namespace http://openconfig.net/yang/bgp).
 * Returns 0; TVK_ERR_INVALID for a null argument, and, with the error path recorded, when the node has no
 * children; else what adding the path returned.
 */
TVK_MAP_API qerrno tvk_map_datatree_get_last_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                     struct qidl_tvk_datatree **out);

/*
 * Counts the children of the node at path, whose first component is the tag of tree itself. When only the last
 * component is not in the tree, the children of the node before it are counted.
 * Returns 0, count unwritten for a path without components; TVK_ERR_INVALID for a null argument;
 * TVK_ERR_NO_MEMORY; TVK_ERR_NOT_FOUND when the path leaves the tree or meets a child without a tag.
 */
TVK_MAP_API qerrno tvk_map_datatree_get_subtree_num(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree,
                                                    const char *path, uint32_t *count);

/*
 * Drops the last child of node, unless it is the only one. Returns 0, TVK_ERR_INVALID for a null node. The context
 * is looked at only then.
 */
TVK_MAP_API qerrno tvk_map_datatree_remove_last_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *node);

#ifdef __cplusplus
}
#endif

#endif
