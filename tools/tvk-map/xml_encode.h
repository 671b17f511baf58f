// From data tree records to XML.
#pragma once

#include <string>

#include "tree_holder.h"
#include "xml_output.h"

namespace tvk::tool {

// What the nodes of a tree carry beside their content; its prefixes are declared once, on the element around them.
struct TreeMarks {
    bool operations = false;
    bool inserts = false;
};

TreeMarks find_marks(const Node &root);

/*
 * Writes the children of root into the open element, whose namespace is outer_ns: a namespace is declared where it
 * changes, a value with a namespace of its own gets a prefix. Operations use the prefix "nc", insert records "yang".
 * Throws EncodeError for a node without a proper name, one with value and children, and what XmlOutput refuses.
 */
void write_children(XmlOutput &output, const Node &root, const char *outer_ns);

// The children of root in a NETCONF <config>.
std::string encode_config(const Node &root);

}  // namespace tvk::tool
