// The namespaces in which the library itself adds nodes.
#ifndef TVK_MAP_INTERNAL_OPENCONFIG_H
#define TVK_MAP_INTERNAL_OPENCONFIG_H

namespace tvk {

inline constexpr char kOpenconfigBgpNs[] = "http://openconfig.net/yang/bgp";

}  // namespace tvk

#endif
