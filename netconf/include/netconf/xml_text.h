// Converts texts from and to those of libxml2, which are UTF-8 in unsigned characters.
#pragma once

#include <libxml/tree.h>

#include <cstring>
#include <string_view>

namespace tvk::netconf {

inline const char *as_text(const xmlChar *text) {
    return reinterpret_cast<const char *>(text);
}
inline const xmlChar *as_xml(const char *text) {
    return reinterpret_cast<const xmlChar *>(text);
}

// Returns the namespace of an element or attribute, "" for none.
inline const char *uri_of(const xmlNs *ns) {
    return ns != nullptr && ns->href ? as_text(ns->href) : "";
}

// The white space of XML.
inline constexpr char kBlanks[] = " \t\r\n";

// Tells whether text is white space, or empty.
inline bool is_white(const char *text) {
    return text[std::strspn(text, kBlanks)] == '\0';
}

// Returns text without the white space around it.
inline std::string_view without_blanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(kBlanks);
    return start == std::string_view::npos ? std::string_view()
                                           : text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

}  // namespace tvk::netconf
