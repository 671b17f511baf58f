/* Reaching nodes by an xpath: adding, changing and reading them, and stitching one model below another. */
#ifndef TVK_MAP_XPATH_H
#define TVK_MAP_XPATH_H

#include <stddef.h>
#include <stdint.h>

#include "tvk_map_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Sizes of texts in bytes, with the terminator. */
#define TVK_MAP_XPATH_MAX_VALUE 300
#define TVK_MAP_XPATH_MAX_NS 250
#define TVK_MAP_XPATH_MAX_KEY_NAME 50

#define TVK_MAP_XPATH_MAX_KEYS 5 /* in one step */

/* Values of tvk_map_node_operation::op. */
#define TVK_XPATH_ADD 1u
#define TVK_XPATH_NO_ACTION 2u
#define TVK_XPATH_MODIFY 3u
#define TVK_XPATH_READ 4u

/* Values of tvk_map_node_operation::kind: the node that an add ends with. */
#define TVK_XPATH_CONTAINER 1u     /* without a value */
#define TVK_XPATH_INSTANCE 2u      /* without a value; a new, numbered instance */
#define TVK_XPATH_LEAF 3u          /* with the record's value */
#define TVK_XPATH_LEAF_INSTANCE 4u /* with the record's value; a new, numbered instance, even if one is there */

/* One operation on a tree. The caller fills it, zeroed before, and owns what it points to. */
struct tvk_map_node_operation {
    struct qidl_tvk_datatree *root;      /* the path starts at its children */
    struct qidl_tvk_datatree *result;    /* out, see tvk_map_tree_xpath_operations */
    uint32_t op;                         /* TVK_XPATH_ADD .. TVK_XPATH_READ */
    uint32_t kind;                       /* TVK_XPATH_CONTAINER .. TVK_XPATH_LEAF_INSTANCE */
    char value[TVK_MAP_XPATH_MAX_VALUE]; /* the value to be stored, or out: the value read */
    char ns[TVK_MAP_XPATH_MAX_NS];       /* the namespace of all nodes added; never empty */
    char xpath[TVK_MAP_MAX_PATH];        /* never empty */
    char trim_path[TVK_MAP_MAX_PATH];    /* for stitching only */
};
typedef struct tvk_map_node_operation tvk_map_node_operation;

TVK_STATIC_ASSERT(offsetof(struct tvk_map_node_operation, value) == 2 * sizeof(void *) + 8, "layout of the record");
TVK_STATIC_ASSERT(offsetof(struct tvk_map_node_operation, trim_path) ==
                      offsetof(struct tvk_map_node_operation, value) + 300 + 250 + 1000,
                  "layout of the record");

/* ---- Operations on a tree ---------------------------------------------------------------------------------
 *
 * An xpath is a list of steps, each ended by "/" or the end of the path; one leading "/" is ignored, empty steps do
 * nothing. A plain step is the tag of a child, the first of its name. A keyed step, list[name=value][name=value],
 * is the first entry of the list whose key leaves have these values, and must be followed by "/":
 *
 *     /interfaces/interface[name=Gi0/0/0]/mtu
 *
 * A keyed step ends at the first "]/", so that values may hold "/". Values are taken literally, quotes included. A
 * key without "=", or with nothing behind it, has the empty value. Namespaces are not compared.
 */

