// Escapes and indents XML.
#include "netconf/xml_output.h"

#include <libxml/chvalid.h>

#include <algorithm>
#include <cstdio>

#include "netconf/xml_document.h"

namespace tvk::netconf {

namespace {

// A character of UTF-8.
struct Character {
    size_t length;  // in bytes; 0 when XML cannot hold it
    unsigned code;
};

Character leading_character(std::string_view text) {
    const unsigned first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return {xmlIsCharQ(first) ? 1u : 0u, first};
    }
    int length = static_cast<int>(text.size() < 4 ? text.size() : 4);
    const int code = xmlGetUTF8Char(reinterpret_cast<const unsigned char *>(text.data()), &length);
    const int shortest = code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    const bool leads = first >= 0xc0;  // libxml2 lets a character begin with a byte that continues one
    const bool is_character = leads && code >= 0 && length == shortest && xmlIsCharQ(code);
    return {is_character ? static_cast<size_t>(length) : 0, static_cast<unsigned>(code)};
}

// Tells whether a byte is written as it is, in texts and attributes alike.
bool is_plain(unsigned char byte) {
    return byte >= ' ' && byte < 0x80 && byte != '<' && byte != '>' && byte != '&' && byte != '"';
}

size_t length_of_plain(std::string_view text) {
    size_t length = 0;
    while (length < text.size() && is_plain(static_cast<unsigned char>(text[length]))) {
        ++length;
    }
    return length;
}

std::string numbered(unsigned code) {
    char reference[16];
    std::snprintf(reference, sizeof reference, code < 0x80 ? "&#%u;" : "&#x%X;", code);
    return reference;
}

// Appends a character. In attributes a reader takes line breaks and tabs for blanks, so these are written as references
// there, and so are all characters that are not ASCII.
void append_character(std::string &out, std::string_view bytes, unsigned code, bool is_attribute) {
    switch (code) {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += is_attribute || code == '\r' ? numbered(code) : bytes;
    }
}

// Appends text up to the first byte that XML cannot hold. Returns the rest, "" when there is none.
std::string_view append_escaped(std::string &out, std::string_view text, bool is_attribute) {
    for (;;) {
        const size_t plain = length_of_plain(text);
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            return text;
        }
        const Character character = leading_character(text);
        if (character.length == 0) {
            return text;
        }
        append_character(out, text.substr(0, character.length), character.code, is_attribute);
        text.remove_prefix(character.length);
    }
}

}  // namespace

std::string writable(const std::string &text) {
    std::string clean = text;
    for (size_t at = 0; at < clean.size();) {
        const size_t length = leading_character(std::string_view(clean).substr(at)).length;
        if (length == 0) {
            clean[at] = '?';
        }
        at += length == 0 ? 1 : length;
    }
    return clean;
}

void XmlOutput::start(const char *name) {
    if (!open_.empty()) {
        begin_content(Content::kElements);
    }
    indent();
    document_ += '<';
    document_ += name;
    open_.push_back(name);
    content_ = Content::kNone;
}

void XmlOutput::end() {
    const char *name = open_.back();
    open_.pop_back();
    if (content_ == Content::kNone) {
        end_tag("/>\n");
    } else {
        if (content_ == Content::kElements) {
            indent();
        }
        document_ += "</";
        document_ += name;
        document_ += ">\n";
    }
    content_ = Content::kElements;
}

void XmlOutput::attribute(const char *name, std::string_view value) {
    append_attribute(document_, name, value);
}

void XmlOutput::attribute(const char *prefix, const char *name, const char *ns, std::string_view value) {
    // Declarations stand behind the attributes, the last one first.
    std::string declaration;
    append_attribute(declaration, (std::string("xmlns:") + prefix).c_str(), ns);
    append_attribute(document_, (std::string(prefix) + ":" + name).c_str(), value);
    declarations_.insert(0, declaration);
}

void XmlOutput::insert_attribute(size_t place, const char *name, std::string_view value) {
    std::string text;
    append_attribute(text, name, value);
    document_.insert(place, text);
}

void XmlOutput::text(std::string_view value) {
    begin_content(Content::kText);
    append(document_, "the value", value, false);
}

void XmlOutput::leaf(const char *name, std::string_view value) {
    start(name);
    text(value);
    end();
}

std::string XmlOutput::finish() {
    while (!open_.empty()) {
        end();
    }
    return std::move(document_);
}

void XmlOutput::begin_content(Content content) {
    if (content_ == Content::kNone) {
        end_tag(content == Content::kElements ? ">\n" : ">");
    }
    content_ = content;
}

void XmlOutput::end_tag(const char *end) {
    document_ += declarations_;
    document_ += end;
    declarations_.clear();
}

void XmlOutput::indent() {
    constexpr size_t kMaxIndent = 64;  // levels; the blanks of a deep tree would take more room than the tree
    document_.append(2 * std::min(open_.size(), kMaxIndent), ' ');
}

void XmlOutput::append_attribute(std::string &out, const char *name, std::string_view value) const {
    out += ' ';
    out += name;
    out += "=\"";
    append(out, "an attribute", value, true);
    out += '"';
}

void XmlOutput::append(std::string &out, const char *what, std::string_view value, bool is_attribute) const {
    const std::string_view rest = append_escaped(out, value, is_attribute);
    if (rest.empty()) {
        return;
    }
    char byte[8];
    std::snprintf(byte, sizeof byte, "0x%02x", static_cast<unsigned>(static_cast<unsigned char>(rest.front())));
    throw EncodeError(std::string(what) + " of '" + open_.back() +
                      "' holds a character that XML cannot express (byte " + byte + ")");
}

}  // namespace tvk::netconf
