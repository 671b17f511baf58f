// Carries out an edit of data, by the rules of NETCONF.
#pragma once

#include <cstdint>
#include <optional>

#include "framework/list_shapes.h"
#include "framework/rpc_error.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

// A default operation, which no node can carry: nodes without an operation do nothing.
inline constexpr uint32_t kNoOperation = UINT32_MAX;

/*
 * Changes data as edit says: it merges, replaces, creates, deletes and removes nodes, and moves entries that a user
 * orders. Nodes without an operation do default_operation, merge or kNoOperation. A new node comes behind the last one
 * of its name. changes, which has no nodes yet, becomes an edit that has the same effect on the same data: created and
 * deleted nodes and leaves with another value, each with its operation, in the nodes around them.
 *
 * Returns nothing when all went well, else the error of the first node whose operation the data does not allow. data
 * and changes can only be released then. Throws std::bad_alloc.
 */
std::optional<RpcError> apply_edit(TreeHolder &data, const Node &edit, uint32_t default_operation, const Shapes &shapes,
                                   TreeHolder &changes);

}  // namespace tvk::framework
