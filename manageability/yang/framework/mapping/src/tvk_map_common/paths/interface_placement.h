// The place for the parts of a bundle that is configured on subinterface 0.
#ifndef TVK_MAP_PATHS_INTERFACE_PLACEMENT_H
#define TVK_MAP_PATHS_INTERFACE_PLACEMENT_H

#include <cstddef>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_types.h"

namespace tvk {

// A child held by its parent and position, since adding a sibling may move it.
class ChildReference {
public:
    ChildReference() = default;
    ChildReference(Node &parent, std::size_t position) : parent_(&parent), position_(position) {}

    explicit operator bool() const { return parent_ != nullptr; }
    Node *get() const { return &parent_->subtrees[position_]; }

private:
    Node *parent_ = nullptr;
    std::size_t position_ = 0;
};

// Finds the child of current that is named "interface-configuration", is virtual, is called intf_name and is
// subinterface 0; a replace must not have removed it. Searches only while the context's intf_config_flag is 1 and
// component is that name. Clears the flag when it finds the child; else returns false and leaves target as it was.
bool find_interface_target(tvk_map_ctx ctx, Node &current, const char *component, ChildReference &target);

}  // namespace tvk

#endif
