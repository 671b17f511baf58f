#include "allocation_failures.h"

#include <gtest/gtest.h>

#include <string>

#include "heap_test.h"
#include "tvk_platform_control.h"

namespace tvk::test {

void AllocationFailure::start() {
    EXPECT_EQ(0u, allocations_) << "during() is for one call in a run";
    tvk_platform_fail_allocation(nth_ != 0 ? nth_ : UINT64_MAX, from_there_on_ ? 1 : 0);
}

void AllocationFailure::Stop::operator()(AllocationFailure *failure) const {
    failure->allocations_ = tvk_platform_allocation_count();
    tvk_platform_fail_allocation(0, 0);
}

void for_each_allocation_failure(const std::function<void(AllocationFailure &)> &scenario) {
    const auto allocations_of_run = [&scenario](AllocationFailure failure) {
        const std::string before = live_blocks();
        scenario(failure);
        EXPECT_EQ(before, live_blocks()) << "the scenario leaks";
        return failure.allocations();
    };
    const std::uint64_t count = allocations_of_run({0, false});
    ASSERT_GT(count, 0u) << "the scenario allocates nothing";
    for (std::uint64_t run = 0; run < 2 * count && !::testing::Test::HasFailure(); ++run) {
        const std::uint64_t nth = run / 2 + 1;
        const bool from_there_on = run % 2 != 0;
        SCOPED_TRACE("allocation " + std::to_string(nth) + " of " + std::to_string(count) +
                     (from_there_on ? " and all later ones fail" : " fails"));
        EXPECT_GE(allocations_of_run({nth, from_there_on}), nth) << "the failure was not met";
    }
}

}  // namespace tvk::test
