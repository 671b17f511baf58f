// Brings values of a request into the form that mappings expect, and refuses what they do not take.
#pragma once

#include <vector>

#include "framework/module_loader.h"
#include "framework/rpc_error.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

/*
 * Takes the prefix off the values of all leaves of request that its mappings call identities. data is then the name,
 * data_ns the namespace. A prefix that is not declared stays part of the value. Throws std::bad_alloc.
 */
void resolve_identities(const Mappings &mappings, TreeHolder &request);

// Returns an error for the first node that is to be inserted at a place (yang:insert) although its mapping does not
// obey places, or none.
std::vector<RpcError> refuse_inserts(const Mappings &mappings, TreeHolder &request);

// Returns an error for the first node that carries an operation, or none. A request that is a whole configuration has
// no operations.
std::vector<RpcError> refuse_operations(const Node &request);

// Returns an error for the first container or list entry with text in it, or none. The walk has marked which nodes are
// containers and entries.
std::vector<RpcError> refuse_texts(const Node &request);

}  // namespace tvk::framework
