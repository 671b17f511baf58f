// The pending entry of the request state: the path of the list that was last found or created.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_lists.h"
#include "tvk_map_walk.h"

#include <cstring>

qerrno tvk_map_copy_trim_path_list_ctx(tvk_map_ctx ctx, const char *path) {
    TVK_ASSERT_CONTEXT(ctx, tvk::kCommonSource, "qerrno tvk_map_copy_trim_path_list_ctx(tvk_map_ctx, const char *)");
    TVK_TRC(ctx, "Start");
    if (path == nullptr || ctx->state == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    char *&trim_path = ctx->state->pending_trim_path;
    if (trim_path != nullptr) {
        TVK_TRC(ctx, "trim_path copy fails new %s old %s", path, trim_path);
        return TVK_OK;
    }
    const std::size_t size = std::strlen(path) + 1;
    trim_path = static_cast<char *>(kel_named_calloc_(1, size, "TVK MAP trim list ctx", 0));
    // The bounded copy reports a destination that could not be allocated.
    return tvk_strcpy_s(__func__, trim_path, size, path) == 0 ? TVK_OK : TVK_ERR_NOT_FOUND;
}

qerrno tvk_map_free_trim_path_list_ctx(tvk_map_ctx ctx) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    if (ctx->state->pending_trim_path != nullptr) {
        tvk::release(ctx->state->pending_trim_path);
    } else {
        TVK_TRC(ctx, "trim path free failed");
    }
    return TVK_OK;
}

qerrno tvk_map_datatree_reset_trim_path_ctx(tvk_map_ctx ctx) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    if (const qerrno status = tvk_map_free_trim_path_list_ctx(ctx); status != TVK_OK) {
        return status;
    }
    tvk_map_request_state &state = *ctx->state;
    state.pending_list_node = nullptr;
    state.pending_trim_path = nullptr;
    state.pending_hierarchy_path = nullptr;
    state.pending_hierarchy_kind = 0;
    if (state.output_list_count == 0) {
        return TVK_OK;
    }
    TVK_ERR(ctx, "Cleaning faulty stack %d.", static_cast<int>(state.output_list_count));
    qerrno status = TVK_OK;
    while (status == TVK_OK) {
        status = tvk_remove_from_output_list_ctx(ctx, nullptr, nullptr);
    }
    return status;
}
