/* The error path of a failed request; finding and creating list entries by key. */
#ifndef TVK_MAP_LISTS_H
#define TVK_MAP_LISTS_H

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
 * Returns 0; TVK_ERR_NO_MEMORY when memory runs out, the path does not fit 999 characters, a node has no tag, a key
 * no data or the outermost node no namespace: nothing is recorded then, and a later call may; TVK_ERR_NOT_FOUND
 * without a state record.
 */
TVK_MAP_API qerrno tvk_oc_error_path(tvk_map_ctx ctx);

/*
 * Appends the element of a list entry to the error path in buffer, of TVK_MAP_MAX_PATH bytes: "ns1:", the node's
 * tag, its keys (children marked as keys) in brackets, and "/".
 * Returns 0; TVK_ERR_NO_MEMORY when it does not fit or a tag or a key's data is missing, with what did fit left in
 * buffer; TVK_ERR_INVALID for a null argument.
 */
TVK_MAP_API qerrno tvk_oc_error_path_list_append(char *buffer, const struct qidl_tvk_datatree *node);

/* The error option of the request. The context, its state and the request must be there. */
TVK_MAP_API uint32_t tvk_map_get_error_option(tvk_map_ctx ctx);

/* ---- Finding ---------------------------------------------------------------------------------------------
 *
 * A list stands in a tree as siblings that bear its name, one per entry, the keys among their children. Children
 * are searched in order and the first match counts. Finding never adds.
 */

/*
 * Finds a child of parent by tag and value, or with a null data by tag alone. The namespace, unless null, is
 * compared only without data, and then with the first child of that tag only.
 * Returns 0 and the child in found; TVK_ERR_INVALID when there is none, or a child without a tag comes first;
 * TVK_ERR_NOT_FOUND when parent claims children and has no array.
 */
TVK_MAP_API qerrno tvk_map_datatree_get_subtree(const struct qidl_tvk_datatree *parent,
                                                const struct qidl_tvk_datatree **found, const char *tag,
                                                const char *data, const char *ns);

/*
 * Asks whether a node with the value key_value lies on path. The first component may name node itself; then each
 * component is searched among the children, of the last match or, where nothing matched, of the same node again.
 * Returns 0 when one does, TVK_ERR_NOT_FOUND when not or a child has no tag, TVK_ERR_NO_MEMORY,
 * TVK_ERR_INVALID for a null node or path. The last argument is ignored.
 */
TVK_MAP_API qerrno tvk_map_get_subtree_from_key(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, const char *path,
                                                const char *key_value, const struct qidl_tvk_datatree *ignored);

/*
 * Finds the list entry with the key leaf key_name = key_value among the children of *node and stores it there.
 * The entry's tag is the last component of list_path. ns is handed to tvk_map_datatree_get_subtree for the key.
 * Returns 0; TVK_ERR_INVALID when there is none; TVK_ERR_NOT_FOUND when *node claims children and has no array, or
 * list_path could not be copied. *node is unchanged then.
 */
TVK_MAP_API qerrno tvk_map_iterate_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree **node, char *key_name,
                                        char *key_value, char *list_path, char *ns);

/*
 * Walks *node down path (cut in place at "/") to the parent of the list entries that its last component names.
 * With ns, each node on the way must have that namespace. Returns 0; TVK_ERR_INVALID for a null path, and, with
 * the error path recorded, when the path leaves the tree: *node is then the last node reached.
 */
TVK_MAP_API qerrno tvk_map_get_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree **node, char *path, char *ns);

/*
 * Finds the entry with key_name = key_value of the list at list_path below root. Note the order: value before
 * name. ns is the namespace of the nodes on the path, null for any.
 * Returns 0 and the entry; TVK_ERR_INVALID when it is not there (the error path is recorded when the list is not
 * there either); TVK_ERR_NOT_FOUND when list_path could not be copied.
 */
TVK_MAP_API qerrno tvk_map_search_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree *root,
                                       const struct qidl_tvk_datatree **entry, char *list_path, char *key_value,
                                       char *key_name, char *ns);

/* ---- Finding or creating --------------------------------------------------------------------------------- */

