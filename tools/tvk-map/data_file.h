// Files of data.
#pragma once

#include <string>

#include "tree_holder.h"
#include "xml_document.h"

namespace tvk::tool {

// Data are the children of a <data> or <config> root, or the root itself.
extern const Layout kDataLayout;

// Moves the top nodes out of a document of that layout. Throws UsageError.
void take_data(XmlDocument document, TreeHolder &data);

// Those of a file, "-" for standard input. Throws UsageError.
void read_data(const std::string &path, TreeHolder &data);

}  // namespace tvk::tool
