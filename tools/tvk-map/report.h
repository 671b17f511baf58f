// Tells the user of the tool that something cannot be done.
#pragma once

#include <string>

namespace tvk::tool {

// The exit statuses of the program.
enum ExitStatus : int {
    kExitSuccess = 0,
    kExitMappingFailed = 1,  // an rpc-error stands on standard output
    kExitUsage = 2,          // a message stands on standard error
};

// Writes "tvk-map: text" to standard error. On a terminal the first word is in colour, unless NO_COLOR is set.
void report(const std::string &text);

}  // namespace tvk::tool
