// What the bytes of a document must fulfil for the parser to get along with them.
#pragma once

#include <string>

namespace tvk::tool {

/*
 * Throws UsageError, with name and line, for
 *   - a document without bytes, or with more than the parser counts;
 *   - a zero byte, which to the parser is the end of the document;
 *   - more than 1,000 attributes in one tag, since the parser compares each with all others.
 * The last two are looked for in encodings that are ASCII where it matters, not in UTF-16 and the like.
 */
void check_bytes(const std::string &bytes, const std::string &name);

}  // namespace tvk::tool
