// Releasing parts of the request state that more than one operation releases.
#ifndef TVK_MAP_STATE_REQUEST_STATE_H
#define TVK_MAP_STATE_REQUEST_STATE_H

#include "tvk_map_types.h"

namespace tvk {

void release_request_schema(tvk_map_ctx ctx);

}  // namespace tvk

#endif
