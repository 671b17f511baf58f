/*
 * The get filter: asking a subtree filter about paths, marking a response against it, and sweeping all that is not
 * kept.
 *
 * A filter is a data tree. Path adding asks tvk_map_dfs_filter_schema about each path and skips those that the filter
 * cannot select. The built response is marked by tvk_map_dfs_filter_mark, or by tvk_map_dfs_filter_con where values and
 * keys must match exactly: both write a verdict (node_kind) into response nodes. tvk_map_dfs_filter_sweep then
 * deletes every child whose verdict is neither TVK_NODE_KIND_KN nor TVK_NODE_KIND_KA.
 *
 * Conventions of this header, where an operation does not say otherwise:
 *
 * - Trees, stacks and tables are borrowed for the call. No operation keeps anything between calls.
 * - A null argument, the context included, is no error: the operation does nothing and returns 0. Nothing is logged
 *   but by the container phase and tvk_map_datatree_filter_get_response.
 * - A verdict without its presence bit reads as 0, a child count without TVK_HAS_SUBTREES as 0. A node that claims
 *   children and has no array for them is passed over without a verdict.
 * - When memory runs out a node is not visited. A node that is not visited is not marked, and a node that is not marked
 *   is swept.
 * - Walks keep their depth in a work stack of elements from the named heap; depth and width have no limit but memory.
 */
#ifndef TVK_MAP_FILTER_H
#define TVK_MAP_FILTER_H

#include <stdint.h>

#include "kel_queue.h"
#include "tvk_map_types.h"

#define TVK_MAP_DFS_STACK_CAPACITY 5000   /* a hint to the queue, not a limit */
#define TVK_MAP_MAX_FILTER_COMPONENTS 201 /* of a path, behind the root */
#define TVK_MAP_MAX_FILTER_KEYS 10        /* of a list entry */
#define TVK_MAP_MAX_FILTER_LEVELS 50      /* entries of the level table */

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Work stack ------------------------------------------------------------------------------------------
 *
 * A queue used at its head only, so that the element pushed last is taken first. It holds elements of the named
 * heap and owns them. An element that is taken out belongs to the taker, who releases it with kel_named_free.
 */

struct tvk_map_dfs_elem {
    void *link;                     /* the queue's */
    uint32_t level;                 /* 1 for the root */
    struct qidl_tvk_datatree *node; /* borrowed; in the two-tree phases the node of the filter, the source */
    union {
        struct qidl_tvk_datatree *node; /* two-tree phases: the node of the response, the target; borrowed */
        int32_t index;                  /* schema filter: the path component that node matched */
    } pair;
    uint32_t extra; /* container phase; 0 */
};

/*
 * Makes stack, a record of the caller's, empty.
 *
 * Returns
 * - 1: the stack is empty.
 * - 0: stack is null.
 */
TVK_MAP_API uint32_t tvk_map_dfs_stack_init(struct kel_queue *stack);

/* Releases the elements that are left. The stack stays usable. */
TVK_MAP_API void tvk_map_dfs_stack_free(struct kel_queue *stack);

/*
 * Pushes node for the schema filter, if its tag is tokens[index]. ctx is not used.
 *
 * Returns
 * - 1: the element is pushed.
 * - 0: the tags differ; stack, node, tokens or tokens[index] is null; index is negative; or memory runs out. The stack
 *   is as it was.
 */
TVK_MAP_API uint32_t tvk_map_dfs_stack_push(tvk_map_ctx ctx, struct kel_queue *stack, struct qidl_tvk_datatree *node,
                                            char *const *tokens, int32_t index, uint32_t level);

/*
 * Pushes source and target for the mark phase, if their tags are the same; with force of exactly 1 whatever their tags
 * are. ctx is not used.
 *
 * Returns
 * - 1: the element is pushed.
 * - 0: the tags differ; stack, source or target is null; or memory runs out. The stack is as it was.
 */
TVK_MAP_API uint32_t tvk_map_dfs_mark_stack_push(tvk_map_ctx ctx, struct kel_queue *stack,
                                                 struct qidl_tvk_datatree *source, struct qidl_tvk_datatree *target,
                                                 uint32_t level, int force);

/*
 * Pushes source and target for the container phase, as tvk_map_dfs_mark_stack_push does, with extra.
 *
 * Returns
 * - 1, 0: as tvk_map_dfs_mark_stack_push.
 */
