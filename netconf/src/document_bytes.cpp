// Takes off framing, recodes UTF-16, and checks what the parser must not see.
#include "netconf/document_bytes.h"

#include <libxml/encoding.h>

#include <algorithm>
#include <climits>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>

#include "framework/diagnostics.h"
#include "netconf/xml_text.h"

namespace tvk::netconf {

namespace {

constexpr size_t kMaxAttributes = 1000;

[[noreturn]] void fail(std::string_view bytes, size_t at, const std::string &name, const std::string &reason) {
    const std::string_view before = bytes.substr(0, at);
    throw framework::UsageError(name, static_cast<long>(1 + std::count(before.begin(), before.end(), '\n')), reason);
}

[[noreturn]] void fail(const std::string &name, const std::string &reason) {
    throw framework::UsageError(name, 1, reason);
}

// ---- Framing ----

constexpr std::string_view kEndOfMessage = "]]>]]>";
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view kEndOfChunks = "\n##\n";

bool is_blank(std::string_view text) {
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

// Returns the size of the chunk whose line "#SIZE" begins at `at`, and moves `at` behind that line. Returns 0 when
// there is no such line.
size_t take_chunk_size(std::string_view bytes, size_t &at) {
    constexpr size_t kMaxDigits = 10;
    size_t end = at + 2;
    size_t size = 0;
    if (bytes.substr(at, 2) != "\n#") {
        return 0;
    }
    while (end < bytes.size() && bytes[end] >= '0' && bytes[end] <= '9' && end - at - 2 < kMaxDigits) {
        size = size * 10 + static_cast<size_t>(bytes[end++] - '0');
    }
    if (end == bytes.size() || bytes[end] != '\n') {
        return 0;
    }
    at = end + 1;
    return size;
}

std::string without_chunks(std::string_view bytes, const std::string &name) {
    std::string message;
    size_t at = 0;
    while (!bytes.substr(at).starts_with(kEndOfChunks)) {
        const size_t size = take_chunk_size(bytes, at);
        if (size == 0 || size > bytes.size() - at) {
            fail(name, "the chunked framing is broken: a chunk of another size than it says, or no end (\"##\")");
        }
        message += bytes.substr(at, size);
        at += size;
    }
    if (!is_blank(bytes.substr(at + kEndOfChunks.size()))) {
        fail(name, "holds more than one framed message");
    }
    return message;
}

// The end-of-message framing is taken off at the end alone: a document may hold "]]>]]>" in a section.
void take_off_framing(std::string &bytes, const std::string &name) {
    if (bytes.starts_with("\n#")) {
        bytes = without_chunks(bytes, name);
        return;
    }
    const size_t end = bytes.find_last_not_of(kBlanks);
    const std::string_view content = std::string_view(bytes).substr(0, end == std::string::npos ? 0 : end + 1);
    if (content.ends_with(kEndOfMessage)) {
        bytes.resize(content.size() - kEndOfMessage.size());
    }
}

// ---- Encoding ----

struct ReleaseBuffer {
    void operator()(xmlBuffer *buffer) const { xmlBufferFree(buffer); }
};
using Buffer = std::unique_ptr<xmlBuffer, ReleaseBuffer>;

xmlCharEncoding detected(std::string_view bytes) {
    constexpr int kTellingBytes = 4;
    return bytes.size() < kTellingBytes
               ? XML_CHAR_ENCODING_NONE
               : xmlDetectCharEncoding(reinterpret_cast<const xmlChar *>(bytes.data()), kTellingBytes);
}

std::string utf8_of(const std::string &bytes, xmlCharEncoding encoding, const std::string &name) {
    xmlCharEncodingHandler *handler = xmlGetCharEncodingHandler(encoding);
    const Buffer in(xmlBufferCreateSize(bytes.size() + 1));
    const Buffer out(xmlBufferCreateSize(bytes.size() + 1));
    if (handler == nullptr || in == nullptr || out == nullptr ||
        xmlBufferAdd(in.get(), reinterpret_cast<const xmlChar *>(bytes.data()), static_cast<int>(bytes.size())) != 0) {
        throw std::bad_alloc();
    }
    while (xmlBufferLength(in.get()) > 0) {
        const int before = xmlBufferLength(in.get());
        if (xmlCharEncInFunc(handler, out.get(), in.get()) < 0 || xmlBufferLength(in.get()) == before) {
            fail(name, "not well-formed XML: bytes that are no UTF-16");
        }
    }
    const auto length = static_cast<size_t>(xmlBufferLength(out.get()));
    std::string text(reinterpret_cast<const char *>(xmlBufferContent(out.get())), length);
    return text.starts_with(kByteOrderMark) ? text.substr(kByteOrderMark.size()) : text;
}

// Returns the encoding of the XML declaration in small letters, or "".
std::string declared_encoding(std::string_view text) {
    const std::string_view declaration = text.substr(0, std::min(text.find("?>"), text.size()));
    const size_t at = declaration.find("encoding");
    if (!text.starts_with("<?xml") || at == std::string_view::npos) {
        return "";
    }
    const size_t open = declaration.find_first_of("\"'", at);
    const size_t close = open == std::string_view::npos ? open : declaration.find(declaration[open], open + 1);
    if (close == std::string_view::npos) {
        return "";
    }
    std::string encoding(declaration.substr(open + 1, close - open - 1));
    std::transform(encoding.begin(), encoding.end(), encoding.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    return encoding;
}

// In any other encoding a tag might have other bytes than in ASCII.
void check_encoding(const std::string &encoding, const std::string &name) {
    constexpr std::string_view kKnown[] = {"",      "utf-8",      "utf8",      "us-ascii",
                                           "ascii", "iso-8859-1", "iso8859-1", "latin1"};
    if (std::find(std::begin(kKnown), std::end(kKnown), encoding) == std::end(kKnown)) {
        fail(name, "the encoding \"" + encoding + "\" is not read; NETCONF uses UTF-8");
    }
}

// Returns the offset behind the next `end` at or after `at`, or the end of the document.
size_t find_behind(std::string_view bytes, size_t at, std::string_view end) {
    const size_t found = bytes.find(end, at);
    return found == std::string_view::npos ? bytes.size() : found + end.size();
}

// Returns the offset behind the tag that begins at `at`. Tags are short, so a look at each byte is faster than a search
// for the next of several bytes.
size_t pass_tag(std::string_view bytes, size_t at, const std::string &name) {
    const size_t start = at;
    size_t attributes = 0;
    while (at < bytes.size()) {
        const char byte = bytes[at++];
        if (byte == '>') {
            return at;
        }
        if (byte == '"' || byte == '\'') {
            if (++attributes > kMaxAttributes) {
                fail(bytes, start, name, "a tag with more than " + std::to_string(kMaxAttributes) + " attributes");
            }
            at = find_behind(bytes, at, {&byte, 1});
        }
    }
    return at;
}

// Tells whether a tag may hold more attributes than are let in, each with its two quotes. The parser reads a tag up to
// the next "<" at most.
bool has_long_tags(std::string_view bytes) {
    for (size_t at = bytes.find('<'); at < bytes.size();) {
        const size_t next = std::min(bytes.find('<', at + 1), bytes.size());
        if (next - at > 2 * kMaxAttributes) {
            return true;
        }
        at = next;
    }
    return false;
}

void check_tags(std::string_view bytes, const std::string &name) {
    for (size_t at = 0; (at = bytes.find('<', at)) != std::string_view::npos;) {
        const std::string_view rest = bytes.substr(at);
        if (rest.starts_with("<!--")) {
            at = find_behind(bytes, at, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at = find_behind(bytes, at, "]]>");
        } else if (rest.starts_with("<?")) {
            at = find_behind(bytes, at, "?>");
        } else {
            at = pass_tag(bytes, at, name);
        }
    }
}

void check_text(const std::string &text, const char *zero, const std::string &name) {
    if (const size_t at = text.find('\0'); at != std::string::npos) {
        fail(text, at, name, std::string("not well-formed XML: ") + zero);
    }
    if (has_long_tags(text)) {  // the check of each byte takes four times as long
        check_tags(text, name);
    }
}

}  // namespace

DocumentBytes prepare_bytes(std::string bytes, const std::string &name) {
    if (bytes.empty()) {
        throw framework::UsageError(name, 0, "is empty; an XML document was expected");
    }
    if (bytes.size() > INT_MAX / 2) {
        throw framework::UsageError(name, 0, "is larger than 1 GiB, which the XML parser does not read");
    }
    const xmlCharEncoding encoding = detected(bytes);
    if (encoding == XML_CHAR_ENCODING_UTF16LE || encoding == XML_CHAR_ENCODING_UTF16BE) {
        DocumentBytes document{utf8_of(bytes, encoding, name), true};
        check_text(document.text, "a zero character", name);
        return document;
    }
    if (encoding > XML_CHAR_ENCODING_UTF8) {
        fail(name, "is written in an encoding that is not read; NETCONF uses UTF-8");
    }
    const size_t start =
        bytes.find_first_not_of(kBlanks, bytes.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    if (start != std::string::npos && (bytes[start] == '{' || bytes[start] == '[')) {
        fail(name, "is JSON; an XML document was expected");
    }
    take_off_framing(bytes, name);
    DocumentBytes document{std::move(bytes), false};
    if (document.text.find_first_not_of(kBlanks) == std::string::npos) {
        throw framework::UsageError(name, 0, "is empty; an XML document was expected");
    }
    const bool is_marked = document.text.starts_with(kByteOrderMark);
    check_encoding(declared_encoding(std::string_view(document.text).substr(is_marked ? kByteOrderMark.size() : 0)),
                   name);
    check_text(document.text, "a zero byte", name);
    return document;
}

}  // namespace tvk::netconf
