// The error for inputs that cannot be used, and texts made fit for people.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tvk::framework {

// Says that arguments, a file, a document or a module cannot be used.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    // The text is "FILE:LINE: reason". A line of 0 is left out, and a long reason is cut.
    UsageError(const std::string &file, long line, const std::string &reason);
};

// Returns text for a terminal or a log: control characters, which a document may hold, are written as \n, \t or \x1b.
std::string printable(const std::string &text);

// Tells whether text holds a control character.
bool has_controls(std::string_view text);

// Returns text in single quotes. People read messages as XML, where brackets and double quotes are escaped.
std::string quoted(const std::string &text);

}  // namespace tvk::framework
