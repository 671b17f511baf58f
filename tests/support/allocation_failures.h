// Every way in which one allocation, or all from one on, can fail during a call:
//
//     for_each_allocation_failure([](AllocationFailure &failure) {
//         Tree tree = ...;
//         const qerrno status = failure.during([&] { return operation(tree.get()); });
//         EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
//     });
#ifndef TVK_TEST_ALLOCATION_FAILURES_H
#define TVK_TEST_ALLOCATION_FAILURES_H

#include <cstdint>
#include <functional>
#include <memory>

namespace tvk::test {

// The failure in one run of a scenario: the nth allocation fails, none when nth is 0.
class AllocationFailure {
public:
    AllocationFailure(std::uint64_t nth, bool from_there_on) : nth_(nth), from_there_on_(from_there_on) {}

    bool is_injected() const { return nth_ != 0; }
    std::uint64_t allocations() const { return allocations_; }

    // Calls with the failure on. What a scenario sets up and looks at stands outside. Once in a run.
    template <class Call>
    auto during(Call call) {
        start();
        const std::unique_ptr<AllocationFailure, Stop> stop(this);
        return call();
    }

private:
    struct Stop {
        void operator()(AllocationFailure *failure) const;
    };
    void start();

    std::uint64_t nth_;
    bool from_there_on_;
    std::uint64_t allocations_ = 0;
};

// Runs scenario without failure, then fails each of the allocations of its call in turn, once and from there on. After
// each run the heap must hold what it held before. A scenario without allocations, or one that a failure never meets,
// is a failure of the test. Accounting must be on (HeapTest).
void for_each_allocation_failure(const std::function<void(AllocationFailure &)> &scenario);

}  // namespace tvk::test

#endif
