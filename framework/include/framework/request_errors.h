// Makes errors for a client of what a failed request leaves behind.
#pragma once

#include <string>
#include <vector>

#include "framework/module_loader.h"
#include "framework/request_scope.h"
#include "framework/rpc_error.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

// Returns an error of that tag for the node at the end of path, which is not empty. Its message is "PATH: reason".
RpcError error_at(const NodePath &path, const char *tag, const std::string &reason,
                  const IsKey &is_key = is_marked_key);

// Returns the tags down to the list that a failure with TVK_ERR_LIST_KEY is about, as in "a/b/c".
std::string list_of_failure(RequestScope &scope, const Node &request, const Node &top);

/*
 * Returns the error of a handler that failed. status is what the handler of top, a top container of request, answered;
 * scope is the request as the handler left it. The error names the node that the mapping has named, or else the node
 * that the library's error path and the marks of the walk lead to.
 */
RpcError describe_failure(qerrno status, const MappingModule &module, RequestScope &scope, const Node &request,
                          const Node &top);

// Returns an error for each node of request that no mapping has a handler for: for tops, the top containers among them,
// and then for the others in document order. There are at most 100; the last one says how many more there are.
std::vector<RpcError> describe_unmapped(const Mappings &mappings, const Node &request, const Unmapped &unmapped,
                                        const std::vector<const Node *> &tops);

}  // namespace tvk::framework
