// Questions about the request and its state. A context without a state record has no flag set, and one without a
// request neither reads nor adds.
#ifndef TVK_MAP_INTERNAL_REQUEST_H
#define TVK_MAP_INTERNAL_REQUEST_H

#include "tvk_map_common/internal/owned.h"
#include "tvk_map_types.h"

namespace tvk {

inline bool has_request(tvk_map_ctx ctx) {
    return ctx->state != nullptr && ctx->state->request != nullptr;
}

inline bool is_read_request(tvk_map_ctx ctx) {
    return has_request(ctx) &&
           (ctx->state->request->type == TVK_REQUEST_GET || ctx->state->request->type == TVK_REQUEST_GET_CONFIG);
}

inline bool is_get_config(tvk_map_ctx ctx) {
    return has_request(ctx) && ctx->state->request->type == TVK_REQUEST_GET_CONFIG;
}

inline bool is_add_request(tvk_map_ctx ctx) {
    if (!has_request(ctx)) {
        return false;
    }
    const auto type = ctx->state->request->type;
    return type == TVK_REQUEST_EDIT_CONFIG || type == TVK_REQUEST_ADD_15 || type == TVK_REQUEST_ADD_8;
}

inline std::uint32_t build_flags(tvk_map_ctx ctx) {
    return ctx->state != nullptr ? ctx->state->build_flags : 0;
}

inline bool is_propagating(tvk_map_ctx ctx) {
    return ctx->state != nullptr && ctx->state->delete_walk_active == 1;
}

inline bool is_working_on_keys(tvk_map_ctx ctx) {
    return ctx->state != nullptr && ctx->state->list_key_state != 0;
}

// Records the node, key or value at which a request fails.
inline void set_error_node_tag(tvk_map_ctx ctx, const char *text) {
    if (ctx->state != nullptr) {
        replace(ctx->state->error_node_tag, copy_text(text, "TVK MAP"));
    }
}

}  // namespace tvk

#endif
