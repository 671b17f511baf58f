// Runs a read through mappings, again while the library refuses the conditions of lists.
#include "framework/get_run.h"

#include "framework/request_values.h"

namespace tvk::framework {

namespace {

// Walks the filter once. When the library refuses the conditions of a list, as they name some of its keys and not all,
// list gets the tags that lead to it.
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

}  // namespace

std::vector<RpcError> make_get(const Mappings &mappings, Framework &framework, Session &session,
                               const GetParameters &parameters, MarkPhase mark, RequestTrees &trees) {
    resolve_identities(mappings, trees.asked);
    OpenLists open;
    for (const Node &top : children(trees.asked.root())) {
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

}  // namespace tvk::framework
