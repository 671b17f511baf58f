#include "get_command.h"

#include <utility>

#include "data_file.h"
#include "diagnostics.h"
#include "output.h"
#include "request_errors.h"
#include "request_values.h"
#include "tvk_map_filter.h"
#include "with_defaults.h"

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

// One walk. Where the library refuses conditions of a list, since they name some of its keys and not all, list gets its
// place.
std::vector<RpcError> walk_filter(const Mappings &mappings, Framework &framework, Session &session,
                                  const GetParameters &parameters, MarkPhase mark, RequestTrees &trees,
                                  std::string &list) {
    RequestScope scope(framework, parameters.type, parameters.with_defaults, &session.memory());
    std::vector<RpcError> errors =
        walk(mappings, scope, trees.request, trees.response, UnmappedNodes::kPassedOver, &list);
    if (errors.empty()) {
        const ChildArrays walked(trees.request.root());
        own_arrays(trees.response.root(), {&session.database_arrays(), &walked});
        prune(scope, mark, trees.asked.root(), trees.request, trees.response);
    }
    return errors;
}

GetParameters read_request(const GetOptions &options, const Mappings &mappings, TreeHolder &asked) {
    GetParameters parameters;
    if (options.filter) {
        parameters = read_get(XmlDocument::read(*options.filter, kGetLayout), mappings, asked);
    } else {
        select_everything(mappings, asked);
    }
    if (options.with_defaults) {
        parameters.with_defaults = mode_of(*options.with_defaults);
    }
    if (options.config) {
        parameters.type = TVK_REQUEST_GET_CONFIG;
    }
    return parameters;
}

}  // namespace

std::vector<RpcError> make_get(const Mappings &mappings, Framework &framework, Session &session,
                               const GetParameters &parameters, MarkPhase mark, RequestTrees &trees) {
    resolve_identities(mappings, trees.asked);
    OpenLists open;
    for (const Node &top : children_of(trees.asked.root())) {
        if (parameters.walk_all) {
            open.insert(tag_of(top));
        }
    }
    for (;;) {
        widen(mappings, trees.asked.root(), open, trees.request);
        std::string list;
        std::vector<RpcError> errors = walk_filter(mappings, framework, session, parameters, mark, trees, list);
        if (list.empty() || !open.insert(list).second) {
            return errors;
        }
        trees.clear_walk(session.database_arrays());
    }
}

GetParameters read_get(XmlDocument document, const Mappings &mappings, TreeHolder &asked) {
    GetPayload payload = find_get_payload(document);
    if (payload.filter) {
        move_data(*payload.filter, asked.root());
    } else {
        select_everything(mappings, asked);
    }
    return std::move(payload.parameters);
}

Reply answer_get(const Mappings &mappings, Framework &framework, Session &session, RequestTrees &trees,
                 const GetParameters &parameters, MarkPhase mark, bool tree) {
    const std::vector<RpcError> errors = make_get(mappings, framework, session, parameters, mark, trees);
    if (!errors.empty()) {
        return refusal(errors, parameters.attributes);
    }
    const Node &result = trees.response.root();
    return encoded([&] { return tree ? tree_listing(result) : encode_data_reply(result, parameters.attributes); },
                   parameters.attributes);
}

int run_get(const GetOptions &options) {
    check_inputs(options.filter.value_or(""), options.native, "only one of FILTER and --native can be standard input");
    const MarkPhase mark = phase_of(options.phase);
    const Mappings mappings = Mappings::load(options.mappings);
    RequestTrees trees;
    const GetParameters parameters = read_request(options, mappings, trees.asked);
    read_data(options.native, kNativeLayout, trees.native);
    Framework framework(options.trace);
    Session session(framework, trees.native.root());
    return print(answer_get(mappings, framework, session, trees, parameters, mark, options.tree));
}

}  // namespace tvk::tool
