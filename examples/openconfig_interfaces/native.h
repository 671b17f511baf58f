// The native side of an edit: the list entry that values go to.
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

// What an entry of the one native list is.
enum class Kind { kEither, kInterface, kSubinterface };

// Makes the native interface of that name the current entry; adds it if need be. Entering the one that is current
// already costs nothing. One that is there and not of that kind is refused, with node as what asks for it.
qerrno enter_interface(tvk_map_ctx ctx, const Node *node, Node *target, const char *name, Kind kind);

// Whether a native entry is a subinterface.
bool is_virtual(const Node *entry);

inline constexpr int32_t kInterfaceKeyCount = 2;

}  // namespace interfaces

#endif
