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

// The trees of a request. A mapping may let them share child arrays.
struct RequestTrees {
    TreeHolder asked;     // the filter of a read as the client has written it
    TreeHolder request;   // the edit, or the filter of a read that is walked
    TreeHolder native;    // the native data
    TreeHolder response;  // the response to a read

    RequestTrees() = default;
    RequestTrees(const RequestTrees &) = delete;
    RequestTrees &operator=(const RequestTrees &) = delete;
    // Releases request and response, but no array of database, so that another walk of the read may begin. Throws
    // std::bad_alloc.
    void clear_walk(const ChildArrays &database);
    ~RequestTrees() { unshare({&response.root(), &native.root(), &request.root()}); }
};

// Nodes that no mapping has a handler for make an edit fail, and select nothing in a read.
enum class UnmappedNodes { kRefused, kPassedOver };

/*
 * Hands the top containers of request to the handlers of their modules, in order; these build target. The first failure
 * ends the walk. Returns no error when all went well, else that of the failure and then one for each node that no
 * mapping has a handler for, unless these are passed over. When the library refuses the keys of a list
 * (TVK_ERR_LIST_KEY), key_list gets the tags that lead to the list, as in "a/b/c"; it may be null. Throws
 * std::bad_alloc.
 */
std::vector<RpcError> walk(const Mappings &mappings, RequestScope &scope, TreeHolder &request, TreeHolder &target,
                           UnmappedNodes unmapped, std::string *key_list = nullptr);

}  // namespace tvk::framework
