// Files of data.
#pragma once

#include <string>

#include "tree_holder.h"
#include "xml_document.h"

namespace tvk::tool {

// Decodes the top nodes: the children of a <data> or <config> root, or the root itself. Throws UsageError.
void decode_data(const XmlDocument &document, TreeHolder &data);

// Those of a file, "-" for standard input. Throws UsageError.
void read_data(const std::string &path, TreeHolder &data);

}  // namespace tvk::tool
