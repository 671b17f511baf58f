// The command tvk-map get reads native data through mappings, and prints what the filter selects.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/get_run.h"
#include "netconf/get_request.h"
#include "reply.h"

namespace tvk::tool {

struct GetOptions {
    std::optional<std::string> filter;  // a file, or "-"; without it everything is selected
    std::vector<std::string> mappings;
    std::string native;                        // a file with the native data, or "-"
    std::string phase = "mark";                // or "container"
    std::optional<std::string> with_defaults;  // the mode, in place of the request's
    bool config = false;                       // read as <get-config> does, whatever the request says
    bool tree = false;
    bool trace = false;
};

// Runs the command. Returns the exit status. Throws UsageError.
int run_get(const GetOptions &options);

// Answers a request whose filter is the asked tree of trees, without files or output. tree asks for a listing.
Reply answer_get(const framework::Mappings &mappings, framework::Framework &framework, framework::Session &session,
                 framework::RequestTrees &trees, const netconf::GetRequest &request, framework::MarkPhase mark,
                 bool tree);

}  // namespace tvk::tool
