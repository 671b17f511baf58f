/* Diagnostic output of data trees. */
#ifndef TVK_MAP_PRINT_H
#define TVK_MAP_PRINT_H

#include <stdint.h>

#include "tvk_map_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define TVK_MAP_MAX_INSERT_KEYS 5
#define TVK_MAP_INSERT_TEXT 100 /* bytes, with the terminator */

struct tvk_map_insert_key {
    char name[TVK_MAP_INSERT_TEXT];
    char value[TVK_MAP_INSERT_TEXT];
};

/* A node's insert attribute in plain form. */
struct tvk_map_insert_info {
    uint32_t position;         /* enum qidl_tvk_insert_position */
    uint32_t has_key_or_value; /* 1 when keys or a value were copied */
    struct tvk_map_insert_key keys[TVK_MAP_MAX_INSERT_KEYS];
    int32_t key_count;
    char keys_str[TVK_MAP_INSERT_TEXT];
    char value[TVK_MAP_INSERT_TEXT];
};

/*
 * Prints node's descendants to standard output, one line a node, indented by 4 blanks for each unit of depth:
 *     tag : value (operation) (insert=...)(key) (name=value) attribute=value (verdict)
 * or, with namespace_mode non-zero, tag (namespace) : value.
 *
 * Returns
 * - 0: all descendants are printed.
 * - TVK_ERR_INVALID: node is null. Nothing is logged.
 * - TVK_ERR_NO_MEMORY: the listing is broken off. The part printed until then stands.
 */
TVK_MAP_API qerrno tvk_map_print_subtrees(const struct qidl_tvk_datatree *node, uint32_t depth, int namespace_mode);

/*
 * Logs the listing of tvk_map_print_subtrees as TRC messages, one for each piece of a line.
 *
 * Returns
 * - 0: all descendants are logged.
 * - TVK_ERR_INVALID: node is null.
 * - TVK_ERR_NOT_FOUND: a node without a tag breaks the listing off.
 * - TVK_ERR_NO_MEMORY: the listing is broken off. The part logged until then stands.
 */
TVK_MAP_API qerrno tvk_map_trace_subtrees(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, uint32_t depth,
                                          int namespace_mode);

/*
 * Fills info from node's insert record. At most five keys are taken; a text of 100 characters or more is left empty.
 *
 * Returns
 * - 0: always. info is untouched when node is null or has no insert record.
 */
TVK_MAP_API qerrno tvk_datatree_get_insert_attribute_info(const struct qidl_tvk_datatree *node,
                                                          struct tvk_map_insert_info *info);

/*
 * Hands tree to the framework's tree printer, tvk_gpb_datatree_trace_internal (qidl_tvk_datatree.h), with the other
 * arguments as they are.
 *
 * Returns
 * - 0: ctx or tree is null, or the context's print_enabled is 0. Nothing is printed.
 * - any other case: the status of the printer.
 */
TVK_MAP_API qerrno tvk_map_print_datatree_internal(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree,
                                                   const char *title, uint32_t depth, uint32_t max_depth,
                                                   uint32_t options);

#ifdef __cplusplus
}
#endif

#endif
