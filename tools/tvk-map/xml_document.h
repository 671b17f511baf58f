// Reading XML files with libxml2.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tvk::tool {

// libxml2's texts are UTF-8 in unsigned characters.
inline const char *as_text(const xmlChar *text) {
    return reinterpret_cast<const char *>(text);
}
inline const xmlChar *as_xml(const char *text) {
    return reinterpret_cast<const xmlChar *>(text);
}

// The namespace of an element or attribute, "" for none.
inline const char *namespace_of(const xmlNs *ns) {
    return ns != nullptr && ns->href ? as_text(ns->href) : "";
}

inline constexpr char kBlanks[] = " \t\r\n";

bool is_white(const char *text);
std::string_view without_blanks(std::string_view text);  // around it

// The value of an attribute, whatever its namespace: clients write both type and nc:type.
std::optional<std::string> attribute_of(const xmlNode *element, const char *name);

/*
 * A parsed file. Nothing outside it is read: no network, no external or internal entities; a document type
 * declaration is refused, and libxml2's own limits on depth (256 levels) and names (50,000 characters) hold.
 */
class XmlDocument {
public:
    // path "-" is standard input. Throws UsageError for what cannot be read or is not well formed.
    static XmlDocument read(const std::string &path);
    // bytes as a file would hold them; the name is for messages.
    static XmlDocument parse(const std::string &bytes, const std::string &name);

    const std::string &name() const { return name_; }
    xmlNode *root() const { return xmlDocGetRootElement(document_.get()); }

    // The elements in parent, in document order. Other text than white space in parent is an error.
    std::vector<xmlNode *> child_elements(const xmlNode *parent) const;

    // Throws a UsageError that names the file and the line of node.
    [[noreturn]] void fail(const xmlNode *node, const std::string &reason) const;

private:
    struct Release {
        void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    };
    using DocumentPtr = std::unique_ptr<xmlDoc, Release>;

    XmlDocument(std::string name, DocumentPtr document) : name_(std::move(name)), document_(std::move(document)) {}

    std::string name_;
    DocumentPtr document_;
};

}  // namespace tvk::tool
