// What the commands that run a mapping have in common: their inputs and replies.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "framework/rpc_error.h"
#include "framework/tree_holder.h"
#include "netconf/rpc_attributes.h"

namespace tvk::tool {

// Throws UsageError, with rule, when both inputs are standard input.
void check_inputs(const std::string &first, const std::string &second, const char *rule);

// What a command prints on standard output, and its exit status.
struct Reply {
    int status;
    std::string text;
};

Reply refusal(const std::vector<framework::RpcError> &errors, const netconf::RpcAttributes &attributes);

// What encode returns, or, when it throws EncodeError, that as an error.
Reply encoded(const std::function<std::string()> &encode, const netconf::RpcAttributes &attributes);

// The children of root as a <config>, or as a listing.
Reply config_reply(const Node &root, const netconf::RpcAttributes &attributes, bool tree);

// Returns the exit status. Throws UsageError.
int print(const Reply &reply);

}  // namespace tvk::tool
