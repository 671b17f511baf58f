// Writing indented XML into memory.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tvk::netconf {

// A tree that cannot be written as XML.
class EncodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// text with "?" for every byte that XML cannot hold: control characters and what is not UTF-8.
std::string writable(const std::string &text);

/*
 * Names must be valid XML names, that of an element must hold until the element ends. Attributes come before the
 * content. Texts are checked: one that XML cannot hold is an EncodeError that names the element. Running out of memory
 * is std::bad_alloc.
 */
class XmlOutput {
public:
    void start(const char *name);
    void end();
    void attribute(const char *name, std::string_view value);
    void attribute(const char *prefix, const char *name, const char *ns, std::string_view value);
    // An attribute for the element started last, once its content is written: end_of_attributes is asked before.
    size_t end_of_attributes() const { return document_.size(); }
    void insert_attribute(size_t place, const char *name, std::string_view value);
    void text(std::string_view value);
    // <name>value</name>
    void leaf(const char *name, std::string_view value);

    // Closes what is open and hands over the document.
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
    Content content_ = Content::kNone;  // so far, of the innermost element that is open
    std::string declarations_;          // of namespaces, for the end of the tag that is open
};

}  // namespace tvk::netconf
