// The values of a request as its mappings want them, and what they do not take.
#pragma once

#include <vector>

#include "framework/module_loader.h"
#include "framework/rpc_error.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

/*
 * Takes the prefix off the values of all leaves of request that its mappings call identities: data is the name then,
 * data_ns the namespace. A prefix that is not declared stays part of the value.
 */
void resolve_identities(const Mappings &mappings, TreeHolder &request);

// An error for the first node that is to be inserted at a place (yang:insert), where the mapping does not look at
// places.
std::vector<RpcError> refuse_inserts(const Mappings &mappings, TreeHolder &request);

// An error for the first node with an operation, in a request that is a whole configuration.
std::vector<RpcError> refuse_operations(const Node &request);

// An error for the first container or list entry with text in it, once the walk has marked which nodes these are.
std::vector<RpcError> refuse_texts(const Node &request);

}  // namespace tvk::framework
