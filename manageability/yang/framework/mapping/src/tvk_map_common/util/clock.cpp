// The wall clock.
#include <sys/time.h>

#include "tvk_map_datatree.h"

uint64_t tvk_map_get_timestamp(void) {
    constexpr uint64_t kMicrosecondsPerSecond = 1000000;
    struct timeval now = {};
    gettimeofday(&now, nullptr);
    return static_cast<uint64_t>(now.tv_sec) * kMicrosecondsPerSecond + static_cast<uint64_t>(now.tv_usec);
}
