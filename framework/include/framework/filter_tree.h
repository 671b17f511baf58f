// Makes of the filter that a client asks with the one that mappings and the filter engine work on.
#pragma once

#include <set>
#include <string>

#include "framework/module_loader.h"
#include "framework/request_scope.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

// Makes filter, which has no nodes yet, select all that the modules map. Throws std::bad_alloc.
void select_everything(const Mappings &mappings, TreeHolder &filter);

// The lists that are walked without conditions. Each is named by the tags from the top container down: "a/b/c".
using OpenLists = std::set<std::string>;

/*
 * Makes walked, which has no nodes yet, a filter that selects at least what asked selects, in a form that mappings and
 * engine can work on:
 *   - Nodes of the same name become one node that asks for what all of them ask for. When each names other values of
 *     the same leaves, as keys of list entries do, they stay apart, one for each value, with the values first.
 *   - A node is asked for whole when it holds nodes without a namespace, which select in any, or nodes of one name in
 *     several namespaces. A top container without a namespace becomes one for each mapped container of its name.
 *   - The lists of open are asked for whole.
 * Throws std::bad_alloc.
 */
void widen(const Mappings &mappings, const Node &asked, const OpenLists &open, TreeHolder &walked);

// A phase of the engine. It marks in response what filter selects; the two roots correspond.
using MarkPhase = uint32_t (*)(tvk_map_ctx ctx, Node *filter, Node *response);

// Drops from response all that walked does not select by the rules of the engine, and then all that asked does not
// select by the rules of NETCONF. A top container that is empty then is dropped, too.
void prune(RequestScope &scope, MarkPhase mark, const Node &asked, TreeHolder &walked, TreeHolder &response);

}  // namespace tvk::framework
