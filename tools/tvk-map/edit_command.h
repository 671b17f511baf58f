// tvk-map edit: an edit request through mappings, to the native tree that comes out.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "netconf/edit_request.h"
#include "reply.h"

namespace tvk::tool {

struct EditOptions {
    std::string request;  // file, or "-"
    std::vector<std::string> mappings;
    std::string into;      // file with the native data to start from; "" for none
    bool apply = false;    // print the data that results
    bool changes = false;  // print what is different in that data
    bool tree = false;
    bool trace = false;
};

// Returns the exit status. Throws UsageError.
int run_edit(const EditOptions &options);

// The step between the command's files and its output.
Reply answer_edit(const framework::Mappings &mappings, framework::Framework &framework, framework::RequestTrees &trees,
                  const netconf::EditRequest &request, bool tree);

}  // namespace tvk::tool
