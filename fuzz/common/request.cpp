#include "request.h"

#include <new>
#include <sstream>

#include "allocation_failures.h"
#include "framework/diagnostics.h"
#include "netconf/data_document.h"

namespace tvk::fuzz {

namespace {

Example load(const char *name) {
    const std::string folder = std::string(TVK_EXAMPLES_FOLDER "/") + name;
    return {framework::Mappings::load({name}), read_file(folder + "/native-before-edit.xml"),
            read_file(folder + "/native-device.xml")};
}

// A reply on one line: of errors their tags, paths and messages, of data all but its envelope.
std::string on_one_line(const std::string &reply) {
    const bool is_refused = reply.find("<rpc-error>") != std::string::npos;
    std::istringstream lines(reply);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        line.erase(0, line.find_first_not_of(' '));
        const bool is_telling = line.starts_with("<error-tag") || line.starts_with("<error-path") ||
                                line.starts_with("<error-message") || line.starts_with("<bad-");
        text += !is_refused || is_telling ? line : "";
    }
    return text;
}

}  // namespace

const Example &read_example(Input &input) {
    static const Example examples[] = {load("openconfig_interfaces"), load("openconfig_bgp")};
    return examples[input.below(2)];
}

std::uint64_t read_failing_allocation(Input &input) {
    constexpr unsigned kExact = 16;
    const unsigned number = input.below(256);
    return number < kExact ? number : (number - kExact) * 8;
}

void require_document(const tool::Reply &reply) {
    try {
        netconf::XmlDocument::parse(reply.text, "the reply", netconf::kDataLayout);
    } catch (const framework::UsageError &error) {
        require(false, error.what() + ("\n" + reply.text));
    }
}

void run_both_ways(std::uint64_t failing_allocation, const std::function<tool::Reply(framework::Framework &)> &answer) {
    try {
        framework::Framework scanning(false, 0);
        framework::Framework indexing(false, 1);
        if (failing_allocation != 0) {
            test::AllocationFailure failure(failing_allocation, false);
            failure.during([&] { return answer(indexing); });
            return;
        }
        const std::string text = answer(scanning).text;
        require_equal(text, answer(indexing).text, "with an index");
        note(on_one_line(text));
    } catch (const framework::UsageError &error) {
        note(std::string("refused: ") + error.what());
    } catch (const std::bad_alloc &) {
        require(failing_allocation != 0, "out of memory");
    }
}

}  // namespace tvk::fuzz
