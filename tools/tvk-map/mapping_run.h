// What the commands that run a mapping have in common.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "framework.h"
#include "module_loader.h"
#include "rpc_reply.h"
#include "tree_holder.h"

namespace tvk::tool {

// Throws UsageError, with rule, when both inputs are standard input.
void check_inputs(const std::string &first, const std::string &second, const char *rule);

// The trees of a request. They may share child arrays when a mapping says so.
struct RequestTrees {
    TreeHolder request;  // of a read, its filter
    TreeHolder native;
    TreeHolder response;  // to a read

    RequestTrees() = default;
    RequestTrees(const RequestTrees &) = delete;
    RequestTrees &operator=(const RequestTrees &) = delete;
    ~RequestTrees() { unshare({&response.root(), &native.root(), &request.root()}); }
};

enum class Unmapped { kRefused, kPassedOver };

/*
 * Hands the top containers of request to the module in order; target is what their handlers build. The first failure
 * ends the walk; unmapped says whether a container that the module does not map is one.
 */
std::optional<RpcError> walk(const MappingModule &module, RequestScope &scope, TreeHolder &request, TreeHolder &target,
                             Unmapped unmapped);

// What a command prints on standard output, and its exit status.
struct Reply {
    int status;
    std::string text;
};

Reply refusal(const RpcError &error, const std::optional<std::string> &message_id);

// What encode returns, or, when it throws EncodeError, that as an error.
Reply encoded(const std::function<std::string()> &encode, const std::optional<std::string> &message_id);

// Returns the exit status. Throws UsageError.
int print(const Reply &reply);

}  // namespace tvk::tool
