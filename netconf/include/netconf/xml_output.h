// Writes indented XML into memory.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tvk::netconf {

// Says that a tree cannot be written as XML, and why.
class EncodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Returns text with "?" for each byte that XML cannot hold: for control characters and bytes that are not UTF-8.
std::string writable(const std::string &text);

/*
 * Writes a document, element by element. Names must be valid XML names, and the text of an element's name must live
 * until the element ends. Attributes come before the content. Throws EncodeError, which names the element, for a text
 * that XML cannot hold, and std::bad_alloc.
 */
class XmlOutput {
public:
    // Begins an element in the one that is open.
    void start(const char *name);
    // Ends the open element.
    void end();
    // Adds an attribute to the open element.
    void attribute(const char *name, std::string_view value);
    // Adds an attribute in a namespace, and declares its prefix.
    void attribute(const char *prefix, const char *name, const char *ns, std::string_view value);
    // Returns the place for later attributes of the open element, which has no content yet.
    size_t end_of_attributes() const { return document_.size(); }
    // Adds an attribute at such a place, once the content is written.
    void insert_attribute(size_t place, const char *name, std::string_view value);
    // Makes value the text of the open element.
    void text(std::string_view value);
    // Writes <name>value</name>.
    void leaf(const char *name, std::string_view value);

    // Ends all open elements, and hands over the document.
    std::string finish();

private:
    enum class Content { kNone, kText, kElements };

    void begin_content(Content content);
    void end_tag(const char *end);
    void indent();
    void append_attribute(std::string &out, const char *name, std::string_view value) const;
    void append(std::string &out, const char *what, std::string_view value, bool is_attribute) const;

    std::string document_;
    std::vector<const char *> open_;
    Content content_ = Content::kNone;  // the content of the open element so far
    std::string declarations_;          // the namespaces to declare at the end of the open tag
};

}  // namespace tvk::netconf
