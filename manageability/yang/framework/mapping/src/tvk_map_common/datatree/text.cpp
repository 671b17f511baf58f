#include <sys/time.h>

#include <cstring>

#include "tvk_map_datatree.h"

namespace tvk {

namespace {

const char *skip_white_space(const char *text) {
    return text + std::strspn(text, " \t\n\v\f\r");
}

}  // namespace

}  // namespace tvk

using namespace tvk;

int tvk_map_does_it_have(const char *text, const char *part) {
    return text != nullptr && part != nullptr && std::strstr(text, part) != nullptr ? 1 : 0;
}

uint64_t tvk_map_get_timestamp(void) {
    constexpr uint64_t kMicrosecondsPerSecond = 1000000;
    struct timeval now = {};
    gettimeofday(&now, nullptr);
    return static_cast<uint64_t>(now.tv_sec) * kMicrosecondsPerSecond + static_cast<uint64_t>(now.tv_usec);
}

int tvk_map_trim_strcmpbeg(const char *text, const char *prefix) {
    if (text == nullptr || prefix == nullptr) {
        return 0;
    }
    const char *wanted = skip_white_space(prefix);
    return std::strncmp(skip_white_space(text), wanted, std::strlen(wanted)) == 0 ? 1 : 0;
}
