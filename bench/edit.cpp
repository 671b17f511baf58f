// A whole edit of N interfaces, as the desk tool does it: a file is parsed and decoded, walked through the example
// mapping, and the native tree encoded into a text.
#include <stdexcept>
#include <string>

#include "edit_command.h"
#include "edit_request.h"
#include "inputs.h"
#include "mapping.h"
#include "mapping_run.h"
#include "request_values.h"
#include "xml_encode.h"

namespace tvk::bench {

namespace {

struct Edit {
    tool::RequestTrees trees;
    std::string reply;
};

void run_edit(const tool::Mappings &mappings, const std::string &file, Edit &edit) {
    tool::read_edit(tool::XmlDocument::read(file, tool::kEditLayout), edit.trees.request);
    tool::Framework framework(false);
    tool::RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
    tool::resolve_identities(mappings, edit.trees.request);
    if (!tool::walk(mappings, scope, edit.trees.request, edit.trees.native, tool::UnmappedNodes::kRefused).empty()) {
        throw std::runtime_error("the mapping refused the request");
    }
    edit.reply = tool::encode_config(edit.trees.native.root());
}

// Of an interface its name, active, type, shutdown, description, the mtus with mtu, owner and value; of its
// subinterface the name, active, interface-virtual and shutdown.
constexpr std::size_t kNativeNodesPerEntry = 15;

const Benchmark edit("edit", "tvk_map", [](benchmark::State &state, std::size_t n) {
    static const tool::Mappings mappings = tool::Mappings::load({TVK_BENCH_MODULE});
    const std::string &file = document_file(n);
    measure(
        state, 1 + kNativeNodesPerEntry * n, [] { return Edit(); }, [&](Edit &run) { run_edit(mappings, file, run); },
        [](const Edit &run) {
            if (run.reply.find("<interface-configurations") == std::string::npos) {
                throw std::runtime_error("the native tree was not written");
            }
            return count_nodes(run.trees.native.root());
        });
});

}  // namespace

}  // namespace tvk::bench
