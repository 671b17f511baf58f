// Selects what a subtree filter asks for, by the rules of NETCONF.
#pragma once

#include "framework/tree_holder.h"

namespace tvk::framework {

/*
 * Writes verdicts into response, as a phase of the filter engine does. It keeps what filter selects, and the key leaves
 * of the list entries around it, and drops all else. A filter node without a namespace selects in any namespace. A
 * value selects where it stands. An attribute has to be there with its value. walked, the filter that the mappings have
 * walked, tells which leaves are keys; when it says nothing of a list, the leaves at the front of its entries are.
 *
 * The time grows with the size of the response, not with the number of filter nodes that are equal or name an entry
 * each. Throws std::bad_alloc.
 */
void mark_selected(const Node &filter, const Node &walked, Node &response);

}  // namespace tvk::framework
