#include "get_command.h"

#include <utility>

#include "data_file.h"
#include "diagnostics.h"
#include "output.h"
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

std::optional<RpcError> get(const MappingModule &module, Framework &framework, const GetParameters &parameters,
                            MarkPhase mark, RequestTrees &trees) {
    Session session(framework, trees.native.root());
    RequestScope scope(framework, parameters.type, parameters.with_defaults);
    std::optional<RpcError> error = walk(module, scope, trees.request, trees.response, Unmapped::kPassedOver);
    if (!error) {
        own_arrays(trees.response.root(), {&trees.native.root(), &trees.request.root()});
        prune(scope, mark, trees.request, trees.response);
    }
    return error;
}

GetParameters read_request(const GetOptions &options, const MappingModule &module, TreeHolder &filter) {
    GetParameters parameters;
    if (options.filter) {
        parameters = read_get(XmlDocument::read(*options.filter, kGetLayout), module, filter);
    } else {
        select_everything(module, filter);
        merge_tops(filter);
    }
    if (options.with_defaults) {
        parameters.with_defaults = mode_of(*options.with_defaults);
    }
    return parameters;
}

}  // namespace

GetParameters read_get(XmlDocument document, const MappingModule &module, TreeHolder &filter) {
    GetPayload payload = find_get_payload(document);
    if (payload.filter) {
        move_data(*payload.filter, filter.root());
    } else {
        select_everything(module, filter);
    }
    merge_tops(filter);
    return std::move(payload.parameters);
}

Reply answer_get(const MappingModule &module, Framework &framework, RequestTrees &trees,
                 const GetParameters &parameters, MarkPhase mark, bool tree) {
    if (const std::optional<RpcError> error = get(module, framework, parameters, mark, trees)) {
        return refusal(*error, parameters.message_id);
    }
    const Node &result = trees.response.root();
    return encoded([&] { return tree ? tree_listing(result) : encode_data_reply(result, parameters.message_id); },
                   parameters.message_id);
}

int run_get(const GetOptions &options) {
    check_inputs(options.filter.value_or(""), options.native, "only one of FILTER and --native can be standard input");
    const MarkPhase mark = phase_of(options.phase);
    const MappingModule module = MappingModule::load(options.mapping);
    RequestTrees trees;
    const GetParameters parameters = read_request(options, module, trees.request);
    read_data(options.native, trees.native);
    Framework framework(options.trace);
    return print(answer_get(module, framework, trees, parameters, mark, options.tree));
}

}  // namespace tvk::tool
