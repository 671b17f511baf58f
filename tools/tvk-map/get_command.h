// tvk-map get: a read through a mapping, from native data to what the filter selects.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/get_run.h"
#include "netconf/get_request.h"
#include "reply.h"

namespace tvk::tool {

struct GetOptions {
    std::optional<std::string> filter;  // file, or "-"; none: everything
    std::vector<std::string> mappings;
    std::string native;                        // file with the native data, or "-"
    std::string phase = "mark";                // or "container"
    std::optional<std::string> with_defaults;  // mode; none: what the request says
    bool config = false;                       // a <get-config>, whatever the request says
    bool tree = false;
    bool trace = false;
};

// Returns the exit status. Throws UsageError.
int run_get(const GetOptions &options);

// The step between the command's files and its output.
Reply answer_get(const framework::Mappings &mappings, framework::Framework &framework, framework::Session &session,
                 framework::RequestTrees &trees, const netconf::GetRequest &request, framework::MarkPhase mark,
                 bool tree);

}  // namespace tvk::tool
