// The pending entry of a request, and the exported operations on its trim path.
#include "tvk_map_common/state/pending_entry.h"

#include <cstring>
#include <utility>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_lists.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

void release_hierarchy_path(tvk_map_request_state &state) {
    if (state.pending_hierarchy_kind != 0) {
        kel_named_free(state.pending_hierarchy_path);
    }
    state.pending_hierarchy_kind = 0;
}

void move_string(char *&slot, char *&pending) {
    if (slot == nullptr) {
        slot = std::exchange(pending, nullptr);
    }
}

}  // namespace

// A path that cannot be copied is a failure: without it the output entry could not be dropped together with its level.
qerrno tie_pending_entry_to_level(tvk_map_request_state &state) {
    if (state.hierarchy_depth == 0) {
        return TVK_OK;
    }
    const tvk_map_hierarchy_level &level = state.hierarchy[state.hierarchy_depth - 1];
    NamedString path = copy_text(level.path, "xpath cont");
    if (path == nullptr) {
        return TVK_ERR_NO_MEMORY;
    }
    release_hierarchy_path(state);
    // A level of kind 0 drops no entry, and nobody would own its path.
    state.pending_hierarchy_path = level.kind != 0 ? path.release() : nullptr;
    state.pending_hierarchy_kind = level.kind;
    return TVK_OK;
}

void move_pending_entry(tvk_map_request_state &state, tvk_map_output_entry &slot) {
    // A path of kind 0 was released by a stitching that failed.
    if (state.pending_hierarchy_kind == 0) {
        state.pending_hierarchy_path = nullptr;
    }
    move_string(slot.trim_path, state.pending_trim_path);
    slot.list_node = std::exchange(state.pending_list_node, nullptr);
    move_string(slot.hierarchy_path, state.pending_hierarchy_path);
    slot.hierarchy_kind = std::exchange(state.pending_hierarchy_kind, 0);
}

void release_pending_entry(tvk_map_request_state &state) {
    release(state.pending_trim_path);
    release_hierarchy_path(state);
    state.pending_list_node = nullptr;
}

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_copy_trim_path_list_ctx(tvk_map_ctx ctx, const char *path) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource, "qerrno tvk_map_copy_trim_path_list_ctx(tvk_map_ctx, const char *)");
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
    // The bounded copy also reports a destination that could not be allocated.
    return tvk_strcpy_s(__func__, trim_path, size, path) == 0 ? TVK_OK : TVK_ERR_NOT_FOUND;
}

qerrno tvk_map_free_trim_path_list_ctx(tvk_map_ctx ctx) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    if (ctx->state->pending_trim_path != nullptr) {
        release(ctx->state->pending_trim_path);
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
    state.pending_hierarchy_path = nullptr;  // its owner may still hold it
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

qerrno tvk_map_release_pending_entry(tvk_map_ctx ctx) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_ERR_INVALID;
    }
    release_pending_entry(*ctx->state);
    ctx->state->pending_hierarchy_path = nullptr;
    return TVK_OK;
}
