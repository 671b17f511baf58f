// Reports failures on standard error.
#include "report.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "framework/diagnostics.h"

namespace tvk::tool {

namespace {

bool colour_wanted() {
    const char *no_colour = std::getenv("NO_COLOR");
    return isatty(STDERR_FILENO) != 0 && (no_colour == nullptr || *no_colour == '\0');
}

}  // namespace

void report(const std::string &text) {
    const char *prefix = colour_wanted() ? "\033[1;31mtvk-map:\033[0m" : "tvk-map:";
    std::fprintf(stderr, "%s %s\n", prefix, framework::printable(text).c_str());
}

}  // namespace tvk::tool