TVK_MAP_API uint32_t tvk_map_dfs_con_stack_push(tvk_map_ctx ctx, struct kel_queue *stack,
                                                struct qidl_tvk_datatree *source, struct qidl_tvk_datatree *target,
                                                uint32_t level, uint32_t extra, int force);

/*
 * Pushes node for the sweep phase or the template walk. ctx is not used.
 *
 * Returns
 * - 1: the element is pushed.
 * - 0: stack or node is null, or memory runs out. The stack is as it was.
 */
TVK_MAP_API uint32_t tvk_map_dfs_sweep_stack_push(tvk_map_ctx ctx, struct kel_queue *stack,
                                                  struct qidl_tvk_datatree *node, uint32_t level);

/* ---- Template walk --------------------------------------------------------------------------------------- */

/* Pushes node; returns 1 when it did. */
typedef uint32_t (*tvk_map_dfs_push_fp)(tvk_map_ctx ctx, struct kel_queue *stack, struct qidl_tvk_datatree *node,
                                        uint32_t level);

/* Handles one element, borrowed, and may push more. Returns 1 to stop the walk. */
typedef uint32_t (*tvk_map_dfs_process_fp)(tvk_map_ctx ctx, struct kel_queue *stack,
                                           const struct tvk_map_dfs_elem *element);

/*
 * Pushes root with push at level 1, then hands the elements to process, last in, first out, until one call returns 1
 * or none is left. Elements that are left on the stack then are released.
 *
 * Returns
 * - 1: a call of process returned 1.
 * - 0: push returned 0, or an argument is null.
 * - any other: the value that the last call of process returned.
 */
TVK_MAP_API uint32_t tvk_map_dfs_template(tvk_map_ctx ctx, struct qidl_tvk_datatree *root, tvk_map_dfs_push_fp push,
                                          tvk_map_dfs_process_fp process);

/*
 * Asks whether root or a node below it is of type TVK_NODE_TYPE_CONTENT_MATCH.
 *
 * Returns
 * - 1: one is.
 * - 0: none is, an argument is null, or memory ran out before one was visited.
 */
TVK_MAP_API uint32_t tvk_map_con_fil_check_con_node(tvk_map_ctx ctx, struct qidl_tvk_datatree *root);

/*
 * One step of tvk_map_con_fil_check_con_node.
 *
 * Returns
 * - 1: the element's node is of type TVK_NODE_TYPE_CONTENT_MATCH.
 * - 0: it is not, and its children are pushed; or the element or its node is null.
 */
TVK_MAP_API uint32_t tvk_map_dfs_process_con_node(tvk_map_ctx ctx, struct kel_queue *stack,
                                                  const struct tvk_map_dfs_elem *element);

/* ---- Schema filter --------------------------------------------------------------------------------------- */

/*
 * Asks whether the filter selects path, a "/"-separated path of tags below filter's root, or all below a node on it.
 * All entries of a list are followed. accept_last of exactly 1 accepts a path that ends on a filter node with
 * children. Components after the first TVK_MAP_MAX_FILTER_COMPONENTS are not looked at.
 *
 * Returns
 * - 1: it does.
 * - 0: it does not, an argument is null, the root has no tag, or memory runs out.
 */
TVK_MAP_API uint32_t tvk_map_dfs_filter_schema(tvk_map_ctx ctx, const struct qidl_tvk_datatree *filter,
                                               const char *path, int accept_last);

/*
 * One step of the schema filter. tokens holds token_count components, the root's tag first; the element's index is
 * the one that its node matched. Pushes the children that match the next. Without a context the request counts as one
 * without content match.
 *
 * Returns
 * - 1: the path is selected. The node is a leaf, or has only key leaves and the first has a value, or, in a request
 *   with TVK_WALK_CONTENT_MATCH_IN_REQUEST, has only content-match leaves; or the path ends here and accept_last is 1.
 * - 0: the path is not selected yet; the element, its node or tokens is null; the index is outside tokens; or a child
 *   has no tag, and the children behind it are not looked at.
 */
TVK_MAP_API uint32_t tvk_map_dfs_process_node(tvk_map_ctx ctx, struct kel_queue *stack,
                                              const struct tvk_map_dfs_elem *element, char *const *tokens,
                                              int32_t token_count, int accept_last);

/* ---- Keys ------------------------------------------------------------------------------------------------ */

