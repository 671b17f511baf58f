// Runs tvk-map get.
#include "get_command.h"

#include <utility>

#include "data_file.h"
#include "framework/diagnostics.h"
#include "netconf/rpc_reply.h"
#include "netconf/with_defaults.h"
#include "output.h"
#include "tvk_map_filter.h"

namespace tvk::tool {

namespace {

framework::MarkPhase phase_of(const std::string &name) {
    if (name != "mark" && name != "container") {
        throw framework::UsageError("--phase \"" + name + "\" is none of mark, container");
    }
    return name == "mark" ? tvk_map_dfs_filter_mark : tvk_map_dfs_filter_con;
}

uint8_t mode_of(const std::string &name) {
    const std::optional<uint8_t> mode = netconf::with_defaults_mode(name);
    if (!mode) {
        throw framework::UsageError(netconf::unknown_with_defaults(name));
    }
    return *mode;
}

netconf::GetRequest read_request(const GetOptions &options, const framework::Mappings &mappings,
                                 framework::TreeHolder &asked) {
    netconf::GetRequest request;
    if (options.filter) {
        request = netconf::read_get(read_document(*options.filter, netconf::kGetLayout), mappings, asked);
    } else {
        framework::select_everything(mappings, asked);
    }
    if (options.with_defaults) {
        request.parameters.with_defaults = mode_of(*options.with_defaults);
    }
    if (options.config) {
        request.parameters.type = TVK_REQUEST_GET_CONFIG;
    }
    return request;
}

}  // namespace

Reply answer_get(const framework::Mappings &mappings, framework::Framework &framework, framework::Session &session,
                 framework::RequestTrees &trees, const netconf::GetRequest &request, framework::MarkPhase mark,
                 bool tree) {
    const std::vector<framework::RpcError> errors =
        framework::make_get(mappings, framework, session, request.parameters, mark, trees);
    if (!errors.empty()) {
        return refusal(errors, request.attributes);
    }
    const Node &result = trees.response.root();
    return encoded([&] { return tree ? tree_listing(result) : netconf::encode_data_reply(result, request.attributes); },
                   request.attributes);
}

int run_get(const GetOptions &options) {
    check_inputs(options.filter.value_or(""), options.native, "only one of FILTER and --native can be standard input");
    const framework::MarkPhase mark = phase_of(options.phase);
    const framework::Mappings mappings = framework::Mappings::load(options.mappings);
    framework::RequestTrees trees;
    const netconf::GetRequest request = read_request(options, mappings, trees.asked);
    read_data(options.native, netconf::kNativeLayout, trees.native);
    framework::Framework framework(options.trace);
    framework::Session session(framework, trees.native.root());
    return print(answer_get(mappings, framework, session, trees, request, mark, options.tree));
}

}  // namespace tvk::tool
