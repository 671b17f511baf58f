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

MarkPhase phase_of(const std::string &name) {
    if (name != "mark" && name != "container") {
        throw UsageError("--phase \"" + name + "\" is none of mark, container");
    }
    return name == "mark" ? tvk_map_dfs_filter_mark : tvk_map_dfs_filter_con;
}

uint8_t mode_of(const std::string &name) {
    const std::optional<uint8_t> mode = with_defaults_mode(name);
    if (!mode) {
        throw UsageError(unknown_with_defaults(name));
    }
    return *mode;
}

GetRequest read_request(const GetOptions &options, const Mappings &mappings, TreeHolder &asked) {
    GetRequest request;
    if (options.filter) {
        request = read_get(read_document(*options.filter, kGetLayout), mappings, asked);
    } else {
        select_everything(mappings, asked);
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

Reply answer_get(const Mappings &mappings, Framework &framework, Session &session, RequestTrees &trees,
                 const GetRequest &request, MarkPhase mark, bool tree) {
    const std::vector<RpcError> errors = make_get(mappings, framework, session, request.parameters, mark, trees);
    if (!errors.empty()) {
        return refusal(errors, request.attributes);
    }
    const Node &result = trees.response.root();
    return encoded([&] { return tree ? tree_listing(result) : encode_data_reply(result, request.attributes); },
                   request.attributes);
}

int run_get(const GetOptions &options) {
    check_inputs(options.filter.value_or(""), options.native, "only one of FILTER and --native can be standard input");
    const MarkPhase mark = phase_of(options.phase);
    const Mappings mappings = Mappings::load(options.mappings);
    RequestTrees trees;
    const GetRequest request = read_request(options, mappings, trees.asked);
    read_data(options.native, kNativeLayout, trees.native);
    Framework framework(options.trace);
    Session session(framework, trees.native.root());
    return print(answer_get(mappings, framework, session, trees, request, mark, options.tree));
}

}  // namespace tvk::tool
