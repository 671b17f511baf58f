// How the tool tells its user that something cannot be done.
#pragma once

#include <string>

namespace tvk::tool {

enum ExitStatus : int {
    kExitSuccess = 0,
    kExitMappingFailed = 1,  // an rpc-error stands on standard output
    kExitUsage = 2,          // a message stands on standard error
};

// Writes "tvk-map: text" to standard error, its first word in colour on a terminal unless NO_COLOR is set.
void report(const std::string &text);

}  // namespace tvk::tool
