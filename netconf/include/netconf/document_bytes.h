// What the bytes of a document must fulfil for the parser to get along with them.
#pragma once

#include <string>

namespace tvk::netconf {

struct DocumentBytes {
    std::string text;         // ASCII where it matters: in UTF-8, US-ASCII or ISO 8859-1
    bool is_recoded = false;  // the text does not have the encoding that it declares
};

/*
 * Takes off the framing of a NETCONF session around a single message, end-of-message or chunked, and makes UTF-8 of
 * UTF-16. Throws UsageError, with name and line, for
 *   - a document without bytes, or with more than the parser counts;
 *   - JSON, and framing around no or several messages;
 *   - an encoding that is none of these;
 *   - a zero byte, which to the parser is the end of the document;
 *   - more than 1,000 attributes in one tag, since the parser compares each with all others.
 */
DocumentBytes prepare_bytes(std::string bytes, const std::string &name);

}  // namespace tvk::netconf
