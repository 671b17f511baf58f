// Writes data tree records as XML.
#pragma once

#include <string>

#include "framework/tree_holder.h"
#include "netconf/xml_output.h"

namespace tvk::netconf {

/*
 * Writes the children of root into the open element, which has no content yet and is in NETCONF's namespace. A
 * namespace is declared where it changes. A value with a namespace gets a prefix. Operations use the prefix "nc",
 * insert records "yang"; both are declared on the open element when they occur. Throws EncodeError for a node without a
 * proper name, a node with value and children, and texts that XmlOutput refuses.
 */
void write_data(XmlOutput &output, const Node &root);

// Returns a NETCONF <config> with the children of root. Throws EncodeError.
std::string encode_config(const Node &root);

}  // namespace tvk::netconf