/* The key leaves of a list entry; a key leaf is a child with TVK_HAS_IS_KEY. */
struct tvk_map_key_info {
    uint32_t key_index[TVK_MAP_MAX_FILTER_KEYS]; /* place among the children */
    uint32_t key_count;
    uint32_t spare[TVK_MAP_MAX_FILTER_KEYS];
    uint32_t key_has_value[TVK_MAP_MAX_FILTER_KEYS]; /* 1 where the key leaf has TVK_HAS_DATA */
};

/*
 * Fills keys, cleared first, from the children of node. Recording stops at TVK_MAP_MAX_FILTER_KEYS key leaves: later
 * ones are neither recorded nor counted. Returns the number of recorded keys that have a value; 0 when node or keys is
 * null, with keys as it was.
 */
TVK_MAP_API uint32_t tvk_map_datatree_get_keys(const struct qidl_tvk_datatree *node, struct tvk_map_key_info *keys);

/*
 * Compares the keys of a filter's list entry with target. The key leaves must be filter_entry's first children: for
 * the ith key that has a value its ith child is compared, wherever the key leaf stands.
 *
 * Returns
 * - 1: target has, for each of them, a child of that tag with that value; or there is none to compare.
 * - 0: target lacks one, or has a child without a tag before it; or an argument is null.
 */
TVK_MAP_API uint32_t tvk_map_datatree_compare_keys(const struct qidl_tvk_datatree *filter_entry,
                                                   const struct tvk_map_key_info *keys,
                                                   const struct qidl_tvk_datatree *target);

/* ---- Mark phase ------------------------------------------------------------------------------------------ */

/*
 * Marks response against filter, whose roots are taken to correspond. A filter leaf keeps all below the response
 * nodes of its place; a filter node with children keeps the response nodes that have one of them; a list entry with
 * key values is compared with those only that have them. A response node that no filter node names keeps the verdict
 * that it has.
 *
 * Returns
 * - 0: always.
 */
TVK_MAP_API uint32_t tvk_map_dfs_filter_mark(tvk_map_ctx ctx, struct qidl_tvk_datatree *filter,
                                             struct qidl_tvk_datatree *response);

/*
 * One step of the mark phase. Without a context the request counts as one without content match.
 *
 * Returns
 * - 1: the element's target was marked TVK_NODE_KIND_KA without a look at its children.
 * - 0: it was not; or the element, its source or its target is null.
 */
TVK_MAP_API uint32_t tvk_map_dfs_process_mark(tvk_map_ctx ctx, struct kel_queue *stack,
                                              const struct tvk_map_dfs_elem *element);

/* ---- Container phase ------------------------------------------------------------------------------------- */

/*
 * One level of the container phase's table, about the node that was processed last there: an ancestor of all that is
 * processed later on deeper levels. Entry 0 stands for the parent of the root and receives its counts.
 */
struct tvk_map_cnt_hier {
    struct qidl_tvk_datatree *node; /* target; borrowed, null where nothing was processed */
    int32_t lvl;
    int32_t tp;  /* node type of the source, before the phase changed it */
    int32_t ch;  /* children of the target */
    int32_t dch; /* children of the target that were dropped */
    int32_t kch; /* matched keys at and below this level */
    int32_t kn;  /* key leaves of the source that have no type */
    int32_t ksn; /* its key leaves that select */
    int32_t kmn; /* its key leaves with a value */
};
typedef struct tvk_map_cnt_hier tvk_map_cnt_hier_stack_t;

/*
 * Marks target against source, a filter whose nodes carry their types, level by level: selection leaves keep what
 * they name, content-match leaves and key leaves must have their value in the target, and a target of which nothing
 * is kept is dropped, and with it ancestors that have nothing else. Sources of levels 1 and 2 become containers. A
 * source "bgp" of level 2 is passed over with its target. Nodes of level TVK_MAP_MAX_FILTER_LEVELS and deeper are not
 * visited. With a non-zero dfs_trace of the context the level table and the counts are traced. Nothing is marked when
 * memory runs out at the start.
 *
 * Returns
 * - 0: always.
 */
TVK_MAP_API uint32_t tvk_map_dfs_filter_con(tvk_map_ctx ctx, struct qidl_tvk_datatree *source,
                                            struct qidl_tvk_datatree *target);

/*
 * Drops the node of level, and then each parent of which nothing is left: its verdict becomes 0 and its own parent's
 * dch is counted up. The walk stops at a level of which something is left. A level with kch above 0 is such a level. Of
 * a list entry something is left when ksn or kmn is above 0, or kn and dch together are below ch; of any other node,
 * when dch is below ch.
 *
 * The walk goes up the table of TVK_MAP_MAX_FILTER_LEVELS entries from level, at most its last entry, to 1. A null
 * table holds no levels. A null context stops the process.
 *
 * Returns
 * - 1: always.
 */
