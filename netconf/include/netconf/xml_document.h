// XML documents whose data is decoded.
#pragma once

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "netconf/xml_reader.h"
#include "netconf/xml_text.h"

namespace tvk::netconf {

// Returns the element around element, or null.
inline const xmlNode *parent_element(const xmlNode *element) {
    const xmlNode *parent = element->parent;
    return parent != nullptr && parent->type == XML_ELEMENT_NODE ? parent : nullptr;
}

// Returns the value of an attribute, or nothing. The namespace does not count: clients write both type and nc:type.
std::optional<std::string> attribute_of(const xmlNode *element, const char *name);

/*
 * Owns a parsed document. The parser reads nothing outside of it, neither from the network nor entities, and refuses a
 * document type declaration. libxml2's own limits on depth (256 levels) and names (50,000 characters) hold.
 */
class XmlDocument {
public:
    // Parses bytes as a file or a message holds them. Messages call them name. Throws UsageError when they are not well
    // formed.
    static XmlDocument parse(std::string bytes, const std::string &name, const Layout &layout);

    const std::string &name() const { return name_; }
    xmlNode *root() const { return xmlDocGetRootElement(parsed_.document.get()); }

    // Returns the elements in parent, in document order. Throws UsageError when parent holds other text than white
    // space.
    std::vector<xmlNode *> child_elements(const xmlNode *parent) const;

    // Throws a UsageError that names the file and the line of element.
    [[noreturn]] void fail(const xmlNode *element, const std::string &reason) const;

private:
    XmlDocument(std::string name, ParsedXml parsed) : name_(std::move(name)), parsed_(std::move(parsed)) {}

    std::string name_;
    ParsedXml parsed_;
};

// Moves the data of elements, which the document's layout calls data, into root, which has no children yet. Throws
// UsageError for the first element that could not be decoded; root then holds the data of those before it.
void move_data(const std::vector<xmlNode *> &elements, Node &root);

}  // namespace tvk::netconf