/*
 * Carries out record->op. record and root are borrowed.
 *
 * TVK_XPATH_ADD adds the part of the path that is missing; while it searches, list entries marked delete or remove are
 * not there. Plain steps before a keyed one become containers, a keyed step a new numbered entry with its key leaves,
 * and the last plain steps the node of record->kind. Paths go through tvk_map_datatree_add_path_flagged with
 * TVK_ADD_RELATIVE and TVK_ADD_UNFILTERED, so a pending trim path that one of them holds sends it elsewhere. A key leaf
 * that cannot be added counts only when it is the last of its step. A path without the leading "/" loses one more
 * character where the adding starts: begin the path with "/".
 *
 * TVK_XPATH_MODIFY gives the node a copy of record->value. Its former value is not released: it is the caller's, who
 * takes hold of it before. TVK_XPATH_READ copies the node's value to record->value, cut to the size of that field,
 * empty when the node has none. TVK_XPATH_NO_ACTION does nothing.
 *
 * record->result afterwards; it holds until its parent next gets a child:
 * - add, 0: the node that the addition was made below, or the last list entry added; not the last node.
 * - add, TVK_ERR_PRESENT: the node; the deepest node reached when a child without a tag ended the search; null when
 *   the path has no step.
 * - modify and read, 0: the node.
 * - no action, or the record is refused before anything is searched: result is as it was.
 * - any other failure: null. The nodes added so far stay in the tree.
 *
 * Returns
 * - 0: the operation is carried out.
 * - TVK_ERR_INVALID: record or its root is null. Or the record is refused before anything is searched, and nothing is
 *   logged: op or kind is out of range, a text is not terminated, ns or xpath is empty, a keyed step ends the path or
 *   has more than five keys, a key name has more than 49 characters or a key value more than 299. Or, modify and read:
 *   the path has no step. Or, add: nothing is left to be added, a list entry could not be added, or adding a path
 *   returned it.
 * - TVK_ERR_PRESENT: add: the node is there, the path has no step, or a keyed step meets a child without a tag
 *   (ERR "Node already present in the path %s\n").
 * - TVK_ERR_NOT_PRESENT: modify and read: the node is not there (ERR "Node not present in the path %s\n").
 * - TVK_ERR_NOT_FOUND: modify and read: a keyed step meets a child without a tag (logged in the same way). Or, add: as
 *   tvk_map_datatree_add_path_flagged.
 * - TVK_ERR_NO_MEMORY: modify: the value could not be copied, and the node is unchanged. Or, add: as
 *   tvk_map_datatree_add_path_flagged.
 * - TVK_ERR_UNSUPPORTED: add: as tvk_map_datatree_add_path_flagged.
 */
TVK_MAP_API qerrno tvk_map_tree_xpath_operations(tvk_map_ctx ctx, struct tvk_map_node_operation *record);

/* ---- From path tokens to an xpath -------------------------------------------------------------------------
 *
 * A token is one level of a path with its leading "/", such as "/interface". Tokens are borrowed; a null one counts as
 * empty. Buffers have TVK_MAP_MAX_PATH bytes and hold a terminated text, which is appended to. A text that does not fit
 * empties the buffer.
 */

/*
 * Appends token (may be null) and the keys of list_entry: its children marked as keys, as [name=value][name=value].
 * While a delete or read is propagated, or keys are worked on, an entry without children takes the nodes on top of
 * the instance-tree stack instead; all of them are marked as keys.
 *
 * Returns
 * - 0: token and keys are appended.
 * - TVK_ERR_NO_MEMORY: they do not fit. xpath is empty.
 * - TVK_ERR_INVALID: xpath or list_entry is null.
 */
TVK_MAP_API qerrno tvk_map_xpath_list_append(tvk_map_ctx ctx, char *xpath, struct qidl_tvk_datatree *list_entry,
                                             const char *token);

/*
 * Appends token_count tokens to xpath, and to trim_path (may be null) without keys. Token i stands for level
 * level_offset + i of the node hierarchy: where that is a list level other than the outermost, the token gets the keys
 * of the level's node. A null tokens array counts as empty.
 *
 * Returns
 * - 0: the tokens are appended; or a list step did not fit xpath, or a token did not fit trim_path, which ends the
 *   building with that buffer empty.
 * - TVK_ERR_NO_MEMORY: a token that has no keys does not fit xpath. xpath is empty.
 * - TVK_ERR_INVALID: xpath is null.
 */
TVK_MAP_API qerrno tvk_map_build_xpath_from_tokens(tvk_map_ctx ctx, const char *const *tokens, uint32_t token_count,
                                                   int32_t level_offset, char *xpath, char *trim_path);

/*
 * In a get or get-config, adds a leaf with the value of leaf below root, at the xpath that the tokens give with level
 * offset -1; in other requests nothing. A value is cut to 299 characters. The fourth argument is ignored.
 *
 * Returns
 * - 0: the leaf is added; or there is a node at the xpath, and its value stays (TRC "xpath already added"); or the
 *   request is no read.
 * - TVK_ERR_INVALID: leaf, root, ns or tokens is null; ns or a list step does not fit; or tvk_map_tree_xpath_operations
 *   returned it.
 * - TVK_ERR_NO_MEMORY: another token does not fit, or tvk_map_tree_xpath_operations returned it.
 * - TVK_ERR_NOT_FOUND, TVK_ERR_UNSUPPORTED: as tvk_map_tree_xpath_operations.
 */
