// Comparing, searching and splitting texts, and bitmaps.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_datatree.h"
#include "tvk_map_util.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

const char *skip_white_space(const char *text) {
    return text + std::strspn(text, " \t\n\v\f\r");
}

}  // namespace

}  // namespace tvk

using namespace tvk;

int tvk_map_do_these_match(const char *a, const char *b) {
    return same_text(a, b) ? 1 : 0;
}

int tvk_map_does_it_have(const char *text, const char *part) {
    return text != nullptr && part != nullptr && std::strstr(text, part) != nullptr ? 1 : 0;
}

int tvk_map_trim_strcmpbeg(const char *text, const char *prefix) {
    if (text == nullptr || prefix == nullptr) {
        return 0;
    }
    const char *wanted = skip_white_space(prefix);
    return std::strncmp(skip_white_space(text), wanted, std::strlen(wanted)) == 0 ? 1 : 0;
}

qerrno tvk_map_get_last_token_from_path(tvk_map_ctx, char *path, char **token) {
    if (path == nullptr || token == nullptr) {
        return TVK_OK;
    }
    for (Components components{path}; components.current() != nullptr; components.advance()) {
        *token = components.current();
    }
    return TVK_OK;
}

uint32_t tvk_map_set_bitmap(uint32_t bitmap, int32_t bit) {
    constexpr std::uint32_t kBitNumbers = 31;
    return bitmap | (1u << (static_cast<std::uint32_t>(bit) & kBitNumbers));
}

int tvk_map_is_private_model(char *model_name) {
    return std::strstr(model_name, "PRIVATE") != nullptr ? 1 : 0;
}

int tvk_map_str_to_array(char *path, char **tokens, uint32_t max_index, uint32_t *count) {
    if (path == nullptr || tokens == nullptr || count == nullptr) {
        return 1;
    }
    // The type is wide enough for the largest index and one more.
    std::int64_t left = std::max<std::int64_t>(static_cast<std::int32_t>(max_index), 0) + 1;
    char *rest = nullptr;
    for (char *token = strtok_r(path, "/", &rest); token != nullptr; token = strtok_r(nullptr, "/", &rest)) {
        tokens[(*count)++] = token;
        if (--left == 0) {
            return 0;
        }
    }
    return 1;
}
