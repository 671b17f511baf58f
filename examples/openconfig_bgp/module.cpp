// OpenConfig network instances with their BGP neighbors, on native BGP instances with their peers.
#include "tvk_map_module.h"

#include "openconfig.h"

namespace {

constexpr struct tvk_map_module_container kContainers[] = {
    {"network-instances", bgp::kNetworkInstanceNs, bgp::parse_network_instances},
};

constexpr struct tvk_map_module kModule = {TVK_MAP_MODULE_VERSION, "openconfig_bgp", 1, kContainers};

}  // namespace

const struct tvk_map_module *tvk_map_module_get(void) {
    return &kModule;
}
