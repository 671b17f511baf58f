// tvk-map print: the listing of any file of data.
#pragma once

#include <string>

namespace tvk::tool {

struct PrintOptions {
    std::string file;  // or "-"
    bool namespaces = false;
};

// Returns the exit status. Throws UsageError.
int run_print(const PrintOptions &options);

}  // namespace tvk::tool
