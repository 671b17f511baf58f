// The command tvk-map edit runs an edit request through mappings, and prints the native tree that comes out.
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
    std::string into;      // a file with the native data to start from; "" for none
    bool apply = false;    // print the data that results
    bool changes = false;  // print what is different in that data
    bool tree = false;
    bool trace = false;
};

// Runs the command. Returns the exit status. Throws UsageError.
int run_edit(const EditOptions &options);

// Answers a request whose data is the request tree of trees, without files or output. tree asks for a listing.
Reply answer_edit(const framework::Mappings &mappings, framework::Framework &framework, framework::RequestTrees &trees,
                  const netconf::EditRequest &request, bool tree);

}  // namespace tvk::tool
