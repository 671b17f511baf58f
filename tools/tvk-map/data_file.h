// Reads files of XML.
#pragma once

#include <string>

#include "netconf/data_document.h"

namespace tvk::tool {

// Returns the document in a file; "-" is standard input. Throws UsageError when it cannot be read or is not well
// formed.
netconf::XmlDocument read_document(const std::string &path, const netconf::Layout &layout);

// Moves the top nodes of a file of kDataLayout or kNativeLayout into data, which has no nodes yet. Throws UsageError.
void read_data(const std::string &path, const netconf::Layout &layout, framework::TreeHolder &data);

}  // namespace tvk::tool
