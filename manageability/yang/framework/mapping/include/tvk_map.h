/* All of the library's exported surface. Start with tvk_map_types.h for the conventions. */
#ifndef TVK_MAP_H
#define TVK_MAP_H

#include "tvk_map_datatree.h"
#include "tvk_map_filter.h"
#include "tvk_map_lists.h"
#include "tvk_map_print.h"
#include "tvk_map_session.h"
#include "tvk_map_state.h"
#include "tvk_map_types.h"
#include "tvk_map_util.h"
#include "tvk_map_walk.h"
#include "tvk_map_xpath.h"

#endif
