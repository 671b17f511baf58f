// What the commands that run a mapping have in common.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "framework.h"
#include "module_loader.h"
#include "rpc_attributes.h"
#include "rpc_reply.h"
#include "tree_holder.h"

namespace tvk::tool {

// Throws UsageError, with rule, when both inputs are standard input.
void check_inputs(const std::string &first, const std::string &second, const char *rule);

// The trees of a request. They may share child arrays when a mapping says so.
struct RequestTrees {
    TreeHolder asked;    // of a read, its filter as the client has written it
    TreeHolder request;  // of a read, the filter that is walked
    TreeHolder native;
    TreeHolder response;  // to a read

    RequestTrees() = default;
    RequestTrees(const RequestTrees &) = delete;
    RequestTrees &operator=(const RequestTrees &) = delete;
    // Releases what the walk of a read has read and made, but nothing of database, so that another one may begin.
    // Throws std::bad_alloc.
    void clear_walk(const ChildArrays &database);
    ~RequestTrees() { unshare({&response.root(), &native.root(), &request.root()}); }
};

enum class UnmappedNodes { kRefused, kPassedOver };

/*
 * Hands the top containers of request to their modules in order; target is what the handlers build. Nothing when all
 * went well. The first failure ends the walk. Its error is followed by one for each node that mappings have nothing
 * for, unless these are passed over. key_list, if not null, gets the place of the list whose keys the library did not
 * accept, by tags, when that is the failure.
 */
std::vector<RpcError> walk(const Mappings &mappings, RequestScope &scope, TreeHolder &request, TreeHolder &target,
                           UnmappedNodes unmapped, std::string *key_list = nullptr);

// What a command prints on standard output, and its exit status.
struct Reply {
    int status;
    std::string text;
};

Reply refusal(const std::vector<RpcError> &errors, const RpcAttributes &attributes);

// What encode returns, or, when it throws EncodeError, that as an error.
Reply encoded(const std::function<std::string()> &encode, const RpcAttributes &attributes);

// The children of root as a <config>, or as a listing.
Reply config_reply(const Node &root, const RpcAttributes &attributes, bool tree);

// Returns the exit status. Throws UsageError.
int print(const Reply &reply);

}  // namespace tvk::tool
