// What every fuzz target stands on.
#ifndef TVK_FUZZ_TARGET_H
#define TVK_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "framework.h"
#include "qidl_tvk_datatree.h"

// One input, by libFuzzer or by the replay of a corpus. Deterministic; leaves nothing behind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace tvk::fuzz {

using Record = qidl_tvk_datatree;

// Ends the process, so that the input counts as a finding, when condition is false.
void require(bool condition, const std::string &what);
void require_equal(const std::string &expected, const std::string &actual, const std::string &what);

// The surroundings of one input: every message is formatted, and in the end no block may be live on the named heap.
class Surroundings {
public:
    Surroundings();
    ~Surroundings();
    Surroundings(const Surroundings &) = delete;
    Surroundings &operator=(const Surroundings &) = delete;
};

// The nth allocation while it lives fails; none with 0.
class AllocationFailure {
public:
    explicit AllocationFailure(std::uint64_t nth);
    ~AllocationFailure();
    AllocationFailure(const AllocationFailure &) = delete;
    AllocationFailure &operator=(const AllocationFailure &) = delete;
};

}  // namespace tvk::fuzz

#endif
