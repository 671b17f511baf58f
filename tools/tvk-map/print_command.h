// The command tvk-map print lists any file of data.
#pragma once

#include <string>

namespace tvk::tool {

struct PrintOptions {
    std::string file;  // or "-"
    bool namespaces = false;
};

// Runs the command. Returns the exit status. Throws UsageError.
int run_print(const PrintOptions &options);

}  // namespace tvk::tool
