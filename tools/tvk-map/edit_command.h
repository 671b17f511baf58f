// tvk-map edit: an edit request through a mapping, to the native tree that comes out.
#pragma once

#include <string>

namespace tvk::tool {

struct EditOptions {
    std::string request;  // file, or "-"
    std::string mapping;
    std::string into;  // file with the native data to start from; "" for none
    bool tree = false;
    bool trace = false;
};

// Returns the exit status. Throws UsageError.
int run_edit(const EditOptions &options);

}  // namespace tvk::tool
