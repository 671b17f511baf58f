// Writing indented XML into memory.
#pragma once

#include <libxml/xmlwriter.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace tvk::tool {

// A tree that cannot be written as XML.
class EncodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// text with "?" for every byte that XML cannot hold: control characters and what is not UTF-8.
std::string writable(const std::string &text);

/*
 * Names must be valid XML names. Texts are checked: one that XML cannot hold is an EncodeError that names the
 * element. Running out of memory is std::bad_alloc.
 */
class XmlOutput {
public:
    XmlOutput();

    void start(const char *name);
    void end();
    void attribute(const char *name, const char *value);
    void attribute(const char *prefix, const char *name, const char *ns, const char *value);
    void text(const char *value);
    // <name>value</name>
    void leaf(const char *name, const char *value);

    // Closes what is open and hands over the document.
    std::string finish();

private:
    struct ReleaseBuffer {
        void operator()(xmlBuffer *buffer) const { xmlBufferFree(buffer); }
    };
    struct ReleaseWriter {
        void operator()(xmlTextWriter *writer) const { xmlFreeTextWriter(writer); }
    };

    void check_text(const char *what, const char *value) const;

    std::unique_ptr<xmlBuffer, ReleaseBuffer> buffer_;
    std::unique_ptr<xmlTextWriter, ReleaseWriter> writer_;
    std::string element_;  // started last
};

}  // namespace tvk::tool
