// Single facts about nodes and the request.
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_datatree.h"

using namespace tvk;

struct qidl_tvk_datatree *tvk_map_datatree_get_datatree(tvk_map_ctx ctx) {
    return ctx->state->datatree;
}

qerrno tvk_map_get_tree_from_key_data(tvk_map_ctx, const struct qidl_tvk_datatree *node, const char *key_name,
                                      const char *key_value) {
    const bool is_it = node != nullptr && same_text(node->tag, key_name) && has(*node, TVK_HAS_DATA) &&
                       same_text(node->data, key_value);
    return is_it ? TVK_OK : TVK_ERR_NOT_FOUND;
}

void tvk_map_datatree_set_operation(struct qidl_tvk_datatree *node, uint32_t operation) {
    if (node != nullptr) {
        set_operation(*node, operation);
    }
}

int tvk_map_is_request_add(tvk_map_ctx ctx) {
    return ctx != nullptr && is_add_request(ctx) ? 1 : 0;
}

int tvk_map_is_request_delete(const struct qidl_tvk_datatree *node) {
    return node != nullptr && is_delete(*node) ? 1 : 0;
}

int tvk_map_is_request_replace(const struct qidl_tvk_datatree *node) {
    return node != nullptr && has(*node, TVK_HAS_OPERATION) && node->operation == TVK_OPERATION_REPLACE ? 1 : 0;
}

qerrno tvk_map_get_subtrees(tvk_map_ctx, const struct qidl_tvk_datatree *node, struct qidl_tvk_datatree **subtrees,
                            int32_t *count) {
    if (subtrees == nullptr) {
        return TVK_OK;
    }
    const bool has_children = node != nullptr && has(*node, TVK_HAS_SUBTREES);
    *subtrees = has_children ? node->subtrees : nullptr;
    if (count != nullptr) {
        *count = has_children ? node->subtree_count : 0;
    }
    return TVK_OK;
}

void qidl_tvk_datatree_free_ext_cpy(char **strings, tvk_gpb_free_fp release, void *arg) {
    constexpr int kStrings = 3;  // the tag, data and ns that a record begins with
    for (int i = 0; i < kStrings; ++i) {
        if (strings[i] != nullptr) {
            release(strings[i], arg);
            strings[i] = nullptr;
        }
    }
}
