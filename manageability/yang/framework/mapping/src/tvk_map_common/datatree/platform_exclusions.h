// Nodes that are left out of every tree.
#ifndef TVK_MAP_DATATREE_PLATFORM_EXCLUSIONS_H
#define TVK_MAP_DATATREE_PLATFORM_EXCLUSIONS_H

#include <cstring>

#include "platform_info.h"

namespace tvk {

inline bool platform_excludes(const char *tag) {
    return tag[0] == 'v' && std::strcmp(tag, "vrrp") == 0 &&
           (platform_get_router_type() == 7 || platform_get_router_type() == 18 || platform_get_router_type() == 8);
}

}  // namespace tvk

#endif
