// Namespaces that the library itself adds nodes in.
#ifndef TVK_MAP_INTERNAL_OPENCONFIG_H
#define TVK_MAP_INTERNAL_OPENCONFIG_H

namespace tvk {

inline constexpr char kOpenconfigBgpNs[] = "http://openconfig.net/yang/bgp";

}  // namespace tvk

#endif
