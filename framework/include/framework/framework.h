// The stand-in for the framework of a device.
#pragma once

#include <cstdint>

#include "tvk_map_types.h"

namespace tvk::framework {

// The number of children from which on contexts ask the library to index them. Tests and benchmarks use others.
inline constexpr uint32_t kIndexChildrenFrom = 16;

// Owns the framework context, and the switches of the debug log and the trace of the process. It outlives all requests.
class Framework {
public:
    // When trace is true, the debug log and the trace lines of all requests go to standard error.
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
