// Makes replies of trees and errors.
#include "reply.h"

#include "framework/diagnostics.h"
#include "netconf/rpc_reply.h"
#include "netconf/xml_encode.h"
#include "output.h"
#include "report.h"

namespace tvk::tool {

void check_inputs(const std::string &first, const std::string &second, const char *rule) {
    if (first == "-" && second == "-") {
        throw framework::UsageError(rule);
    }
}

Reply refusal(const std::vector<framework::RpcError> &errors, const netconf::RpcAttributes &attributes) {
    return {kExitMappingFailed, netconf::encode_rpc_errors(errors, attributes)};
}

Reply encoded(const std::function<std::string()> &encode, const netconf::RpcAttributes &attributes) {
    try {
        return {kExitSuccess, encode()};
    } catch (const netconf::EncodeError &error) {
        framework::RpcError unwritable;
        unwritable.tag = "operation-failed";
        unwritable.message = std::string("The mapping's result cannot be written as XML: ") + error.what() + ".";
        return refusal({unwritable}, attributes);
    }
}

Reply config_reply(const Node &root, const netconf::RpcAttributes &attributes, bool tree) {
    return encoded([&] { return tree ? tree_listing(root) : netconf::encode_config(root); }, attributes);
}

int print(const Reply &reply) {
    write_out(reply.text);
    return reply.status;
}

}  // namespace tvk::tool
