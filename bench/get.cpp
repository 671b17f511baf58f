// Whole reads, from the bytes of the request and the native data to the bytes of the reply.
#include <memory>

#include "examples.h"
#include "get_command.h"
#include "mapping.h"
#include "netconf/data_document.h"
#include "requests.h"
#include "tvk_map_filter.h"

namespace tvk::bench {

namespace {

struct Run {
    framework::RequestTrees trees;
    tool::Reply reply;
};

std::size_t count_answer(const std::unique_ptr<Run> &run) {
    check(run->reply);
    return count_nodes(run->trees.response.root());
}

netconf::GetRequest read_request(const framework::Mappings &mappings, const std::string &request, Run &run) {
    return netconf::read_get(netconf::XmlDocument::parse(request, "the request", netconf::kGetLayout), mappings,
                             run.trees.asked);
}

void read_native_data(const std::string &native, framework::TreeHolder &data) {
    netconf::take_data(netconf::XmlDocument::parse(native, "the native data", netconf::kNativeLayout), data);
}

void run_get(const framework::Mappings &mappings, const std::string &request, const std::string &native, Run &run) {
    const netconf::GetRequest asked = read_request(mappings, request, run);
    read_native_data(native, run.trees.native);
    framework::Framework framework(false);
    framework::Session session(framework, run.trees.native.root());
    run.reply = tool::answer_get(mappings, framework, session, run.trees, asked, tvk_map_dfs_filter_mark, false);
}

void measure_get(benchmark::State &state, Model model, Get get, std::size_t n) {
    const framework::Mappings &mappings = mappings_of(model);
    const std::string &native = native_data(model, n);
    const std::string request = get_request(model, get, n);
    measure(
        state, nodes_selected(model, get, n), [] { return std::make_unique<Run>(); },
        [&](const std::unique_ptr<Run> &run) { run_get(mappings, request, native, *run); }, count_answer);
}

// ---- Reads from native data in memory, as on a device, that were made before ----

class Device {
public:
    Device(const framework::Mappings &mappings, const std::string &native) : mappings_(mappings) {
        read_native_data(native, data_);
    }

    void answer(const std::string &request, Run &run) {
        const netconf::GetRequest asked = read_request(mappings_, request, run);
        run.reply = tool::answer_get(mappings_, framework_, session_, run.trees, asked, tvk_map_dfs_filter_mark, false);
    }

private:
    const framework::Mappings &mappings_;
    framework::TreeHolder data_;
    framework::Framework framework_{false};
    framework::Session session_{framework_, data_.root()};
};

void measure_get_in_memory(benchmark::State &state, Model model, std::size_t n) {
    const std::string request = get_request(model, Get::kEntry, n);
    Device device(mappings_of(model), native_data(model, n));
    Run first;
    device.answer(request, first);
    measure(
        state, nodes_selected(model, Get::kEntry, n), [] { return std::make_unique<Run>(); },
        [&](const std::unique_ptr<Run> &run) { device.answer(request, *run); }, count_answer);
}

const bool registered = [] {
    for (const Model model : kModels) {
        for (const Get get : kGets) {
            add_benchmarks_of_seconds(work_of(get, model), "tvk_map",
                                      [=](auto &state, std::size_t n) { measure_get(state, model, get, n); });
        }
        add_benchmarks_of_seconds(work_of_get_in_memory(model), "tvk_map",
                                  [=](auto &state, std::size_t n) { measure_get_in_memory(state, model, n); });
    }
    return true;
}();

}  // namespace

}  // namespace tvk::bench
