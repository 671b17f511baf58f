// A hash of texts for the lookup tables. It only says where to look; the texts themselves decide.
#ifndef TVK_MAP_INDEX_TEXT_HASH_H
#define TVK_MAP_INDEX_TEXT_HASH_H

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tvk {

inline std::uint32_t hash_text(std::string_view text, std::uint32_t seed = 0) {
    constexpr std::uint64_t kFactor = 0x9e3779b97f4a7c15;
    std::uint64_t hash = seed ^ text.size();
    while (!text.empty()) {
        std::uint64_t word = 0;
        const std::size_t size = text.size() < sizeof word ? text.size() : sizeof word;
        std::memcpy(&word, text.data(), size);
        text.remove_prefix(size);
        hash = (hash ^ word) * kFactor;
        hash ^= hash >> 32;
    }
    return static_cast<std::uint32_t>(hash * kFactor >> 32);
}

}  // namespace tvk

#endif
