// The output list: the list entries of the output tree below which paths are added.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/state/pending_entry.h"
#include "tvk_map_walk.h"

using namespace tvk;

qerrno tvk_add_to_output_list_ctx(tvk_map_ctx ctx) {
    if (ctx == nullptr) {
        return TVK_OK;
    }
    const char *trim_path = pending_trim_path(ctx);
    if (trim_path == nullptr || trim_path[0] == '\0') {
        return TVK_OK;
    }
    tvk_map_request_state &state = *ctx->state;
    if (state.output_list_count >= TVK_MAP_MAX_OUTPUT_ENTRIES) {
        return TVK_ERR_NOT_FOUND;
    }
    move_pending_entry(state, state.output_list[state.output_list_count]);
    ++state.output_list_count;
    return TVK_OK;
}

qerrno tvk_remove_from_output_list_ctx(tvk_map_ctx ctx, const struct qidl_tvk_datatree *,
                                       const struct qidl_tvk_datatree *) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_remove_from_output_list_ctx(tvk_map_ctx, const struct qidl_tvk_datatree *, const "
                       "struct qidl_tvk_datatree *)");
    if (ctx->state == nullptr) {
        TVK_ERR(ctx, "Invalid arguments passed!");
        return TVK_ERR_INVALID;
    }
    tvk_map_request_state &state = *ctx->state;
    if (state.output_list_count == 0) {
        return TVK_ERR_INVALID;
    }
    --state.output_list_count;
    tvk_map_output_entry &entry = state.output_list[state.output_list_count];
    release(entry.trim_path);
    release(entry.hierarchy_path);
    entry.hierarchy_kind = 0;
    entry.list_node = nullptr;
    return TVK_OK;
}
