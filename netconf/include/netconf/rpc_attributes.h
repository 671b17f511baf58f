// The attributes of a request's <rpc>. The reply has to carry all of them.
#pragma once

#include <string>
#include <vector>

namespace tvk::netconf {

struct RpcAttribute {
    std::string name;
    std::string ns;  // "" for none
    std::string value;
};
using RpcAttributes = std::vector<RpcAttribute>;

}  // namespace tvk::netconf
