// From what a failed mapping leaves behind to the error that a client is told.
#pragma once

#include "module_loader.h"
#include "rpc_reply.h"
#include "tree_holder.h"
#include "tvk_map_types.h"

namespace tvk::tool {

// status is what the handler of the top container top answered, state what the request's record says by then.
RpcError describe_failure(qerrno status, const tvk_map_request_state &state, const Node &top);

// top is a top container that module does not map.
RpcError describe_unmapped(const MappingModule &module, const Node &top);

}  // namespace tvk::tool
