// The stand-in for the framework of a device.
#pragma once

#include <cstdint>

#include "tvk_map_types.h"

namespace tvk::framework {

// What mapping contexts ask for unless someone wants to know the difference.
inline constexpr uint32_t kIndexChildrenFrom = 16;

// Lives as long as the command: the framework context, and the log and trace of the process.
class Framework {
public:
    // With trace, the debug log and the trace lines of all requests go to standard error.
    explicit Framework(bool trace, uint32_t index_children_from = kIndexChildrenFrom);
    ~Framework();
    Framework(const Framework &) = delete;
    Framework &operator=(const Framework &) = delete;

    tvk_framework_ctx context() { return &context_; }
    uint32_t index_children_from() const { return index_children_from_; }

private:
    bool trace_;
    uint32_t index_children_from_;
    tvk_framework_context context_{};
};

}  // namespace tvk::framework
