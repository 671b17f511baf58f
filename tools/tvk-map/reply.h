// Makes the replies of the commands that run a mapping, and checks their inputs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "framework/rpc_error.h"
#include "framework/tree_holder.h"
#include "netconf/rpc_attributes.h"

namespace tvk::tool {

// Throws UsageError with the text rule when both inputs are standard input.
void check_inputs(const std::string &first, const std::string &second, const char *rule);

// The text that a command prints on standard output, and its exit status.
struct Reply {
    int status;
    std::string text;
};

// Returns the reply that tells a client the errors.
Reply refusal(const std::vector<framework::RpcError> &errors, const netconf::RpcAttributes &attributes);

// Returns the reply with the text that encode returns, or, when that throws EncodeError, a refusal with the reason.
Reply encoded(const std::function<std::string()> &encode, const netconf::RpcAttributes &attributes);

// Returns the reply with the children of root as a <config>, or, if tree, as a listing.
Reply config_reply(const Node &root, const netconf::RpcAttributes &attributes, bool tree);

// Prints the reply, and returns its status. Throws UsageError.
int print(const Reply &reply);

}  // namespace tvk::tool
