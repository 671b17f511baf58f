// Names the OpenConfig side: namespaces, the paths of its lists in the node hierarchy, and the parts of the mapping.
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

// The list of interfaces, which the other lists stand in.
extern const ListShape kInterfaceList;

// These parse the top containers.
qerrno parse_interfaces(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_lacp(tvk_map_ctx ctx, const Node *node, Node *target);

// These parse the containers of an interface.
qerrno parse_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_ethernet(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_aggregation(tvk_map_ctx ctx, const Node *node, Node *target);

// This container handler makes the native entry of the interface that the walk is in the current one.
qerrno in_interface(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target);

// Returns the interfaces of the native tree below root, which may be null.
Nodes native_interfaces(const Node *root);
NodeRange<Node> native_interfaces(Node *root);

// Returns the name of a native entry of the configuration or the state.
Text interface_name(const Node &entry);

// The names that the device takes.
inline constexpr ValueType kInterfaceName = {"interface name of 1 to 255 characters", is_text_of<1, 255>};

// These edit and read the leaf enabled. The native side has the leaf shutdown, which an enabled interface has not.
qerrno edit_enabled(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *value);
const char *read_enabled(tvk_map_ctx ctx, const Node *native);

// Marks all native subinterfaces of the interface in target with the operation of node, a delete.
qerrno remove_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target, const char *interface_name);

// Forgets the places of the native interfaces that the edit has met.
void forget_interfaces(tvk_map_ctx ctx);

}  // namespace interfaces

#endif
