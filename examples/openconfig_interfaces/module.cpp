// OpenConfig interfaces and LACP on a flat native list of interfaces.
#include "tvk_map_module.h"

#include "openconfig.h"

namespace {

constexpr struct tvk_map_module_container kContainers[] = {
    {"interfaces", interfaces::kInterfacesNs, interfaces::parse_interfaces},
    {"lacp", interfaces::kLacpNs, interfaces::parse_lacp},
};

constexpr struct tvk_map_module kModule = {TVK_MAP_MODULE_VERSION, "openconfig_interfaces", 2, kContainers};

}  // namespace

const struct tvk_map_module *tvk_map_module_get(void) {
    return &kModule;
}
