// Finding the interface configuration that takes the parts of a bundle.
#include "tvk_map_common/paths/interface_placement.h"

#include <algorithm>
#include <cstring>

#include "tvk_map_datatree.h"

namespace tvk {

namespace {

constexpr char kConfiguration[] = "interface-configuration";
constexpr char kName[] = "interface-name";
constexpr char kVirtual[] = "interface-virtual";

// Returns whether "0" follows the first "." of an interface name, up to white space. Something must stand before the
// dot.
bool is_subinterface_0(const char *interface_name) {
    constexpr char kWhiteSpace[] = " \t\n\v\f\r";
    const char *dot = std::strchr(interface_name, '.');
    if (dot == nullptr || dot == interface_name) {
        return false;
    }
    const char *number = dot + 1 + std::strspn(dot + 1, kWhiteSpace);
    return std::strcspn(number, kWhiteSpace) == 1 && *number == '0';
}

bool is_target(tvk_map_ctx ctx, const Node &configuration) {
    const auto leaves = children(configuration);
    const bool is_virtual =
        std::any_of(leaves.begin(), leaves.end(), [](const Node &leaf) { return same_text(leaf.tag, kVirtual); });
    // The value counts as it stands, whatever its presence bit says.
    return is_virtual && std::any_of(leaves.begin(), leaves.end(), [ctx](const Node &leaf) {
               return same_text(leaf.tag, kName) && same_text(leaf.data, ctx->intf_name) &&
                      is_subinterface_0(leaf.data);
           });
}

}  // namespace

bool find_interface_target(tvk_map_ctx ctx, Node &current, const char *component, ChildReference &target) {
    if (ctx->intf_config_flag != 1 || std::strcmp(component, kConfiguration) != 0) {
        return false;
    }
    const auto siblings = children(current);
    for (std::size_t i = 0; i < siblings.size(); ++i) {
        const Node &child = siblings[i];
        if (same_text(child.tag, kConfiguration) && tvk_map_validate_replace_subtree(ctx, &child, 0, 0) == 0 &&
            is_target(ctx, child)) {
            target = ChildReference{current, i};
            ctx->intf_config_flag = 0;
            return true;
        }
    }
    return false;
}

}  // namespace tvk
