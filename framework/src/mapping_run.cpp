// Hands the top containers of a request to their handlers.
#include "framework/mapping_run.h"

#include "framework/request_errors.h"

namespace tvk::framework {

void RequestTrees::clear_walk(const ChildArrays &database) {
    const ChildArrays walked(request.root());
    own_arrays(response.root(), {&database, &walked});
    TreeHolder().swap(response);
    TreeHolder().swap(request);
}

std::vector<RpcError> walk(const Mappings &mappings, RequestScope &scope, TreeHolder &request, TreeHolder &target,
                           UnmappedNodes unmapped, std::string *key_list) {
    std::vector<const Node *> refused;
    for (Node &top : request.tops()) {
        const std::optional<Mappings::Target> mapped = mappings.find(tag_of(top), namespace_of(top));
        if (!mapped) {
            refused.push_back(&top);
            continue;
        }
        qerrno status = scope.enter(mapped->module->table(), top);
        if (status == TVK_OK) {
            status = mapped->container->handler(scope.ctx(), &top, &target.root());
        }
        if (status != TVK_OK) {
            if (key_list != nullptr && status == TVK_ERR_LIST_KEY) {
                *key_list = list_of_failure(scope, request.root(), top);
            }
            std::vector<RpcError> errors{describe_failure(status, *mapped->module, scope, request.root(), top)};
            if (unmapped == UnmappedNodes::kRefused && (!refused.empty() || scope.unmapped().any())) {
                const std::vector<RpcError> others =
                    describe_unmapped(mappings, request.root(), scope.unmapped(), refused);
                errors.insert(errors.end(), others.begin(), others.end());
            }
            return errors;
        }
    }
    const bool is_refused = unmapped == UnmappedNodes::kRefused && (!refused.empty() || scope.unmapped().any());
    return is_refused ? describe_unmapped(mappings, request.root(), scope.unmapped(), refused)
                      : std::vector<RpcError>();
}

}  // namespace tvk::framework
