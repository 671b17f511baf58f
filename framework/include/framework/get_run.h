// Runs a read through mappings.
#pragma once

#include <cstdint>
#include <vector>

#include "framework/filter_tree.h"
#include "framework/mapping_run.h"
#include "tvk_map_session.h"

namespace tvk::framework {

// What a read says beside its filter.
struct GetParameters {
    uint32_t type = TVK_REQUEST_GET;
    uint8_t with_defaults = TVK_WITH_DEFAULTS_NONE;
    bool walk_all = false;  // ask mappings for everything, whatever the filter selects: the reply is the same
};

// Makes the response tree what the filter that is asked selects. Returns what a client is told, nothing when all went
// well.
std::vector<RpcError> make_get(const Mappings &mappings, Framework &framework, Session &session,
                               const GetParameters &parameters, MarkPhase mark, RequestTrees &trees);

}  // namespace tvk::framework
