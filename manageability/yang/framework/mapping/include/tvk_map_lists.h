/* Finding and creating list entries by key; namespaces of nodes and values. */
#ifndef TVK_MAP_LISTS_H
#define TVK_MAP_LISTS_H

#include <stdint.h>

#include "tvk_map_state.h"
#include "tvk_map_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Finding ---------------------------------------------------------------------------------------------
 *
 * A list stands in a tree as siblings that bear its name, one per entry, the keys among their children. Children
 * are searched in order and the first match counts. Finding never adds.
 */

/*
 * Finds a child of parent by tag and value, or with a null data by tag alone. The namespace, unless null, is
 * compared only without data, and then with the first child of that tag only. Nothing is logged.
 *
 * Returns
 * - 0: found is the child.
 * - TVK_ERR_INVALID: there is none, a child without a tag comes first, or parent or found is null.
 * - TVK_ERR_NOT_FOUND: parent claims children and has no array.
 */
TVK_MAP_API qerrno tvk_map_datatree_get_subtree(const struct qidl_tvk_datatree *parent,
                                                const struct qidl_tvk_datatree **found, const char *tag,
                                                const char *data, const char *ns);

/*
 * Asks whether a node with the value key_value lies on path. The first component may name node itself; then each
 * component is searched among the children, of the last match or, where nothing matched, of the same node again.
 * The last argument is ignored.
 *
 * Returns
 * - 0: one does.
 * - TVK_ERR_NOT_FOUND: none does, or the search met a child without a tag.
 * - TVK_ERR_NO_MEMORY: path could not be copied.
 * - TVK_ERR_INVALID: node or path is null.
 */
TVK_MAP_API qerrno tvk_map_get_subtree_from_key(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, const char *path,
                                                const char *key_value, const struct qidl_tvk_datatree *ignored);

/*
 * Finds the list entry with the key leaf key_name = key_value among the children of *node and stores it there.
 * The entry's tag is the last component of list_path. ns is handed to tvk_map_datatree_get_subtree for the key.
 *
 * Returns
 * - 0: *node is the entry.
 * - TVK_ERR_INVALID: there is none; or node, *node or list_path is null. *node is unchanged.
 * - TVK_ERR_NOT_FOUND: *node claims children and has no array, or list_path could not be copied. *node is unchanged.
 */
TVK_MAP_API qerrno tvk_map_iterate_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree **node, char *key_name,
                                        char *key_value, char *list_path, char *ns);

/*
 * Walks *node down path (cut in place at "/") to the parent of the list entries that its last component names.
 * With ns, each node on the way, the first entry included, must have that namespace.
 *
 * Returns
 * - 0: *node is the parent.
 * - TVK_ERR_INVALID: path, node or *node is null; nothing is logged for a null path. Or the path leaves the tree or has
 *   no component: the error path is recorded, and *node is the last node reached.
 */
TVK_MAP_API qerrno tvk_map_get_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree **node, char *path, char *ns);

/*
 * Finds the entry with key_name = key_value of the list at list_path below root. Note the order: value before
 * name. ns is the namespace of the nodes on the path, null for any.
 *
 * Returns
 * - 0: entry is the entry.
 * - TVK_ERR_INVALID: it is not there, with the error path recorded when the list is not there either; or root, entry or
 *   list_path is null.
 * - TVK_ERR_NOT_FOUND: list_path could not be copied.
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
 * The pending trim path. As long as it is set, paths that hold it are added below pending_list_node. This operation
 * does not set that node, and without one such paths fail with TVK_ERR_INVALID. So, after each successful call, either
 * set state->pending_list_node to the entry, and add the entry's leaves by their full path; or call
 * tvk_map_free_trim_path_list_ctx. Before looking for another list's entry call tvk_map_datatree_reset_trim_path_ctx:
 * a set trim path is not replaced, and the adding here goes by it as well.
 *
 * The error path. A search for an entry whose list is not there yet records it, as tvk_map_get_list does, even though
 * the entry is then added. Mapping code that goes on clears error_xpath and error_xpath_ns, unless they were set
 * before.
 *
 * A new entry is told from its siblings by being numbered (subtree_index). A list that holds an entry without a
 * number, added by other means, lends that one to the new key instead: add all entries this way.
 *
 * entry holds until its list grows. A failed addition may leave an entry without its key leaf. Without memory for the
 * search alone an entry that is there is not found, and another one of the same key is added.
 *
 * Returns
 * - 0: entry is the entry; or it is unwritten, as path adding left the path out (the get filter, path recording, an
 *   excluded node).
 * - TVK_ERR_INVALID: root, entry, list_path, key_value or key_name is null; or nothing was found and ns is null; or
 *   adding the key leaf returned it; or there is no state record to keep the trim path in, and entry is the entry.
 * - TVK_ERR_NO_MEMORY: the entry or its key leaf could not be added.
 * - TVK_ERR_NOT_FOUND: adding the key leaf returned it; or the trim path could not be kept, and entry is the entry.
 * - TVK_ERR_UNSUPPORTED: adding the key leaf returned it.
 */
