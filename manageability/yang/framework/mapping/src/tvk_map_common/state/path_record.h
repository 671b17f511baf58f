// The record of paths already added, in path-recording mode.
#ifndef TVK_MAP_STATE_PATH_RECORD_H
#define TVK_MAP_STATE_PATH_RECORD_H

#include "tvk_map_types.h"

// Records path and cuts working_path, a writable copy of it, as the mode says. Returns true when nothing is to be
// added, because the path is covered already or cannot be recorded. Returns false while recording is off.
bool tvk_map_is_path_present(tvk_map_ctx ctx, const char *path, char *working_path);

#endif
