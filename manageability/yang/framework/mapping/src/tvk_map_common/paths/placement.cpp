// Choosing the place of a path, and trimming the path to it.
#include "tvk_map_common/paths/placement.h"

#include <cstring>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_common/state/pending_entry.h"
#include "tvk_map_datatree.h"

namespace tvk {

namespace {

qerrno trim_against_pending(tvk_map_ctx ctx, Place &place) {
    return tvk_map_datatree_trim_path(ctx, &place.path, pending_trim_path(ctx));
}

qerrno trim_against_output_entry(tvk_map_ctx ctx, const tvk_map_request_state &state, Place &place) {
    const tvk_map_output_entry &entry = state.output_list[state.output_list_count - 1];
    if (tvk_map_datatree_trim_path(ctx, &place.path, entry.trim_path) != TVK_OK) {
        return TVK_ERR_NOT_FOUND;
    }
    place.tree = entry.list_node;
    return TVK_OK;
}

bool leads_to_pending_entry(tvk_map_ctx ctx) {
    return pending_trim_path(ctx) != nullptr && (build_flags(ctx) & TVK_BUILD_FILTERED) == 0;
}

bool leads_to_output_entry(tvk_map_ctx ctx) {
    return ctx->state != nullptr && ctx->state->output_list_count != 0;
}

}  // namespace

qerrno choose_place(tvk_map_ctx ctx, Place &place) {
    const int given_flags = place.flags;
    place.flags |= static_cast<int>(build_flags(ctx) & TVK_BUILD_REPLACE_MERGING);
    if (leads_to_pending_entry(ctx)) {
        if (trim_against_pending(ctx, place) == TVK_OK) {
            place.tree = pending_node(*ctx->state);
            place.flags |= TVK_ADD_RELATIVE;
        }
        return TVK_OK;
    }
    if ((given_flags & TVK_ADD_TRIM_PENDING) != 0) {
        return trim_against_pending(ctx, place);
    }
    if ((given_flags & TVK_ADD_RELATIVE) == 0 && leads_to_output_entry(ctx)) {
        return trim_against_output_entry(ctx, *ctx->state, place);
    }
    return TVK_OK;
}

bool goes_where_it_says(tvk_map_ctx ctx) {
    constexpr std::uint32_t kOtherwise = TVK_BUILD_FILTERED | TVK_BUILD_REPLACE_MERGING | TVK_BUILD_ERROR_NODE;
    const bool is_recorded = ctx->state != nullptr && ctx->state->path_record_mode != TVK_PATH_RECORD_OFF;
    return (build_flags(ctx) & kOtherwise) == 0 && !leads_to_pending_entry(ctx) && !leads_to_output_entry(ctx) &&
           !is_recorded && ctx->intf_config_flag != 1 && !is_tracing(ctx);
}

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_trim_path(tvk_map_ctx ctx, const char **path, const char *prefix) {
    const char *occurrence = prefix != nullptr ? std::strstr(*path, prefix) : nullptr;
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_datatree_trim_path(tvk_map_ctx, const char **, const char *)");
    if (occurrence == nullptr) {
        TVK_ERR(ctx, "original path : '%s", *path);
        TVK_ERR(ctx, "trimmed path %s", *path);
        return TVK_ERR_NOT_FOUND;
    }
    TVK_TRC(ctx, "original path : '%s", *path);
    *path = occurrence + std::strlen(prefix);
    TVK_TRC(ctx, "trimmed path %s", *path);
    return TVK_OK;
}

qerrno tvk_map_datatree_process_list_ctx(tvk_map_ctx ctx, struct qidl_tvk_datatree **node, const char **path) {
    if (ctx == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    if (ctx->state == nullptr || ctx->state->output_list_count == 0) {
        return TVK_OK;
    }
    if (node == nullptr || path == nullptr || *path == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const tvk_map_output_entry &entry = ctx->state->output_list[ctx->state->output_list_count - 1];
    if (tvk_map_datatree_trim_path(ctx, path, entry.trim_path) != TVK_OK) {
        return TVK_ERR_NOT_FOUND;
    }
    *node = entry.list_node;
    return TVK_OK;
}
