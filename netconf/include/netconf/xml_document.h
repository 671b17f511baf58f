// XML files whose data is decoded.
#pragma once

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "netconf/xml_reader.h"
#include "netconf/xml_text.h"

namespace tvk::netconf {

// The element around element, or null.
inline const xmlNode *parent_element(const xmlNode *element) {
    const xmlNode *parent = element->parent;
    return parent != nullptr && parent->type == XML_ELEMENT_NODE ? parent : nullptr;
}

// The value of an attribute, whatever its namespace: clients write both type and nc:type.
std::optional<std::string> attribute_of(const xmlNode *element, const char *name);

/*
 * A parsed file. Nothing outside it is read: no network, no external or internal entities; a document type
 * declaration is refused, and libxml2's own limits on depth (256 levels) and names (50,000 characters) hold.
 */
class XmlDocument {
public:
    // bytes as a file would hold them; the name is for messages. Throws UsageError for what is not well formed.
    static XmlDocument parse(std::string bytes, const std::string &name, const Layout &layout);

    const std::string &name() const { return name_; }
    xmlNode *root() const { return xmlDocGetRootElement(parsed_.document.get()); }

    // The elements in parent, in document order. Other text than white space in parent is an error.
    std::vector<xmlNode *> child_elements(const xmlNode *parent) const;

    // Throws a UsageError that names the file and the line of element.
    [[noreturn]] void fail(const xmlNode *element, const std::string &reason) const;

private:
    XmlDocument(std::string name, ParsedXml parsed) : name_(std::move(name)), parsed_(std::move(parsed)) {}

    std::string name_;
    ParsedXml parsed_;
};

// Makes elements that the document's layout calls data the children of root, which has none yet; they are without data
// then. Throws UsageError for the first that could not be decoded; root then holds those before it.
void move_data(const std::vector<xmlNode *> &elements, Node &root);

}  // namespace tvk::netconf
