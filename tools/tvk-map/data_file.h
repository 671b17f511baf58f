// Files of data.
#pragma once

#include <string>

#include "tree_holder.h"

namespace tvk::tool {

// Reads the top nodes of a file, "-" for standard input: the children of a <data> or <config> root, or the root itself.
// Throws UsageError.
void read_data(const std::string &path, TreeHolder &data);

}  // namespace tvk::tool
