// Hands requests to mappings.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "framework/module_loader.h"
#include "framework/request_scope.h"
#include "framework/rpc_error.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

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

}  // namespace tvk::framework
