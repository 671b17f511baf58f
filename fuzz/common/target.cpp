#include "target.h"

#include <cstdio>
#include <cstdlib>

#include "tvk_diagnostics.h"
#include "tvk_platform_control.h"

namespace tvk::fuzz {

namespace {

void drop_line(void *, const char *) {}

void report_block(void *, const void *, std::size_t size, const char *tag) {
    std::fprintf(stderr, "a block of %zu bytes is live: %s\n", size, tag != nullptr ? tag : "(no tag)");
}

}  // namespace

void require(bool condition, const std::string &what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what.c_str());
        std::abort();
    }
}

void require_equal(const std::string &expected, const std::string &actual, const std::string &what) {
    require(expected == actual, what + "\nexpected:\n" + expected + "\nactual:\n" + actual);
}

Surroundings::Surroundings() {
    tvk_platform_set_debug_log(1, TVK_LOG_LEVEL_TRC, drop_line, nullptr);
    tvk_platform_set_trace(drop_line, nullptr);
    tvk_platform_set_accounting(1);
}

Surroundings::~Surroundings() {
    tvk_platform_visit_live_blocks(report_block, nullptr);
    require(tvk_platform_live_blocks(nullptr) == 0, "blocks are live at the end of the input");
    tvk_platform_set_accounting(0);
    tvk_platform_set_debug_log(0, TVK_LOG_LEVEL_ERR, nullptr, nullptr);
}

AllocationFailure::AllocationFailure(std::uint64_t nth) {
    tvk_platform_fail_allocation(nth, 0);
}

AllocationFailure::~AllocationFailure() {
    tvk_platform_fail_allocation(0, 0);
}

}  // namespace tvk::fuzz
