// Inputs that cannot be used, and texts of them for people.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tvk::framework {

// Bad arguments, files or modules.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    // "FILE:LINE: reason"; a line of 0 is left out.
    UsageError(const std::string &file, long line, const std::string &reason);
};

// A text for a terminal or a log: control characters, of which a document may be full, are written as \n, \t or \x1b.
std::string printable(const std::string &text);
bool has_controls(std::string_view text);

// Returns text in single quotes: a message is read in its XML, where brackets and double quotes are escaped.
std::string quoted(const std::string &text);

}  // namespace tvk::framework
