#include "diagnostics.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace tvk::tool {

namespace {

std::string located(const std::string &file, long line, const std::string &reason) {
    return line > 0 ? file + ":" + std::to_string(line) + ": " + reason : file + ": " + reason;
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
