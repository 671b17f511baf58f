// From data tree records to XML.
#pragma once

#include <string>

#include "framework/tree_holder.h"
#include "netconf/xml_output.h"

namespace tvk::netconf {

/*
 * Writes the children of root into the open element, which has no content yet and whose namespace is NETCONF's: a
 * namespace is declared where it changes, a value with a namespace of its own gets a prefix. Operations use the prefix
 * "nc", insert records "yang"; both are declared on the open element when they occur.
 * Throws EncodeError for a node without a proper name, one with value and children, and what XmlOutput refuses.
 */
void write_data(XmlOutput &output, const Node &root);

// The children of root in a NETCONF <config>.
std::string encode_config(const Node &root);

}  // namespace tvk::netconf
