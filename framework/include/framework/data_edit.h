// Carrying out on data what an edit of it says, by the rules of NETCONF.
#pragma once

#include <cstdint>
#include <optional>

#include "framework/list_shapes.h"
#include "framework/rpc_error.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

// What only a default can be: nothing is done where no node says what to do.
inline constexpr uint32_t kNoOperation = UINT32_MAX;

/*
 * Changes data as edit says: merge, replace, create, delete, remove, and the places of entries that a user orders.
 * default_operation is what nodes without an operation do, merge, or kNoOperation for nothing. New nodes come behind
 * the last one of their name. changes gets what is different then, as an edit of its own: created and deleted nodes and
 * leaves with another value, each with its operation, in what they stand in.
 *
 * Returns the error of the first node that is there already or is missing, against its operation; data and changes are
 * good for nothing then. Throws std::bad_alloc.
 */
std::optional<RpcError> apply_edit(TreeHolder &data, const Node &edit, uint32_t default_operation, const Shapes &shapes,
                                   TreeHolder &changes);

}  // namespace tvk::framework
