// Runs an edit request through mappings.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "framework/data_edit.h"
#include "framework/mapping_run.h"

namespace tvk::framework {

// What an edit says beside its data.
struct EditParameters {
    std::optional<uint32_t> default_operation;  // of top containers without one of their own; kNoOperation for none
    bool is_whole = false;                      // they replace the whole configuration
    bool is_reply = false;                      // they are what a get was answered with, which may hold state
    bool has_inserts = false;                   // places of entries
};

// Edits the native tree as the request tree says. Returns what a client is told, nothing when all went well.
std::vector<RpcError> make_edit(const Mappings &mappings, Framework &framework, RequestTrees &trees,
                                const EditParameters &parameters);

}  // namespace tvk::framework
