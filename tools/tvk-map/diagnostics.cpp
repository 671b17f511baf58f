#include "diagnostics.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace tvk::tool {

namespace {

// A reason may quote a document, which has texts of any length. Cut between characters of UTF-8.
std::string shortened(const std::string &reason) {
    constexpr size_t kMaxReason = 1000;
    if (reason.size() <= kMaxReason) {
        return reason;
    }
    size_t end = kMaxReason;
    while (end > 0 && (static_cast<unsigned char>(reason[end]) & 0xc0) == 0x80) {
        --end;
    }
    return reason.substr(0, end) + "...";
}

std::string located(const std::string &file, long line, const std::string &reason) {
    return (line > 0 ? file + ":" + std::to_string(line) : file) + ": " + shortened(reason);
}

bool colour_wanted() {
    const char *no_colour = std::getenv("NO_COLOR");
    return isatty(STDERR_FILENO) != 0 && (no_colour == nullptr || *no_colour == '\0');
}

}  // namespace

UsageError::UsageError(const std::string &file, long line, const std::string &reason)
    : std::runtime_error(located(file, line, reason)) {}

void report(const std::string &text) {
    const char *prefix = colour_wanted() ? "\033[1;31mtvk-map:\033[0m" : "tvk-map:";
    std::fprintf(stderr, "%s %s\n", prefix, text.c_str());
}

}  // namespace tvk::tool
