#include "request.h"

#include <new>

#include "diagnostics.h"
#include "file.h"
#include "xml_document.h"

namespace tvk::fuzz {

namespace {

std::string contents_of(const std::string &path) {
    const std::optional<std::string> contents = read_file(path);
    require(contents.has_value(), path + " cannot be read");
    return *contents;
}

Example load(const char *name) {
    const std::string folder = std::string(TVK_EXAMPLES_FOLDER "/") + name;
    return {name, tool::MappingModule::load(name), contents_of(folder + "/native-before-edit.xml"),
            contents_of(folder + "/native-device.xml")};
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
        tool::XmlDocument::parse(reply.text, "the reply");
    } catch (const tool::UsageError &error) {
        require(false, error.what() + ("\n" + reply.text));
    }
}

void run_both_ways(std::uint64_t failing_allocation, const std::function<tool::Reply(tool::Framework &)> &answer) {
    try {
        tool::Framework scanning(false, 0);
        tool::Framework indexing(false, 1);
        if (failing_allocation != 0) {
            const AllocationFailure failure(failing_allocation);
            answer(indexing);
            return;
        }
        require_equal(answer(scanning).text, answer(indexing).text, "with an index");
    } catch (const tool::UsageError &) {
    } catch (const std::bad_alloc &) {
        require(failing_allocation != 0, "out of memory");
    }
}

}  // namespace tvk::fuzz
