// An error that a client is told.
#pragma once

#include <optional>
#include <string>

#include "framework/node_path.h"

namespace tvk::framework {

// The texts of an <rpc-error>. The reply leaves out those that are empty.
struct RpcError {
    std::string tag;
    XPath path;
    std::string message;
    std::string bad_attribute;
    std::string bad_element;
    std::optional<std::string> bad_namespace;
};

}  // namespace tvk::framework
