// The OpenConfig side: namespaces, the paths of its lists in the node hierarchy, and the parts of the mapping.
#ifndef OPENCONFIG_INTERFACES_OPENCONFIG_H
#define OPENCONFIG_INTERFACES_OPENCONFIG_H

#include "native.h"
#include "tables.h"

namespace interfaces {

inline constexpr char kInterfacesNs[] = "http://openconfig.net/yang/interfaces";
inline constexpr char kIpNs[] = "http://openconfig.net/yang/interfaces/ip";
inline constexpr char kEthernetNs[] = "http://openconfig.net/yang/interfaces/ethernet";
inline constexpr char kAggregateNs[] = "http://openconfig.net/yang/interfaces/aggregate";
inline constexpr char kLacpNs[] = "http://openconfig.net/yang/lacp";

inline constexpr char kInterfacePath[] = "/interfaces/interface";
inline constexpr char kSubinterfacePath[] = "/interfaces/interface/subinterfaces/subinterface";
inline constexpr char kLacpInterfacePath[] = "/lacp/interfaces/interface";

// The list interface, which the others stand in.
extern const ListShape kInterfaceList;

// Top containers.
qerrno parse_interfaces(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_lacp(tvk_map_ctx ctx, const Node *node, Node *target);

// Containers of an interface.
qerrno parse_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_ethernet(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_aggregation(tvk_map_ctx ctx, const Node *node, Node *target);

// Container handler: makes the native entry of the interface that the walk is in the current one.
qerrno in_interface(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target);

// The interfaces of the native tree.
Nodes native_interfaces(const Node *root);
NodeRange<Node> native_interfaces(Node *root);

// The name of a native entry, of its configuration or its state.
Text interface_name(const Node &entry);

// The names that the device takes.
inline constexpr ValueType kInterfaceName = {"interface name of 1 to 255 characters", is_text_of<1, 255>};

// The leaf enabled. The native side knows only what is shut down; an interface that is enabled has no such leaf.
qerrno edit_enabled(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *value);
const char *read_enabled(tvk_map_ctx ctx, const Node *native);

// Marks all native subinterfaces of the interface that stand in target with the operation of node, a delete.
qerrno remove_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target, const char *interface_name);

// Where the subinterfaces are that the edit has met counts no longer.
void forget_interfaces(tvk_map_ctx ctx);

}  // namespace interfaces

#endif
