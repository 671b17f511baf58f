#include "mapping_run.h"

#include "diagnostics.h"
#include "mapping_failure.h"
#include "output.h"
#include "xml_output.h"

namespace tvk::tool {

void check_inputs(const std::string &first, const std::string &second, const char *rule) {
    if (first == "-" && second == "-") {
        throw UsageError(rule);
    }
}

std::optional<RpcError> walk(const MappingModule &module, RequestScope &scope, TreeHolder &request, TreeHolder &target,
                             Unmapped unmapped) {
    for (Node &top : request.tops()) {
        const tvk_map_module_container *container = module.find(tag_of(top), namespace_of(top));
        if (container == nullptr) {
            if (unmapped == Unmapped::kPassedOver) {
                continue;
            }
            return describe_unmapped(module, top);
        }
        scope.enter(top);
        const qerrno status = container->handler(scope.ctx(), &top, &target.root());
        if (status != TVK_OK) {
            return describe_failure(status, scope.state(), top);
        }
    }
    return std::nullopt;
}

Reply refusal(const RpcError &error, const std::optional<std::string> &message_id) {
    return {kExitMappingFailed, encode_rpc_error(error, message_id)};
}

Reply encoded(const std::function<std::string()> &encode, const std::optional<std::string> &message_id) {
    try {
        return {kExitSuccess, encode()};
    } catch (const EncodeError &error) {
        RpcError unwritable;
        unwritable.tag = "operation-failed";
        unwritable.message = std::string("The mapping's result cannot be written as XML: ") + error.what() + ".";
        return refusal(unwritable, message_id);
    }
}

int print(const Reply &reply) {
    write_out(reply.text);
    return reply.status;
}

}  // namespace tvk::tool
