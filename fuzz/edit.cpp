// An edit request through an example mapping. Choices: the mapping; what it edits (0: nothing, 1: the example's native
// data, 2: the second document); 1: the answer as a listing; the number of the allocation that fails, 0 for none.
#include "edit_command.h"

#include "common/request.h"
#include "netconf/data_document.h"
#include "netconf/edit_request.h"

using namespace tvk::fuzz;
namespace tool = tvk::tool;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Surroundings surroundings;
    Input input(data, size);
    const Example &example = read_example(input);
    const unsigned native = input.below(3);
    const bool listing = input.flag();
    const std::uint64_t failing_allocation = read_failing_allocation(input);
    input.text('\n');
    const std::string request = input.text('\f');
    const std::string given = input.text('\f');
    run_both_ways(failing_allocation, [&](tool::Framework &framework) {
        tool::RequestTrees trees;
        const tool::EditRequest asked =
            tool::read_edit(tool::XmlDocument::parse(request, "the request", tool::kEditLayout), trees.request);
        if (native != 0) {
            const std::string &bytes = native == 1 ? example.native_before_edit : given;
            tool::take_data(tool::XmlDocument::parse(bytes, "the native data", tool::kNativeLayout), trees.native);
        }
        const tool::Reply reply = tool::answer_edit(example.mappings, framework, trees, asked, listing);
        if (!listing) {
            require_document(reply);
        }
        return reply;
    });
    return 0;
}
