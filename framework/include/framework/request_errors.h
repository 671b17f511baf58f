// From what a failed request leaves behind to the errors that a client is told.
#pragma once

#include <string>
#include <vector>

#include "framework/module_loader.h"
#include "framework/request_scope.h"
#include "framework/rpc_error.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

// An error of that tag at a node: its path, and the message "PATH: reason".
RpcError error_at(const NodePath &path, const char *tag, const std::string &reason,
                  const IsKey &is_key = is_marked_key);

// The tags down to the list that a failure with TVK_ERR_LIST_KEY is about, as in "a/b/c".
std::string list_of_failure(RequestScope &scope, const Node &request, const Node &top);

/*
 * status is what the handler of the top container top of request answered, scope the request as it was left. The place
 * is the node that the mapping named, or what the library's error path and the marks of the walk tell.
 */
RpcError describe_failure(qerrno status, const MappingModule &module, RequestScope &scope, const Node &request,
                          const Node &top);

// An error for each node of request that nothing maps, in document order, up to a limit; the last one says how many
// there are beside. tops are the top containers for which no mapping has a handler.
std::vector<RpcError> describe_unmapped(const Mappings &mappings, const Node &request, const Unmapped &unmapped,
                                        const std::vector<const Node *> &tops);

}  // namespace tvk::framework
