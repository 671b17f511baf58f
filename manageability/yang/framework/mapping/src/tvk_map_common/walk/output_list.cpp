// The list entries of the output tree that path adding re-roots paths under.
#include <utility>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_walk.h"

namespace {

// A slot that still holds a string keeps it, and the pending one stays where it is.
void move_string(char *&slot, char *&pending) {
    if (slot == nullptr) {
        slot = std::exchange(pending, nullptr);
    }
}

}  // namespace

qerrno tvk_add_to_output_list_ctx(tvk_map_ctx ctx) {
    if (ctx == nullptr || ctx->state == nullptr || ctx->state->pending_trim_path == nullptr ||
        ctx->state->pending_trim_path[0] == '\0') {
        return TVK_OK;
    }
    tvk_map_request_state &state = *ctx->state;
    if (state.output_list_count >= TVK_MAP_MAX_OUTPUT_ENTRIES) {
        return TVK_ERR_NOT_FOUND;
    }
    // Without a kind it is what a failed stitching has released: no path.
    if (state.pending_hierarchy_kind == 0) {
        state.pending_hierarchy_path = nullptr;
    }
    tvk_map_output_entry &entry = state.output_list[state.output_list_count];
    move_string(entry.trim_path, state.pending_trim_path);
    entry.list_node = std::exchange(state.pending_list_node, nullptr);
    move_string(entry.hierarchy_path, state.pending_hierarchy_path);
    entry.hierarchy_kind = std::exchange(state.pending_hierarchy_kind, 0);
    ++state.output_list_count;
    return TVK_OK;
}

qerrno tvk_remove_from_output_list_ctx(tvk_map_ctx ctx, const struct qidl_tvk_datatree *,
                                       const struct qidl_tvk_datatree *) {
    TVK_ASSERT_CONTEXT(ctx, tvk::kCommonSource,
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
    tvk::release(entry.trim_path);
    tvk::release(entry.hierarchy_path);
    entry.hierarchy_kind = 0;
    entry.list_node = nullptr;
    return TVK_OK;
}
