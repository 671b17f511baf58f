// Reads files.
#pragma once

#include <string>

#include "netconf/data_document.h"

namespace tvk::tool {

// path "-" is standard input. Throws UsageError for what cannot be read or is not well formed.
netconf::XmlDocument read_document(const std::string &path, const netconf::Layout &layout);

// Moves the top nodes of a file, of kDataLayout or kNativeLayout, into a tree without nodes. Throws UsageError.
void read_data(const std::string &path, const netconf::Layout &layout, framework::TreeHolder &data);

}  // namespace tvk::tool
