// Subtree filtering by the rules of NETCONF.
#pragma once

#include "framework/tree_holder.h"

namespace tvk::framework {

/*
 * Writes verdicts into response, as a phase of the filter engine does: what filter selects is kept, and so are the key
 * leaves of the list entries that it stands in, all else is dropped. A filter node without a namespace selects in any,
 * a value selects where it stands, an attribute has to be there with its value. Which leaves are keys tells walked,
 * the filter that the mappings have walked; where that says nothing of a list, the leaves in front of its entries are.
 *
 * Equal filter nodes, also many that name an entry each, cost no more than the response is large.
 */
void mark_selected(const Node &filter, const Node &walked, Node &response);

}  // namespace tvk::framework
