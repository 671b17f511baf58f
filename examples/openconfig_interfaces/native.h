// Enters the native list entry that the values of an edit go to.
//
// Paths lead on from that entry, or, while there is none, from the root of the native tree.
#ifndef OPENCONFIG_INTERFACES_NATIVE_H
#define OPENCONFIG_INTERFACES_NATIVE_H

#include "leaf_rules.h"

namespace interfaces {

using namespace mapping;

inline constexpr char kNativeNs[] = "urn:example:native-interfaces";
inline constexpr char kNativeInterfaces[] = "interface-configurations";
inline constexpr char kNativeStates[] = "interface-states";

// The kinds of entries in the one native list.
enum class Kind { kEither, kInterface, kSubinterface };

// Makes the native interface of that name the current entry, and adds it when it is missing. It costs nothing to enter
// the current one again. Refuses node, the node that asks for it, when the interface is there and of another kind.
qerrno enter_interface(tvk_map_ctx ctx, const Node *node, Node *target, const char *name, Kind kind);

// Tells whether a native entry is a subinterface.
bool is_virtual(const Node *entry);

// The number of keys of a native interface: its name and whether it is active.
inline constexpr int32_t kInterfaceKeyCount = 2;

}  // namespace interfaces

#endif
