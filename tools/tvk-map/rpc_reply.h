// The replies to a request.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "node_path.h"
#include "rpc_attributes.h"
#include "tree_holder.h"

namespace tvk::tool {

// The texts of an <rpc-error>; one that is empty is left out.
struct RpcError {
    std::string tag;
    XPath path;
    std::string message;
    std::string bad_attribute;
    std::string bad_element;
    std::optional<std::string> bad_namespace;
};

// An <rpc-reply> with the children of root as its <data>. Throws EncodeError.
std::string encode_data_reply(const Node &root, const RpcAttributes &attributes);

// An <rpc-reply> with the errors. What XML cannot hold is shown as "?".
std::string encode_rpc_errors(const std::vector<RpcError> &errors, const RpcAttributes &attributes);

}  // namespace tvk::tool
