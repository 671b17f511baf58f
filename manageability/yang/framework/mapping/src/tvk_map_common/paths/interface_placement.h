// Where the parts of a bundle belong that is configured on subinterface 0.
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

// While the context's intf_config_flag is 1 and component is "interface-configuration": the child of current of that
// name that is virtual, is called intf_name and is subinterface 0. Finding it takes the flag back. False, and target
// as it was, when there is none.
bool find_interface_target(tvk_map_ctx ctx, Node &current, const char *component, ChildReference &target);

}  // namespace tvk

#endif
