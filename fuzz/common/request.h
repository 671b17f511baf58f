// Requests through the example mappings, as the desk tool runs them.
//
// An input is a line of choices, one character each, and a document; a form feed, which no document can hold, stands
// before a second one, the native data. The first choice is the mapping.
#ifndef TVK_FUZZ_REQUEST_H
#define TVK_FUZZ_REQUEST_H

#include <functional>
#include <string>

#include "framework/framework.h"
#include "framework/module_loader.h"
#include "input.h"
#include "reply.h"
#include "target.h"

namespace tvk::fuzz {

struct Example {
    framework::Mappings mappings;
    std::string native_before_edit;
    std::string native_device;
};

const Example &read_example(Input &input);

// 0 to some 1,900.
std::uint64_t read_failing_allocation(Input &input);

// An answer that any XML parser reads.
void require_document(const tool::Reply &reply);

// Answers with an index and without must be the same. Documents that are refused, and running out of memory, end it.
void run_both_ways(std::uint64_t failing_allocation, const std::function<tool::Reply(framework::Framework &)> &answer);

}  // namespace tvk::fuzz

#endif
