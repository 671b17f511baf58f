// The base of every fuzz target.
#ifndef TVK_FUZZ_TARGET_H
#define TVK_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "context.h"
#include "qidl_tvk_datatree.h"

// One input, by libFuzzer or by the replay of a corpus. Deterministic; leaves nothing behind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace tvk::fuzz {

using Record = qidl_tvk_datatree;

std::string read_file(const std::string &path);

// Ends the process, so that the input counts as a finding, when condition is false.
void require(bool condition, const std::string &what);
void require_equal(const std::string &expected, const std::string &actual, const std::string &what);

// Prints the outcome of an input, for the record that a replay is compared with.
void note(const std::string &line);
void print_notes(bool wanted);

// The surroundings of one input: every message is formatted, and in the end no block may be live on the named heap.
class Surroundings {
public:
    Surroundings();
    ~Surroundings();
    Surroundings(const Surroundings &) = delete;
    Surroundings &operator=(const Surroundings &) = delete;

    test::LogCapture log;
};

}  // namespace tvk::fuzz

#endif
