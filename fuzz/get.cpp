// A read with a filter through an example mapping. Choices: the mapping; 1: the native data is the second document, not
// the example's; 1: the container phase; the number of the allocation that fails, 0 for none.
#include "common/request.h"
#include "get_command.h"
#include "netconf/data_document.h"
#include "netconf/get_request.h"
#include "tvk_map_filter.h"

using namespace tvk::fuzz;
namespace framework = tvk::framework;
namespace netconf = tvk::netconf;
namespace tool = tvk::tool;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Surroundings surroundings;
    Input input(data, size);
    const Example &example = read_example(input);
    const bool is_native_given = input.flag();
    const framework::MarkPhase mark = input.flag() ? tvk_map_dfs_filter_con : tvk_map_dfs_filter_mark;
    const std::uint64_t failing_allocation = read_failing_allocation(input);
    input.text('\n');
    const std::string filter = input.text('\f');
    const std::string given = input.text('\f');
    run_both_ways(failing_allocation, [&](framework::Framework &framework) {
        framework::RequestTrees trees;
        const netconf::GetRequest asked = netconf::read_get(
            netconf::XmlDocument::parse(filter, "the filter", netconf::kGetLayout), example.mappings, trees.asked);
        netconf::take_data(netconf::XmlDocument::parse(is_native_given ? given : example.native_device,
                                                       "the native data", netconf::kNativeLayout),
                           trees.native);
        framework::Session session(framework, trees.native.root());
        const tool::Reply reply = tool::answer_get(example.mappings, framework, session, trees, asked, mark, false);
        require_document(reply);
        return reply;
    });
    return 0;
}
