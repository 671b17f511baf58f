// Gives access to the elements of a parsed document.
#include "netconf/xml_document.h"

#include <utility>

#include "framework/diagnostics.h"
#include "framework/heap.h"
#include "netconf/document_bytes.h"

namespace tvk::netconf {

std::optional<std::string> attribute_of(const xmlNode *element, const char *name) {
    xmlChar *value = xmlGetProp(element, as_xml(name));
    if (value == nullptr) {
        return std::nullopt;
    }
    std::string text = as_text(value);
    xmlFree(value);
    return text;
}

XmlDocument XmlDocument::parse(std::string bytes, const std::string &name, const Layout &layout) {
    const DocumentBytes document = prepare_bytes(std::move(bytes), name);
    return XmlDocument(name, parse_xml(document, name, layout));
}

std::vector<xmlNode *> XmlDocument::child_elements(const xmlNode *parent) const {
    std::vector<xmlNode *> elements;
    for (xmlNode *child = parent->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) {
            elements.push_back(child);
        } else if (child->type == XML_TEXT_NODE && !is_white(as_text(child->content))) {
            fail(parent, std::string("<") + as_text(parent->name) + "> holds text where only elements may stand");
        }
    }
    return elements;
}

void XmlDocument::fail(const xmlNode *element, const std::string &reason) const {
    throw framework::UsageError(name_, line_of(element), reason);
}

void move_data(const std::vector<xmlNode *> &elements, Node &root) {
    if (elements.empty()) {
        return;
    }
    root.subtrees = framework::zeroed_array<Node>(elements.size());
    set_present(root, TVK_HAS_SUBTREES);
    for (const xmlNode *element : elements) {
        DataElement &data = data_of(element);
        if (data.fault) {
            throw framework::UsageError(*data.fault);
        }
        root.subtrees[root.subtree_count++] = std::exchange(data.tree.root(), Node{});
    }
}

}  // namespace tvk::netconf