TVK_MAP_API qerrno tvk_map_add_leaf_from_xpath(tvk_map_ctx ctx, const struct qidl_tvk_datatree *leaf,
                                               struct qidl_tvk_datatree *root, const void *ignored, const char *ns,
                                               const char *const *tokens, uint32_t token_count);

/* ---- Stitching --------------------------------------------------------------------------------------------
 *
 * Stitching adds a node at an xpath and makes it the place where the nodes built next go: the pending entry of the
 * request state, with record->trim_path as the path that theirs are trimmed by. The node is borrowed while it is
 * installed. Where an operation of this library moves it with its siblings, the request state follows it. Other code
 * that moves or releases it takes it out of the request state before.
 *
 * The four pending fields go together. pending_trim_path belongs to the state, and the first one stays until it is
 * cleared (tvk_map_copy_trim_path_list_ctx). pending_hierarchy_path belongs to the state as long as
 * pending_hierarchy_kind is not 0; without a kind it points to nothing that may be read or released.
 * tvk_map_release_pending_entry clears all four and releases both texts. tvk_map_datatree_reset_trim_path_ctx forgets
 * pending_hierarchy_path without releasing it.
 */

/*
 * Stitches a list below a container: adds record->xpath, whatever record->op is, and moves the pending entry to the
 * output list. When the innermost level of the node hierarchy is a container, the entry ends with it; when it is a list
 * entry, or there is none, only tvk_remove_from_output_list_ctx takes it out. Without a trim path it stays pending.
 * A node that is there already is taken as it is (TRC "list already exists").
 *
 * record is borrowed; its op is set to TVK_XPATH_ADD, its result as tvk_map_tree_xpath_operations does.
 *
 * Returns
 * - 0: the node is stitched.
 * - TVK_ERR_INVALID: record or the state record is null (ERR "NULL arguments passed"), or trim_path is not terminated:
 *   nothing is changed. Or the addition failed, whatever its status: the pending entry is unchanged.
 * - TVK_ERR_NOT_FOUND: the trim path could not be copied, or 50 output entries are open.
 * - TVK_ERR_NO_MEMORY: the hierarchy path could not be copied.
 *
 * After TVK_ERR_NOT_FOUND and TVK_ERR_NO_MEMORY the node is in the tree and the pending entry is released;
 * pending_hierarchy_path still points to where the released path was.
 */
TVK_MAP_API qerrno tvk_map_stitch_container_to_list(tvk_map_ctx ctx, struct tvk_map_node_operation *record);

/*
 * Stitches a list entry below a list entry, as tvk_map_stitch_container_to_list does, but the pending entry stays
 * pending.
 *
 * Returns
 * - 0, TVK_ERR_INVALID, TVK_ERR_NO_MEMORY: as tvk_map_stitch_container_to_list.
 * - TVK_ERR_NOT_FOUND: the trim path could not be copied. No output entry is needed.
 */
TVK_MAP_API qerrno tvk_map_stitch_list_to_list(tvk_map_ctx ctx, struct tvk_map_node_operation *record);

/*
 * In a get or get-config, stitches a list to a list at the xpath that the tokens give with level offset 1, below root;
 * their plain path is the trim path. In other requests does nothing. The second argument is ignored.
 *
 * Returns
 * - 0: the list is stitched, or the request is no read.
 * - TVK_ERR_INVALID: root, ns or tokens is null, there is no token, ns or a list step does not fit, or
 *   tvk_map_stitch_list_to_list returned it.
 * - TVK_ERR_NO_MEMORY: any other token, or the "/" behind the last, does not fit the xpath; or
 *   tvk_map_stitch_list_to_list returned it.
 * - TVK_ERR_NOT_FOUND: as tvk_map_stitch_list_to_list.
 */
TVK_MAP_API qerrno tvk_map_auto_stitch_list_to_list(tvk_map_ctx ctx, const void *ignored,
                                                    struct qidl_tvk_datatree *root, const char *ns,
                                                    const char *const *tokens, uint32_t token_count);

#ifdef __cplusplus
}
#endif

#endif
