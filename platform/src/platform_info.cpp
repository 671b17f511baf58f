// The router type, which tools and tests may set.
#include "platform_info.h"

#include <atomic>
#include <cstdint>

#include "tvk_platform_control.h"

namespace {
constinit std::atomic<std::uint32_t> current_router_type{0};
}

uint32_t platform_get_router_type(void) {
    return current_router_type;
}

void tvk_platform_set_router_type(uint32_t router_type) {
    current_router_type = router_type;
}
