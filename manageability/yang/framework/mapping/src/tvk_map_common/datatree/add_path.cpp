// Adding a path where the request stands: under its filter, below the list entry that it is in.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_datatree.h"
#include "tvk_map_filter.h"

namespace {

using tvk::Node;

constexpr char kOperation[] = "tvk_map_datatree_add_path_flagged";

bool selected_by_filter(tvk_map_ctx ctx, const char *path, int append, int flags) {
    const bool asked = (flags & TVK_ADD_UNFILTERED) == 0 &&
                       (tvk::build_flags(ctx) & (TVK_BUILD_FILTERED | TVK_BUILD_UNFILTERED)) == TVK_BUILD_FILTERED &&
                       ctx->state->datatree != nullptr;
    return !asked || tvk_map_dfs_filter_schema(ctx, ctx->state->datatree, path, append) == 1;
}

// The path of a pending error node is what the request reports instead of the walk's position. Returns the former
// one, which path may be a part of.
tvk::NamedString take_error_node(tvk_map_ctx ctx, const char *path) {
    if ((tvk::build_flags(ctx) & TVK_BUILD_ERROR_NODE) == 0) {
        return nullptr;
    }
    TVK_TRC_AS(kOperation, ctx, "got xpath error node ");
    tvk::NamedString former{ctx->state->error_xpath};
    ctx->state->error_xpath = tvk_strdup(path, "map_err_xapth");
    ctx->state->build_flags &= ~TVK_BUILD_ERROR_NODE;
    return former;
}

// Where a path goes: the node below which it is added, the path from there, and the flags to add it with.
struct Place {
    Node *tree;
    const char *path;
    int flags;
};

qerrno trim_against_pending(tvk_map_ctx ctx, Place &place) {
    const char *trim_path = ctx->state != nullptr ? ctx->state->pending_trim_path : nullptr;
    return tvk_map_datatree_trim_path(ctx, &place.path, trim_path);
}

qerrno trim_against_output_entry(tvk_map_ctx ctx, Place &place) {
    const tvk_map_output_entry &entry = ctx->state->output_list[ctx->state->output_list_count - 1];
    if (tvk_map_datatree_trim_path(ctx, &place.path, entry.trim_path) != TVK_OK) {
        return TVK_ERR_NOT_FOUND;
    }
    place.tree = entry.list_node;
    return TVK_OK;
}

qerrno choose_place(tvk_map_ctx ctx, Place &place) {
    const int given_flags = place.flags;
    place.flags |= static_cast<int>(tvk::build_flags(ctx) & TVK_BUILD_REPLACE_MERGING);
    const tvk_map_request_state *state = ctx->state;
    if (state != nullptr && (state->build_flags & TVK_BUILD_FILTERED) == 0 && state->pending_trim_path != nullptr) {
        if (trim_against_pending(ctx, place) == TVK_OK) {
            place.tree = state->pending_list_node;
            place.flags |= TVK_ADD_RELATIVE;
        }
        return TVK_OK;
    }
    if ((given_flags & TVK_ADD_TRIM_PENDING) != 0) {
        return trim_against_pending(ctx, place);
    }
    if ((given_flags & TVK_ADD_RELATIVE) == 0 && state != nullptr && state->output_list_count != 0) {
        return trim_against_output_entry(ctx, place);
    }
    return TVK_OK;
}

}  // namespace

qerrno tvk_map_datatree_add_path_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                         const char *ns, const char *data,
                                         const struct qidl_tvk_datatree *template_node, struct qidl_tvk_datatree **out,
                                         int append, int flags) {
    if (ctx == nullptr || tree == nullptr || path == nullptr || ns == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, tvk::kCommonSource,
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
    const tvk::NamedString former_error_path = take_error_node(ctx, path);
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
            ctx, tvk::kCommonSource,
            "qerrno tvk_map_validate_replace_subtree(tvk_map_ctx, const struct qidl_tvk_datatree *, int, int)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const bool removed = ctx->state != nullptr && ctx->state->replace_converted != 0 &&
                         ctx->list_operation == TVK_OPERATION_MERGE && node->operation == TVK_OPERATION_REMOVE;
    return removed ? 1 : 0;
}
