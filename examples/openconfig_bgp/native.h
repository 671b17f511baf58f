// Enters the native entries that the values of an edit go to.
//
// The current entry is the request's pending list node, without a trim path: paths lead on from the entry.
#ifndef OPENCONFIG_BGP_NATIVE_H
#define OPENCONFIG_BGP_NATIVE_H

#include "openconfig.h"

namespace bgp {

inline constexpr char kNativeNs[] = "urn:example:native-bgp";

// These container handlers make the native entry that the walk is in the current one, and add it when it is missing. In
// a read they let the walk go on.
qerrno in_instance(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target);
qerrno in_peer(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target);
qerrno in_family(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target);

// Gives the current instance its process. An instance has one at most, so another name is refused.
qerrno set_process(tvk_map_ctx ctx, const Node *name);

// Tells whether the device takes a name, and an xpath can hold it.
bool is_plain_name(const char *name);
inline constexpr ValueType kPlainName = {"name of 1 to 255 characters without brackets", is_plain_name};

}  // namespace bgp

#endif