TVK_MAP_API qerrno tvk_map_search_or_add_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree *root,
                                              const struct qidl_tvk_datatree **entry, char *list_path, char *key_value,
                                              char *key_name, char *ns);

/* ---- Namespaces ------------------------------------------------------------------------------------------
 *
 * A node has the namespace of its element (ns) and, when its value names an identity, that of its value (data_ns).
 * The trees are declared read-only and changed all the same.
 */

/*
 * Replaces node's namespace, which is released, by a copy of ns.
 *
 * Returns
 * - 0: the namespace is replaced.
 * - TVK_ERR_INVALID: node or ns is null; or, with nothing logged, node has no tag or no namespace to replace.
 * - TVK_ERR_NO_MEMORY: ns could not be copied. The node is left without a namespace.
 */
TVK_MAP_API qerrno tvk_map_update_node_namespace(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, char *ns);

/*
 * Replaces the namespaces of the nodes along path, whose first component names a child of tree. Each component is
 * searched among the children of the last match, and its first match counts; components that are not in the tree are
 * passed over: the next one is searched among the same children. path and ns are borrowed, and may be parts of tree.
 *
 * With mode 0 every node that matches gets the namespace. With mode 1 only the node that the last component reaches
 * does, if it has a namespace already. With any other mode every node that matches does, and the last one once more
 * through tvk_map_update_node_namespace. Except in mode 1, nodes that had none get one.
 *
 * Returns
 * - 0: the matching nodes have the namespace. Also when nothing matches, or path has 1000 characters or more.
 * - TVK_ERR_INVALID: tree, path or ns is null; or tvk_map_update_node_namespace returned it for the last node.
 * - TVK_ERR_NO_MEMORY: ns could not be copied. One node is left without a namespace, those before it have the new one.
 */
TVK_MAP_API qerrno tvk_map_datatree_update_namespace(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, char *path,
                                                     char *ns, int mode);

/*
 * Gives the node at path, whose first component is the tag of tree itself, a copy of data_ns as the namespace of its
 * value. A former one is not released: it is the caller's, who takes hold of it before.
 *
 * Returns
 * - 0: the node has the copy; or path has no component, and nothing is changed.
 * - TVK_ERR_INVALID: tree, path or data_ns is null.
 * - TVK_ERR_NOT_FOUND: the path has one component only, leaves the tree or meets a child without a tag, or tree has no
 *   children. Nothing is changed.
 * - TVK_ERR_NO_MEMORY: path or data_ns could not be copied. Nothing is changed.
 */
TVK_MAP_API qerrno tvk_map_datatree_add_data_ns(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, const char *path,
                                                const char *data_ns);

/*
 * Checks that node's value is of the namespace ns. A node without a value passes in a read, and when it is to be
 * deleted; a node without a namespace of its value passes when optional is 1. error_node_tag is not set.
 *
 * Returns
 * - 0: the node passes.
 * - TVK_ERR_INVALID: node or ns is null (ERR "Invalid arguments passed!").
 * - TVK_ERR_NAMESPACE: the namespace is another one or is missing, or its presence bit stands alone. The error path is
 *   recorded.
 */
TVK_MAP_API qerrno tvk_map_validate_data_ns(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, char *ns,
                                            int optional);

#ifdef __cplusplus
}
#endif

#endif
