// How the tool tells its user that something cannot be done.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tvk::tool {

enum ExitStatus : int {
    kExitSuccess = 0,
    kExitMappingFailed = 1,  // an rpc-error stands on standard output
    kExitUsage = 2,          // a message stands on standard error
};

// Bad arguments, files or modules; ends the program with kExitUsage.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    // "FILE:LINE: reason"; a line of 0 is left out.
    UsageError(const std::string &file, long line, const std::string &reason);
};

// A text for a terminal or a log: control characters, of which a document may be full, are written as \n, \t or \x1b.
std::string printable(const std::string &text);
bool has_controls(std::string_view text);

// Writes "tvk-map: text" to standard error, its first word in colour on a terminal unless NO_COLOR is set.
void report(const std::string &text);

}  // namespace tvk::tool
