// The example mappings as the desk tool runs them.
#include "examples.h"

#include <map>
#include <stdexcept>
#include <utility>

#include "apply_command.h"
#include "edit_command.h"
#include "framework/edit_run.h"
#include "report.h"

namespace tvk::bench {

namespace {

std::string made_native_data(Model model, std::size_t entries) {
    framework::RequestTrees trees;
    const netconf::EditRequest asked = netconf::read_edit(
        netconf::XmlDocument::parse(edit_request(model, Edit::kMerge, entries), "the edit", netconf::kEditLayout),
        trees.request);
    framework::Framework framework(false);
    if (!framework::make_edit(mappings_of(model), framework, trees, asked.parameters).empty()) {
        throw std::runtime_error("the mapping refused the configuration");
    }
    framework::TreeHolder data;
    framework::Shapes shapes(mappings_of(model));
    tool::Reply reply = tool::answer_apply(data, trees.native.root(), TVK_OPERATION_MERGE, shapes, {{}, false, false});
    check(reply);
    return std::move(reply.text);
}

}  // namespace

const framework::Mappings &mappings_of(Model model) {
    static const framework::Mappings interfaces = framework::Mappings::load({TVK_BENCH_INTERFACES});
    static const framework::Mappings bgp = framework::Mappings::load({TVK_BENCH_BGP});
    return model == Model::kInterfaces ? interfaces : bgp;
}

const std::string &native_data(Model model, std::size_t entries) {
    static std::map<std::pair<Model, std::size_t>, std::string> documents;
    std::string &document = documents[{model, entries}];
    if (document.empty()) {
        document = made_native_data(model, entries);
    }
    return document;
}

void check(const tool::Reply &reply) {
    if (reply.status != tool::kExitSuccess) {
        throw std::runtime_error("refused: " + reply.text.substr(0, 1000));
    }
}

}  // namespace tvk::bench
