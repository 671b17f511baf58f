// Whole edits, from the bytes of the request and the native data that it changes to the bytes of the reply.
#include <memory>

#include "edit_command.h"
#include "examples.h"
#include "mapping.h"
#include "netconf/data_document.h"
#include "requests.h"

namespace tvk::bench {

namespace {

struct Run {
    framework::RequestTrees trees;
    tool::Reply reply;
};

void run_edit(const framework::Mappings &mappings, const std::string &request, const std::string *native, Run &run) {
    const netconf::EditRequest asked = netconf::read_edit(
        netconf::XmlDocument::parse(request, "the request", netconf::kEditLayout), run.trees.request);
    if (native != nullptr) {
        netconf::take_data(netconf::XmlDocument::parse(*native, "the native data", netconf::kNativeLayout),
                           run.trees.native);
    }
    framework::Framework framework(false);
    run.reply = tool::answer_edit(mappings, framework, run.trees, asked, false);
}

/*
 * The native nodes that stand in the reply. An interface has 10: itself, its name, active, type, shutdown, description
 * and the mtus with mtu, owner and value. Its subinterface has 5: itself, its name, active, interface-virtual and
 * shutdown. Both keep their keys alone when they are deleted. A peer has its address, remote-as, label, state and
 * source. Around peers stand bgp, instances, instance with its two names, and peers.
 */
std::size_t native_nodes(Model model, Edit edit, std::size_t n) {
    const bool is_deleted = edit == Edit::kDelete;
    return model == Model::kInterfaces ? 1 + (is_deleted ? 6 : 15) * n : 6 + (is_deleted ? 2 : 6) * n;
}

void measure_edit(benchmark::State &state, Model model, Edit edit, std::size_t n) {
    const framework::Mappings &mappings = mappings_of(model);
    const std::string &request = edit_request(model, edit, n);
    const std::string *native = edit != Edit::kMerge ? &native_data(model, n) : nullptr;
    measure(
        state, native_nodes(model, edit, n), [] { return std::make_unique<Run>(); },
        [&](const std::unique_ptr<Run> &run) { run_edit(mappings, request, native, *run); },
        [](const std::unique_ptr<Run> &run) {
            check(run->reply);
            return count_nodes(run->trees.native.root());
        });
}

const bool registered = [] {
    for (const Model model : kModels) {
        for (const Edit edit : kEdits) {
            add_benchmarks_of_seconds(work_of(edit, model), "tvk_map",
                                      [=](auto &state, std::size_t n) { measure_edit(state, model, edit, n); });
        }
    }
    return true;
}();

}  // namespace

}  // namespace tvk::bench
