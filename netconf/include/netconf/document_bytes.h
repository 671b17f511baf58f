// Prepares the bytes of a document for the parser, and refuses those that it would misread.
#pragma once

#include <string>

namespace tvk::netconf {

// The bytes that the parser gets.
struct DocumentBytes {
    std::string text;         // in UTF-8, US-ASCII or ISO 8859-1, so that tags are ASCII
    bool is_recoded = false;  // the text declares another encoding than it has
};

/*
 * Takes off the framing of a NETCONF session around a single message, end-of-message or chunked, and makes UTF-8 of
 * UTF-16. Throws UsageError, with name and line, for
 *   - a document without bytes, or with more than 1 GiB;
 *   - JSON, and framing around no message or several;
 *   - any other encoding;
 *   - a zero byte, which the parser takes for the end of the document;
 *   - more than 1,000 attributes in one tag, as the parser compares each with all others.
 */
DocumentBytes prepare_bytes(std::string bytes, const std::string &name);

}  // namespace tvk::netconf
