// The replies to a request.
#pragma once

#include <optional>
#include <string>

#include "tree_holder.h"

namespace tvk::tool {

// The texts of an <rpc-error>; one that is empty is left out.
struct RpcError {
    std::string tag;
    std::string path;
    std::string path_ns;  // what the prefix "ns1" in path stands for
    std::string message;
    std::string bad_element;
    std::optional<std::string> bad_namespace;
};

// An <rpc-reply> with the children of root as its <data>. Throws EncodeError.
std::string encode_data_reply(const Node &root, const std::optional<std::string> &message_id);

// An <rpc-reply> with the error. What XML cannot hold is shown as "?".
std::string encode_rpc_error(const RpcError &error, const std::optional<std::string> &message_id);

}  // namespace tvk::tool
