// tvk-map get: a read through a mapping, from native data to what the filter selects.
#pragma once

#include <optional>
#include <string>

namespace tvk::tool {

struct GetOptions {
    std::optional<std::string> filter;  // file, or "-"; none: everything
    std::string mapping;
    std::string native;                        // file with the native data, or "-"
    std::string phase = "mark";                // or "container"
    std::optional<std::string> with_defaults;  // mode; none: what the request says
    bool tree = false;
    bool trace = false;
};

// Returns the exit status. Throws UsageError.
int run_get(const GetOptions &options);

}  // namespace tvk::tool
