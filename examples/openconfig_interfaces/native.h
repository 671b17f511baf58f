// The native side of an edit: the list entry that values go to.
//
// That entry is the request's pending entry: paths that begin with its list's path are added below it. Paths given
// here lead on from there, or, while there is no such entry, from the root of the native tree.
#ifndef OPENCONFIG_INTERFACES_NATIVE_H
#define OPENCONFIG_INTERFACES_NATIVE_H

#include "leaf_rules.h"

namespace interfaces {

using namespace mapping;

inline constexpr char kNativeNs[] = "urn:example:native-interfaces";
inline constexpr char kNativeInterfaces[] = "interface-configurations";
inline constexpr char kNativeInterface[] = "interface-configurations/interface-configuration";
inline constexpr char kNativeStates[] = "interface-states";

// Makes the entry key_name = key_value of the list at list_path, below root, the current one; adds it if need be.
qerrno enter_list(tvk_map_ctx ctx, Node *root, const char *list_path, const char *key_name, const char *key_value);

// The same for the native interface of that name. Entering the one that is current already costs nothing.
qerrno enter_interface(tvk_map_ctx ctx, Node *target, const char *name);

inline constexpr int32_t kInterfaceKeyCount = 2;

}  // namespace interfaces

#endif
