#include <algorithm>
#include <cstdint>
#include <cstring>

#include "tvk_map_util.h"

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
    // Wide enough for the largest index and one more.
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
