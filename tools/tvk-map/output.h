// Standard output: whole or not at all.
#pragma once

#include <string>

#include "framework/tree_holder.h"

namespace tvk::tool {

// Writes text to standard output. Throws UsageError when it cannot be written.
void write_out(const std::string &text);

// What tvk_map_print_subtrees prints for root, with namespaces if asked for. Control characters of a document, which a
// terminal might obey, are escaped: each node has a line of its own.
std::string tree_listing(const Node &root, bool namespaces = false);

}  // namespace tvk::tool
