// Runs an edit request through mappings.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "framework/data_edit.h"
#include "framework/mapping_run.h"

namespace tvk::framework {

// The parameters of an edit beside its data.
struct EditParameters {
    std::optional<uint32_t> default_operation;  // for nodes without an operation; kNoOperation for none
    bool is_whole = false;                      // the data replaces the whole configuration
    bool is_reply = false;                      // the data is the answer to a get, which may hold state
    bool has_inserts = false;                   // an entry has a place (yang:insert)
};

// Runs the request tree through the mappings, which edit the native tree. Returns the errors for the client, none when
// all went well. Throws std::bad_alloc.
std::vector<RpcError> make_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees,
                                const EditParameters &parameters);

}  // namespace tvk::framework
