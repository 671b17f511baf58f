// Runs a read through mappings.
#pragma once

#include <cstdint>
#include <vector>

#include "framework/filter_tree.h"
#include "framework/mapping_run.h"
#include "tvk_map_session.h"

namespace tvk::framework {

// The parameters of a read beside its filter.
struct GetParameters {
    uint32_t type = TVK_REQUEST_GET;
    uint8_t with_defaults = TVK_WITH_DEFAULTS_NONE;
    bool walk_all = false;  // the mappings are asked for everything, and the filter selects of that: for tests
};

// Runs the filter that the client asks with through the mappings, and leaves in the response tree what it selects. The
// engine marks it by the phase mark. Returns the errors for the client, none when all went well. Throws std::bad_alloc.
std::vector<RpcError> make_get(const Mappings &mappings, Framework &framework, Session &session,
                               const GetParameters &parameters, MarkPhase mark, RequestTrees &trees);

}  // namespace tvk::framework
