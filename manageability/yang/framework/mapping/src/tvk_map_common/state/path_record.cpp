// Recording the paths that are added, so that none is added twice.
#include "tvk_map_common/state/path_record.h"

#include <algorithm>
#include <cstring>

#include "tvk_map_common/internal/log.h"
#include "tvk_map_datatree.h"
#include "tvk_string.h"

namespace tvk {

namespace {

bool one_begins_with_the_other(const char *a, const char *b) {
    return std::strncmp(a, b, std::min(std::strlen(a), std::strlen(b))) == 0;
}

bool is_covered(const tvk_map_request_state &state, const char *path) {
    return std::any_of(state.path_record, state.path_record + state.path_record_count,
                       [path](const char *recorded) { return one_begins_with_the_other(path, recorded); });
}

// Cuts the last component off a path. A path of one component has no "/" and stays whole.
void cut_last_component(char *path) {
    if (char *last_separator = std::strrchr(path, '/'); last_separator != nullptr) {
        *last_separator = '\0';
    }
}

}  // namespace

}  // namespace tvk

using namespace tvk;

bool tvk_map_is_path_present(tvk_map_ctx ctx, const char *path, char *working_path) {
    if (ctx->state == nullptr || ctx->state->path_record_mode == TVK_PATH_RECORD_OFF) {
        return false;
    }
    tvk_map_request_state &state = *ctx->state;
    if (state.path_record_count >= TVK_MAP_MAX_RECORDED_PATHS) {
        TVK_ERR(ctx, "xpath max reached its limit");
        return true;
    }
    if (is_covered(state, path)) {
        return true;
    }
    char *slot = state.path_record[state.path_record_count];
    if (tvk_strcpy_s(__func__, slot, TVK_MAP_MAX_PATH, path) != 0) {
        std::memset(slot, 0, TVK_MAP_MAX_PATH);
        return true;
    }
    if (state.path_record_mode != TVK_PATH_RECORD_KEEP_LAST) {
        cut_last_component(working_path);
    }
    ++state.path_record_count;
    return false;
}

qerrno tvk_map_clear_xpath_ctx(tvk_map_ctx ctx) {
    if (ctx != nullptr && ctx->state != nullptr) {
        // Only the slots in use are cleared. The others are zero already, all of them take 50 kB, and this runs for
        // each list that is left.
        const std::uint32_t used = std::min<std::uint32_t>(ctx->state->path_record_count, TVK_MAP_MAX_RECORDED_PATHS);
        std::memset(ctx->state->path_record, 0, used * sizeof ctx->state->path_record[0]);
        ctx->state->path_record_count = 0;
    }
    return TVK_OK;
}
