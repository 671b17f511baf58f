// The check of leafref keys: an OpenConfig key refers to a leaf of the same name inside the entry, and both must have
// the same value.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"
#include "tvk_map_walk.h"

using namespace tvk;

qerrno tvk_map_check_oc_leafref(tvk_map_ctx ctx, const char *leafref_path, const char *leafref_target,
                                const char *key_tag, const struct qidl_tvk_datatree *list_node) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_check_oc_leafref(tvk_map_ctx, const char *, const char *, const char *, const "
                       "struct qidl_tvk_datatree *)");
    if (list_node == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (list_node->ns != nullptr && tvk_map_does_it_have(list_node->ns, "openconfig") == 0) {
        return TVK_OK;
    }
    char *copy_value = nullptr;
    struct qidl_tvk_datatree *copy = nullptr;
    tvk_map_dfs_get_child_match(ctx, leafref_path, leafref_target, key_tag, &copy_value, &copy);
    char *key_value = nullptr;
    if (!is_add_request(ctx) || copy == nullptr ||
        tvk_map_get_node_info(ctx, leafref_path, key_tag, &key_value) != TVK_OK) {
        return TVK_OK;
    }
    if (same_text(copy_value, key_value) && copy->operation != TVK_OPERATION_DELETE) {
        return TVK_OK;
    }
    TVK_ERR(ctx, "name mismatch! %s and %s", shown(copy_value), shown(key_value));
    set_error_node_tag(ctx, copy_value);
    tvk_oc_error_path(ctx);
    TVK_TRC(ctx, "End");
    return TVK_ERR_NAMESPACE;
}
