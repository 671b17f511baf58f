// OpenConfig interfaces and LACP on a flat native list of interfaces.
#include "tvk_map_module.h"

#include "openconfig.h"

namespace {

constexpr struct tvk_map_module_container kContainers[] = {
    {"interfaces", interfaces::kInterfacesNs, interfaces::parse_interfaces},
    {"lacp", interfaces::kLacpNs, interfaces::parse_lacp},
};

constexpr struct tvk_map_module kModule = {
    .version = TVK_MAP_MODULE_VERSION,
    .name = "openconfig_interfaces",
    .container_count = 2,
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
