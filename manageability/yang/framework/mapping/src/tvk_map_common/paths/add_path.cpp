// Adding a path through the filter of the request and at the position of the request (placement.h).
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_common/paths/placement.h"
#include "tvk_map_datatree.h"
#include "tvk_map_filter.h"

namespace tvk {

namespace {

constexpr char kOperation[] = "tvk_map_datatree_add_path_flagged";

bool selected_by_filter(tvk_map_ctx ctx, const char *path, int append, int flags) {
    const bool asked = (flags & TVK_ADD_UNFILTERED) == 0 &&
                       (build_flags(ctx) & (TVK_BUILD_FILTERED | TVK_BUILD_UNFILTERED)) == TVK_BUILD_FILTERED &&
                       ctx->state->datatree != nullptr;
    return !asked || tvk_map_dfs_filter_schema(ctx, ctx->state->datatree, path, append) == 1;
}

// Makes path the error path when an error node is pending; the request then reports it instead of the walk's position.
// Returns the former error path, because path may be part of it.
NamedString take_error_node(tvk_map_ctx ctx, const char *path) {
    if ((build_flags(ctx) & TVK_BUILD_ERROR_NODE) == 0) {
        return nullptr;
    }
    TVK_TRC_AS(kOperation, ctx, "got xpath error node ");
    NamedString former{ctx->state->error_xpath};
    ctx->state->error_xpath = tvk_strdup(path, "map_err_xapth");
    ctx->state->build_flags &= ~TVK_BUILD_ERROR_NODE;
    return former;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_add_path_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                         const char *ns, const char *data,
                                         const struct qidl_tvk_datatree *template_node, struct qidl_tvk_datatree **out,
                                         int append, int flags) {
    if (ctx == nullptr || tree == nullptr || path == nullptr || ns == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                           "qerrno tvk_map_datatree_add_path_flagged(tvk_map_ctx, struct qidl_tvk_datatree *, const "
                           "char *, const char *, const char *, const struct qidl_tvk_datatree *, struct "
                           "qidl_tvk_datatree **, int, int)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (!selected_by_filter(ctx, path, append, flags)) {
        TVK_TRC(ctx, "'%s' skipped", path);
        return TVK_OK;
    }
    const NamedString former_error_path = take_error_node(ctx, path);
    Place place{tree, path, flags};
    if (const qerrno status = choose_place(ctx, place); status != TVK_OK) {
        return status;
    }
    return tvk_map_datatree_add_path_common_flagged(ctx, place.tree, place.path, ns, data, template_node, out, append,
                                                    place.flags);
}

qerrno tvk_map_datatree_add_path(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path, const char *ns,
                                 const char *data, const struct qidl_tvk_datatree *template_node,
                                 struct qidl_tvk_datatree **out, int append) {
    return tvk_map_datatree_add_path_flagged(ctx, tree, path, ns, data, template_node, out, append, 0);
}

qerrno tvk_map_validate_replace_subtree(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, int, int) {
    if (ctx == nullptr || node == nullptr) {
        TVK_ASSERT_CONTEXT(
            ctx, kCommonSource,
            "qerrno tvk_map_validate_replace_subtree(tvk_map_ctx, const struct qidl_tvk_datatree *, int, int)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const bool removed = ctx->state != nullptr && ctx->state->replace_converted != 0 &&
                         ctx->list_operation == TVK_OPERATION_MERGE && node->operation == TVK_OPERATION_REMOVE;
    return removed ? 1 : 0;
}
