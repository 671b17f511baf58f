// Maps OpenConfig interfaces and LACP to a flat native list of interfaces.
#include "tvk_map_module.h"

#include <iterator>

#include "openconfig.h"

namespace {

constexpr struct tvk_map_module_container kContainers[] = {
    {"interfaces", interfaces::kInterfacesNs, interfaces::parse_interfaces},
    {"lacp", interfaces::kLacpNs, interfaces::parse_lacp},
};

constexpr const char *kIdentities[] = {
    "interfaces/interface/config/type",
    "interfaces/interface/state/type",
    "interfaces/interface/ethernet/config/port-speed",
    "interfaces/interface/ethernet/state/port-speed",
    nullptr,
};

constexpr struct tvk_map_module_list kNativeLists[] = {
    {"interface-configurations/interface-configuration", "interface-name active"},
    {"interface-configurations/interface-configuration/mtus/mtu", "owner"},
    {"interface-configurations/interface-configuration/ipv4-addresses/address", "ip"},
    {"interface-configurations/interface-configuration/ipv6-addresses/address", "ip"},
    {"interface-states/interface-state", "interface-name"},
    {nullptr, nullptr},
};

constexpr struct tvk_map_module kModule = {
    .version = TVK_MAP_MODULE_VERSION,
    .name = "openconfig_interfaces",
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
