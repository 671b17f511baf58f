// An edit request through an example mapping. Choices: the mapping; what it edits (0: nothing, 1: the example's native
// data, 2: the second document); 1: the answer as a listing; the number of the allocation that fails, 0 for none.
#include "edit_command.h"

#include "common/request.h"
#include "netconf/data_document.h"
#include "netconf/edit_request.h"

using namespace tvk::fuzz;
namespace framework = tvk::framework;
namespace netconf = tvk::netconf;
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
    run_both_ways(failing_allocation, [&](framework::Framework &framework) {
        framework::RequestTrees trees;
        const netconf::EditRequest asked = netconf::read_edit(
            netconf::XmlDocument::parse(request, "the request", netconf::kEditLayout), trees.request);
        if (native != 0) {
            const std::string &bytes = native == 1 ? example.native_before_edit : given;
            netconf::take_data(netconf::XmlDocument::parse(bytes, "the native data", netconf::kNativeLayout),
                               trees.native);
        }
        const tool::Reply reply = tool::answer_edit(example.mappings, framework, trees, asked, listing);
        if (!listing) {
            require_document(reply);
        }
        return reply;
    });
    return 0;
}
