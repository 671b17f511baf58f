// The stack of containers and lists that the walk is inside.
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

// Writes the parent's path, "/" and tag. A part that does not fit is left out and logged; only the path of the level
// suffers.
void build_path(tvk_map_ctx ctx, char *path, const tvk_map_hierarchy_level *parent, const char *tag) {
    constexpr char kCaller[] = "tvk_map_add_to_node_hierarchy";
    if (parent == nullptr) {
        tvk_strcpy_s(kCaller, path, TVK_MAP_MAX_PATH, "/");
    } else if (tvk_strcpy_s(kCaller, path, TVK_MAP_MAX_PATH, parent->path) != 0) {
        TVK_ERR_AS(kCaller, ctx, "strcpy_s exceeds available space \n");
    } else if (tvk_strcat_s(kCaller, path, TVK_MAP_MAX_PATH, "/") != 0) {
        TVK_ERR_AS(kCaller, ctx, "strcat_s exceeds available space \n");
    }
    if (tvk_strcat_s(kCaller, path, TVK_MAP_MAX_PATH, tag) != 0) {
        TVK_ERR_AS(kCaller, ctx, "strcat_s exceeds available space \n %s %s", shown(path), shown(tag));
    }
}

constexpr char kLeaving[] = "tvk_map_remove_from_node_hierarchy";

// Drops the output entry that was made at this container level, because it ends with the level. Only the last entry can
// be of this level.
void drop_output_entry(tvk_map_ctx ctx, const char *path) {
    const tvk_map_request_state &state = *ctx->state;
    if (state.output_list_count == 0) {
        return;
    }
    const tvk_map_output_entry &entry = state.output_list[state.output_list_count - 1];
    if (entry.hierarchy_kind == TVK_LEVEL_CONTAINER && same_text(path, entry.hierarchy_path)) {
        TVK_TRC_AS(kLeaving, ctx, "free hierarchy: %s", path);
        tvk_remove_from_output_list_ctx(ctx, nullptr, nullptr);
    }
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_add_to_node_hierarchy(tvk_map_ctx ctx, struct qidl_tvk_datatree *node, uint32_t kind) {
    if (ctx == nullptr || node == nullptr || ctx->state == nullptr) {
        return TVK_ERR_INVALID;
    }
    tvk_map_request_state &state = *ctx->state;
    // A create is recorded even when the stack is full, and whatever the presence bit of the operation says.
    if ((kind == TVK_LEVEL_CONTAINER || kind == TVK_LEVEL_LIST) && node->operation == TVK_OPERATION_CREATE) {
        state.create_node = node;
        state.create_operation = TVK_OPERATION_CREATE;
    }
    if (state.hierarchy_depth >= TVK_MAP_MAX_HIERARCHY_LEVELS) {
        return TVK_ERR_NO_MEMORY;
    }
    tvk_map_hierarchy_level &level = state.hierarchy[state.hierarchy_depth];
    const tvk_map_hierarchy_level *parent =
        state.hierarchy_depth > 0 ? &state.hierarchy[state.hierarchy_depth - 1] : nullptr;
    level.path = allocate_text(TVK_MAP_MAX_PATH, "TVK MAP add node hierarchy").release();
    level.tag = tvk_strdup(node->tag, "TVK_MAP");
    build_path(ctx, level.path, parent, level.tag);
    level.kind = kind;
    level.node = node;
    ++state.hierarchy_depth;
    return TVK_OK;
}

qerrno tvk_map_remove_from_node_hierarchy(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_ERR_INVALID;
    }
    tvk_map_request_state &state = *ctx->state;
    if (state.create_node == node) {
        state.create_node = nullptr;
        state.create_operation = 0;
    }
    if (state.hierarchy_depth == 0) {
        return TVK_ERR_INVALID;
    }
    --state.hierarchy_depth;
    tvk_map_hierarchy_level &level = state.hierarchy[state.hierarchy_depth];
    drop_output_entry(ctx, level.path);
    level.node = nullptr;
    level.kind = 0;
    release(level.tag);
    release(level.path);
    return TVK_OK;
}
