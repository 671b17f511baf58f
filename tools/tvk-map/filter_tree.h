// The filter of a read as a tree, and what it leaves of a response.
#pragma once

#include "framework.h"
#include "module_loader.h"
#include "tree_holder.h"

namespace tvk::tool {

// The filter that selects all that the module maps. filter has no nodes yet.
void select_everything(const MappingModule &module, TreeHolder &filter);

/*
 * Makes top nodes of the same tag and namespace one, with the children of all; one without children, which selects
 * everything, leaves the others nothing to say.
 */
void merge_tops(TreeHolder &filter);

// Marks a response against a filter, whose roots correspond.
using MarkPhase = uint32_t (*)(tvk_map_ctx ctx, Node *filter, Node *response);

// Leaves of response what filter selects: marks each top node against the filter's top node of its name, and sweeps it.
void prune(RequestScope &scope, MarkPhase mark, TreeHolder &filter, TreeHolder &response);

}  // namespace tvk::tool
