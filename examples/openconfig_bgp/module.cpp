// OpenConfig network instances with their BGP neighbors, on native BGP instances with their peers.
#include "tvk_map_module.h"

#include "openconfig.h"

namespace {

constexpr struct tvk_map_module_container kContainers[] = {
    {"network-instances", bgp::kNetworkInstanceNs, bgp::parse_network_instances},
};

constexpr struct tvk_map_module kModule = {
    .version = TVK_MAP_MODULE_VERSION,
    .name = "openconfig_bgp",
    .container_count = 1,
    .containers = kContainers,
    .begin_request = nullptr,
    .end_request = nullptr,
    .release_data = nullptr,
    .identities = nullptr,
    .native_lists = nullptr,
    .flags = 0,
};

}  // namespace

const struct tvk_map_module *tvk_map_module_get(void) {
    return &kModule;
}
