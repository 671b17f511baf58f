// Names the OpenConfig side: namespaces, the lists with their paths in the node hierarchy, and the parts of the
// mapping.
#ifndef OPENCONFIG_BGP_OPENCONFIG_H
#define OPENCONFIG_BGP_OPENCONFIG_H

#include "tables.h"

namespace bgp {

using namespace mapping;

// bgp and all below it are in this namespace, too: the network-instance model uses their groupings.
inline constexpr char kNetworkInstanceNs[] = "http://openconfig.net/yang/network-instance";
inline constexpr char kBandwidthNs[] = "urn:example:bgp-bandwidth";  // augments a neighbor

// The modules of identities.
inline constexpr char kPolicyTypesNs[] = "http://openconfig.net/yang/policy-types";
inline constexpr char kBgpTypesNs[] = "http://openconfig.net/yang/bgp-types";

inline constexpr char kInstancePath[] = "/network-instances/network-instance";
inline constexpr char kProtocolPath[] = "/network-instances/network-instance/protocols/protocol";
inline constexpr char kNeighborPath[] = "/network-instances/network-instance/protocols/protocol/bgp/neighbors/neighbor";
inline constexpr char kAfiSafiPath[] =
    "/network-instances/network-instance/protocols/protocol/bgp/neighbors/neighbor/afi-safis/afi-safi";

// The lists, from the outermost to the innermost.
extern const ListShape kInstanceList;
extern const ListShape kProtocolList;
extern const ListShape kNeighborList;
extern const ListShape kAfiSafiList;

// These parse the containers of those names.
qerrno parse_network_instances(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_bgp(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_afi_safis(tvk_map_ctx ctx, const Node *node, Node *target);

}  // namespace bgp

#endif
