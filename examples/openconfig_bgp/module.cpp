// Maps OpenConfig network instances with their BGP neighbors to native BGP instances with their peers.
#include "tvk_map_module.h"

#include <iterator>

#include "openconfig.h"

namespace {

constexpr struct tvk_map_module_container kContainers[] = {
    {"network-instances", bgp::kNetworkInstanceNs, bgp::parse_network_instances},
};

constexpr const char *kIdentities[] = {
    "network-instances/network-instance/protocols/protocol/identifier",
    "network-instances/network-instance/protocols/protocol/config/identifier",
    "network-instances/network-instance/protocols/protocol/state/identifier",
    "network-instances/network-instance/protocols/protocol/bgp/neighbors/neighbor/afi-safis/afi-safi/afi-safi-name",
    "network-instances/network-instance/protocols/protocol/bgp/neighbors/neighbor/afi-safis/afi-safi/config/"
    "afi-safi-name",
    "network-instances/network-instance/protocols/protocol/bgp/neighbors/neighbor/afi-safis/afi-safi/state/"
    "afi-safi-name",
    nullptr,
};

constexpr struct tvk_map_module_list kNativeLists[] = {
    {"bgp/instances/instance", "instance-name"},
    {"bgp/instances/instance/peers/peer", "address"},
    {"bgp/instances/instance/peers/peer/families/family", "name"},
    {nullptr, nullptr},
};

constexpr struct tvk_map_module kModule = {
    .version = TVK_MAP_MODULE_VERSION,
    .name = "openconfig_bgp",
    .container_count = std::size(kContainers),
    .containers = kContainers,
    .begin_request = nullptr,
    .end_request = nullptr,
    .release_data = mapping::release_memory,
    .identities = kIdentities,
    .native_lists = kNativeLists,
    .flags = 0,
};

}  // namespace

const struct tvk_map_module *tvk_map_module_get(void) {
    return &kModule;
}
