// Writes the replies to requests.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/rpc_error.h"
#include "framework/tree_holder.h"
#include "netconf/rpc_attributes.h"

namespace tvk::netconf {

// Returns an <rpc-reply> with the children of root as its <data>. Throws EncodeError.
std::string encode_data_reply(const Node &root, const RpcAttributes &attributes);

// Returns an <rpc-reply> with the errors. A byte that XML cannot hold is shown as "?".
std::string encode_rpc_errors(const std::vector<framework::RpcError> &errors, const RpcAttributes &attributes);

}  // namespace tvk::netconf
