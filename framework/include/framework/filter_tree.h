// The filter of a read as a tree: what mappings and filter engine get of what a client asks for.
#pragma once

#include <set>
#include <string>

#include "framework/module_loader.h"
#include "framework/request_scope.h"
#include "framework/tree_holder.h"

namespace tvk::framework {

// The filter that selects all that the modules map. filter has no nodes yet.
void select_everything(const Mappings &mappings, TreeHolder &filter);

// Lists that are walked without conditions, by the tags from the top container down: "a/b/c".
using OpenLists = std::set<std::string>;

/*
 * Makes walked, which has no nodes yet, a filter that selects at least what asked does, and that mappings and engine
 * get along with:
 *   - nodes of the same name are one, with what all of them ask for, unless each names other values of the same
 *     leaves, as for entries of a list by their keys; these stay apart, one for each value, with the values first;
 *   - what holds nodes without a namespace, which select in any, or nodes of one name in several, is asked for whole; a
 *     top container without one stands there for each container of its name that is mapped;
 *   - the lists of open are asked for whole.
 */
void widen(const Mappings &mappings, const Node &asked, const OpenLists &open, TreeHolder &walked);

// Marks a response against a filter, whose roots correspond.
using MarkPhase = uint32_t (*)(tvk_map_ctx ctx, Node *filter, Node *response);

// Leaves of response what walked selects by the rules of the engine, and of that what asked selects by those of
// NETCONF. A top container of which nothing is left goes.
void prune(RequestScope &scope, MarkPhase mark, const Node &asked, TreeHolder &walked, TreeHolder &response);

}  // namespace tvk::framework