TVK_MAP_API uint32_t tvk_map_mark_visit_parent(tvk_map_ctx ctx, tvk_map_cnt_hier_stack_t *levels, uint32_t level);

/*
 * Keeps the nodes of level and of all its parents, and counts their parents' kch up. Table and context are as for
 * tvk_map_mark_visit_parent.
 *
 * Returns
 * - 1: always.
 */
TVK_MAP_API uint32_t tvk_map_mark_visit_parent_mark_kc(tvk_map_ctx ctx, tvk_map_cnt_hier_stack_t *levels,
                                                       uint32_t level);

/* Traces levels 0 to level of the table, under label. Table and context are as for tvk_map_mark_visit_parent. */
TVK_MAP_API void print_stack(tvk_map_ctx ctx, const tvk_map_cnt_hier_stack_t *levels, uint32_t level,
                             const char *label);

/* ---- Sweep ----------------------------------------------------------------------------------------------- */

/*
 * Carries the verdicts below root out: children that are not kept are released and their array is compacted in
 * place, in order; below TVK_NODE_KIND_KN the same again; below TVK_NODE_KIND_KA nothing is touched. Root itself
 * stays, and with it all below when it is TVK_NODE_KIND_KA. When memory runs out a node that cannot be visited loses
 * all its children: too little may stay, never a node that was not kept.
 *
 * Returns
 * - 0: always.
 */
TVK_MAP_API uint32_t tvk_map_dfs_filter_sweep(tvk_map_ctx ctx, struct qidl_tvk_datatree *root);

/*
 * One step of the sweep.
 *
 * Returns
 * - 1: the element is processed.
 * - 0: the element or its node is null.
 */
TVK_MAP_API uint32_t tvk_map_dfs_process_sweep(tvk_map_ctx ctx, struct kel_queue *stack,
                                               const struct tvk_map_dfs_elem *element);

/*
 * Closes the gaps in the children of node: a child without TVK_HAS_TAG is a gap, and what it owns is released. The
 * order stays, the array keeps its size, its tail is cleared, and TVK_HAS_SUBTREES stays set even when no child is
 * left. Pointers to children are void.
 *
 * Returns
 * - 0: always.
 */
TVK_MAP_API uint32_t tvk_map_datatree_remove_null_subtrees(tvk_map_ctx ctx, struct qidl_tvk_datatree *node);

/* ---- One path -------------------------------------------------------------------------------------------- */

/*
 * Walks path, "/"-separated tags below tree's root, down a filter and tells whether the filter selects it. The walk
 * ends with success at a leaf below the root, whatever follows in path; with mark_leaf of exactly 1 that leaf is marked
 * as a key. With mark_leaf 0 it also ends at a node whose children are all key leaves, the first with a value. With
 * partial_ok of exactly 1 a path that is used up before is selected too. A root without children uses the path up. The
 * context is asserted where something is logged.
 *
 * Returns
 * - 0: the filter selects the path.
 * - TVK_ERR_NOT_FOUND: tree is null, the path leaves it or has no component, the path is used up before a leaf, or a
 *   child without a tag comes first (logged).
 * - TVK_ERR_NO_MEMORY: path is null or could not be copied (logged); or a node claims children and counts none.
 */
TVK_MAP_API qerrno tvk_map_datatree_filter_get_response(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree,
                                                        const char *path, int partial_ok, int mark_leaf);

#ifdef __cplusplus
}
#endif

TVK_STATIC_ASSERT(sizeof(struct tvk_map_dfs_elem) == 40, "a work element is a record of 40 bytes");
TVK_STATIC_ASSERT(offsetof(struct tvk_map_dfs_elem, link) == 0, "the queue expects its link first");
TVK_STATIC_ASSERT(offsetof(struct tvk_map_dfs_elem, node) == 16, "layout of the work element");
TVK_STATIC_ASSERT(offsetof(struct tvk_map_dfs_elem, pair) == 24, "layout of the work element");
TVK_STATIC_ASSERT(sizeof(struct tvk_map_cnt_hier) == 40, "a level is a record of 40 bytes");
TVK_STATIC_ASSERT(sizeof(struct tvk_map_key_info) == (1 + 3 * TVK_MAP_MAX_FILTER_KEYS) * sizeof(uint32_t),
                  "a key summary is 31 words");

#endif
