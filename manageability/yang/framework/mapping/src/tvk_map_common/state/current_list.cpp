// The list that the walk is in, and the root of the response tree.
#include <algorithm>
#include <cstring>

#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

bool lies_below(const char *path, const char *list) {
    const std::size_t length = std::strlen(list);
    return std::strncmp(path, list, length) == 0 && path[length] == '/';
}

void clear_slots(tvk_map_ctx ctx) {
    const auto count = std::min<std::uint32_t>(ctx->current_list_slot_count, TVK_MAP_CURRENT_LIST_SLOTS);
    std::fill_n(ctx->current_list_slot_first, count, nullptr);
    std::fill_n(ctx->current_list_slot_second, count, nullptr);
    ctx->current_list_slot_count = 0;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_update_current_list_node(tvk_map_ctx ctx, const char *path) {
    if (ctx == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    if (path == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const char *tag = "TVK MAP current list node";
    if (ctx->current_list_node != nullptr && std::strcmp(ctx->current_list_node, path) == 0) {
        return TVK_OK;
    }
    if (ctx->current_list_node != nullptr && lies_below(path, ctx->current_list_node)) {
        tag = "TVK MAP update list node";
    } else {
        clear_slots(ctx);
    }
    NamedString copy = copy_text(path, tag);
    if (copy == nullptr) {
        TVK_ERR(ctx, "Failed to copy path name!");
        return TVK_ERR_NO_MEMORY;
    }
    replace(ctx->current_list_node, std::move(copy));
    return TVK_OK;
}

qerrno tvk_map_get_resp_tree_instance_root(tvk_map_ctx ctx, struct qidl_tvk_datatree **root) {
    if (ctx != nullptr && ctx->state != nullptr && root != nullptr) {
        *root = ctx->state->resp_tree_instance_root;
    }
    return TVK_OK;
}
