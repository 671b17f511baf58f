// Writes to standard output, whole or not at all.
#pragma once

#include <string>

#include "framework/tree_holder.h"

namespace tvk::tool {

// Writes text to standard output. Throws UsageError when it cannot be written.
void write_out(const std::string &text);

// Returns the listing that tvk_map_print_subtrees prints for root. Each node has a line of its own, as control
// characters, which a terminal might obey, are escaped. Throws UsageError and std::bad_alloc.
std::string tree_listing(const Node &root, bool namespaces = false);

}  // namespace tvk::tool