/*
 * Finds an entry as tvk_map_search_list does, or adds it with its key leaf, and keeps list_path as the request's
 * pending trim path, if none is set yet. An entry whose own namespace is not ns counts as not there (unless ns is
 * null, with which nothing can be added). root is changed where it must be, although it is declared read-only.
 *
 * When to free the trim path: as long as pending_trim_path is set, paths that hold it are added below
 * pending_list_node, which this operation does not set; without one they fail with TVK_ERR_INVALID. So, after
 * each successful call, either set state->pending_list_node to the entry, and the entry's leaves can be added by
 * their full path; or call tvk_map_free_trim_path_list_ctx. Before looking for another list's entry call
 * tvk_map_datatree_reset_trim_path_ctx, since a set trim path is not replaced, and since the adding here goes by
 * the pending trim path as well.
 *
 * Looking for an entry whose list is not there yet records the error path, as tvk_map_get_list does, even though the
 * entry is then added. Mapping code that goes on clears error_xpath and error_xpath_ns, unless they were set before.
 *
 * A new entry is told from its siblings by being numbered (subtree_index). A list that holds an entry without a
 * number, added by other means, lends that one to the new key instead: add all entries this way.
 *
 * entry holds until its list grows; it stays unwritten, with 0, where path adding leaves the path out (the get
 * filter, path recording, an excluded node). Returns 0; TVK_ERR_INVALID for a null argument other than ns, or nothing
 * found and ns null; TVK_ERR_NO_MEMORY; what adding the key leaf returned; TVK_ERR_NOT_FOUND when the trim path could
 * not be kept (the entry is there, and stored). A failed addition may leave an entry without its key leaf. Without
 * memory for the search alone an entry that is there is not found, and another one of the same key is added.
 */
TVK_MAP_API qerrno tvk_map_search_or_add_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree *root,
                                              const struct qidl_tvk_datatree **entry, char *list_path, char *key_value,
                                              char *key_name, char *ns);

/*
 * Keeps a copy of path as pending_trim_path, unless one is set: the first path wins until it is cleared.
 * Returns 0, also when a former path was kept; TVK_ERR_NOT_FOUND when the copy could not be made;
 * TVK_ERR_INVALID for a null path or state record.
 */
TVK_MAP_API qerrno tvk_map_copy_trim_path_list_ctx(tvk_map_ctx ctx, const char *path);

/* Releases pending_trim_path, if set. Returns 0; TVK_ERR_NOT_FOUND for a null context or state record. */
TVK_MAP_API qerrno tvk_map_free_trim_path_list_ctx(tvk_map_ctx ctx);

/*
 * Clears the whole pending entry and empties the output list. pending_hierarchy_path is not released: stitching,
 * which sets it, says who owns it.
 * Returns 0 when the output list was empty; TVK_ERR_INVALID when it had to be emptied, which a finished walk
 * should have done; TVK_ERR_NOT_FOUND for a null context or state record.
 */
TVK_MAP_API qerrno tvk_map_datatree_reset_trim_path_ctx(tvk_map_ctx ctx);

/* ---- Namespaces ------------------------------------------------------------------------------------------
 *
 * A node has the namespace of its element (ns) and, when its value names an identity, that of its value (data_ns).
 * The trees are declared read-only and changed all the same.
 */

/*
 * Replaces node's namespace, which is released, by a copy of ns. Returns 0; TVK_ERR_INVALID for a null argument, or,
 * without a message, a node that has no tag or no namespace to replace; TVK_ERR_NO_MEMORY: the node is left without a
 * namespace.
 */
TVK_MAP_API qerrno tvk_map_update_node_namespace(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, char *ns);

/*
 * Replaces the namespaces of the nodes along path, whose first component names a child of tree. Each component is
 * searched among the children of the last match, and its first match counts; components that are not in the tree are
 * passed over: the next one is searched among the same children. path and ns are borrowed, and may be parts of tree.
 * mode 0: every node that matches; 1: only the node that the last component reaches, if it has a namespace; any
 * other: every node that matches, and the last one once more through tvk_map_update_node_namespace. Except in mode 1,
 * nodes that had none get one.
 * Returns 0, also when nothing matches or path has 1000 characters and more; TVK_ERR_INVALID for a null argument;
 * what tvk_map_update_node_namespace returned; TVK_ERR_NO_MEMORY: one node is left without a namespace, those before
 * it have the new one.
 */
TVK_MAP_API qerrno tvk_map_datatree_update_namespace(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, char *path,
                                                     char *ns, int mode);

/*
 * Gives the node at path, whose first component is the tag of tree itself, a copy of data_ns as the namespace of its
 * value. A former one is not released: that is the caller's, who takes hold of it before.
 * Returns 0, also for a path without components; TVK_ERR_INVALID for a null argument; TVK_ERR_NOT_FOUND when the path
 * has one component only, leaves the tree or meets a child without a tag, or tree has no children; TVK_ERR_NO_MEMORY.
 * Nothing is changed on failure.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_data_ns(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, const char *path,
                                                const char *data_ns);

/*
 * Checks that node's value is of the namespace ns. A node without a value passes in a read, and when it is to be
 * deleted; a node without a namespace of its value passes when optional is 1.
 * Returns 0; TVK_ERR_INVALID for a null argument (ERR "Invalid arguments passed!"); TVK_ERR_NAMESPACE with the error
 * path recorded: the namespace is another one, is missing, or its presence bit stands alone. error_node_tag is not set.
 */
TVK_MAP_API qerrno tvk_map_validate_data_ns(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, char *ns,
                                            int optional);

#ifdef __cplusplus
}
#endif

#endif
