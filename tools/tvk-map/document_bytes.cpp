#include "document_bytes.h"

#include <libxml/encoding.h>

#include <algorithm>
#include <climits>
#include <string_view>

#include "diagnostics.h"

namespace tvk::tool {

namespace {

constexpr size_t kMaxAttributes = 1000;

[[noreturn]] void fail(std::string_view bytes, size_t at, const std::string &name, const std::string &reason) {
    const std::string_view before = bytes.substr(0, at);
    throw UsageError(name, static_cast<long>(1 + std::count(before.begin(), before.end(), '\n')), reason);
}

bool has_wide_characters(std::string_view bytes) {
    constexpr size_t kTellingBytes = 4;
    return bytes.size() >= kTellingBytes && xmlDetectCharEncoding(reinterpret_cast<const xmlChar *>(bytes.data()),
                                                                  kTellingBytes) > XML_CHAR_ENCODING_UTF8;
}

// Where what begins at at ends: behind end, or with the document.
size_t find_behind(std::string_view bytes, size_t at, std::string_view end) {
    const size_t found = bytes.find(end, at);
    return found == std::string_view::npos ? bytes.size() : found + end.size();
}

// at is a "<"; returns what is behind the tag. Tags are short: a search for the next byte of several would take longer
// than a look at each.
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

// Whether a "<" may begin a tag of more attributes than are let in, each with its two quotes. The parser reads no tag
// further than to the next "<".
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

}  // namespace

void check_bytes(const std::string &bytes, const std::string &name) {
    if (bytes.empty()) {
        throw UsageError(name, 0, "is empty; an XML document was expected");
    }
    if (bytes.size() > INT_MAX) {
        throw UsageError(name, 0, "is larger than 2 GiB, which the XML parser does not read");
    }
    if (has_wide_characters(bytes)) {
        return;
    }
    if (const size_t at = bytes.find('\0'); at != std::string::npos) {
        fail(bytes, at, name, "not well-formed XML: a zero byte");
    }
    if (has_long_tags(bytes)) {  // to look at each byte of the tags takes four times as long
        check_tags(bytes, name);
    }
}

}  // namespace tvk::tool
