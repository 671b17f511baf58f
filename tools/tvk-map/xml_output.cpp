#include "xml_output.h"

#include <libxml/chvalid.h>

#include <cstdio>
#include <new>
#include <string_view>

#include "xml_document.h"

namespace tvk::tool {

namespace {

void check(int written) {
    if (written < 0) {
        throw std::bad_alloc();
    }
}

// The length of the XML character that text begins with; 0 when it begins with none.
size_t leading_character(std::string_view text) {
    const int first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return xmlIsCharQ(first) ? 1 : 0;
    }
    int length = static_cast<int>(text.size() < 4 ? text.size() : 4);
    const int code = xmlGetUTF8Char(reinterpret_cast<const unsigned char *>(text.data()), &length);
    const int shortest = code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    return code >= 0 && length == shortest && xmlIsCharQ(code) ? static_cast<size_t>(length) : 0;
}

size_t find_unwritable(std::string_view text, size_t at = 0) {
    while (at < text.size()) {
        const size_t length = leading_character(text.substr(at));
        if (length == 0) {
            return at;
        }
        at += length;
    }
    return std::string_view::npos;
}

}  // namespace

std::string writable(const std::string &text) {
    std::string clean = text;
    for (size_t at = 0; (at = find_unwritable(clean, at)) != std::string::npos;) {
        clean[at] = '?';
    }
    return clean;
}

XmlOutput::XmlOutput() : buffer_(xmlBufferCreate()) {
    if (buffer_) {
        xmlBufferSetAllocationScheme(buffer_.get(), XML_BUFFER_ALLOC_DOUBLEIT);
        writer_.reset(xmlNewTextWriterMemory(buffer_.get(), 0));
    }
    if (!writer_) {
        throw std::bad_alloc();
    }
    check(xmlTextWriterSetIndent(writer_.get(), 1));
    check(xmlTextWriterSetIndentString(writer_.get(), as_xml("  ")));
}

void XmlOutput::start(const char *name) {
    element_ = name;
    check(xmlTextWriterStartElement(writer_.get(), as_xml(name)));
}

void XmlOutput::end() {
    check(xmlTextWriterEndElement(writer_.get()));
}

void XmlOutput::attribute(const char *name, const char *value) {
    check_text("an attribute", value);
    check(xmlTextWriterWriteAttribute(writer_.get(), as_xml(name), as_xml(value)));
}

void XmlOutput::attribute(const char *prefix, const char *name, const char *ns, const char *value) {
    check_text("an attribute", ns);
    check_text("an attribute", value);
    check(xmlTextWriterWriteAttributeNS(writer_.get(), as_xml(prefix), as_xml(name), as_xml(ns), as_xml(value)));
}

void XmlOutput::text(const char *value) {
    check_text("the value", value);
    check(xmlTextWriterWriteString(writer_.get(), as_xml(value)));
}

void XmlOutput::leaf(const char *name, const char *value) {
    start(name);
    text(value);
    end();
}

std::string XmlOutput::finish() {
    check(xmlTextWriterEndDocument(writer_.get()));
    writer_.reset();
    const xmlChar *content = xmlBufferContent(buffer_.get());
    return std::string(as_text(content), static_cast<size_t>(xmlBufferLength(buffer_.get())));
}

void XmlOutput::check_text(const char *what, const char *value) const {
    const size_t at = find_unwritable(value);
    if (at == std::string_view::npos) {
        return;
    }
    char byte[8];
    std::snprintf(byte, sizeof byte, "0x%02x", static_cast<unsigned>(static_cast<unsigned char>(value[at])));
    throw EncodeError(std::string(what) + " of '" + element_ + "' holds a character that XML cannot express (byte " +
                      byte + ")");
}

}  // namespace tvk::tool
