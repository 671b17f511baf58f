// The neighbors of a BGP protocol.
#include "conversions.h"
#include "native.h"

namespace bgp {

namespace {

// ---- The list in a read ----

NodeRange neighbor_candidates(tvk_map_ctx, const Node *instance) {
    return children_of(find(instance, "peers"));
}

const char *neighbor_key(const Node *peer, const char *, Scratch &scratch) {
    const Node *address = find(peer, "address");
    return address != nullptr && address->data != nullptr ? address_of_number(address->data, scratch) : nullptr;
}

}  // namespace

constexpr ListShape kNeighborList = {2,
                                     &kProtocolList,
                                     "network-instance/protocols/protocol/bgp/neighbors/neighbor",
                                     "neighbor-address",
                                     kBgpNs,
                                     neighbor_candidates,
                                     neighbor_key};

namespace {

// ---- config and state ----

constexpr ValuePair kStates[] = {{"true", "up"}, {"false", "held"}, {nullptr, nullptr}};
constexpr ValuePair kSessions[] = {{"IDLE", "idle"},        {"CONNECT", "trying"},     {"ACTIVE", "listening"},
                                   {"OPENSENT", "opening"}, {"OPENCONFIRM", "opened"}, {"ESTABLISHED", "running"},
                                   {nullptr, nullptr}};

constexpr LeafRule kRules[] = {
    {.tag = "neighbor-address"},
    {.tag = "peer-as", .path = "remote-as", .to_native = as_number},
    {.tag = "description", .path = "label"},
    {.tag = "enabled", .path = "state", .values = kStates, .default_value = "true"},
    {.tag = "link-bandwidth",
     .path = "bandwidth",
     .to_native = kilobits_of_bits,
     .from_native = bits_of_kilobits,
     .ns = kBandwidthNs},
    // Only in state.
    {.tag = "session-state", .path = "session", .values = kSessions},
};
constexpr LeafContainer kConfig = {kRules, 5, &kNeighborList, "config", kBgpNs, in_peer};
constexpr LeafContainer kState = {kRules, 6, &kNeighborList, "state", kBgpNs, nullptr};

// ---- transport ----

constexpr LeafRule kTransportRules[] = {
    {.tag = "local-address", .path = "source", .to_native = prefix_of_address, .from_native = address_of_prefix}};
constexpr LeafContainer kTransportConfig = {kTransportRules, 1, &kNeighborList, "transport/config", kBgpNs, in_peer};
constexpr LeafContainer kTransportState = {kTransportRules, 1, &kNeighborList, "transport/state", kBgpNs, nullptr};

constexpr struct tmap_child_entry kTransportChildren[] = {
    {"config", Leaves<kTransportConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kTransportState>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_node_cont_info kTransport = {in_peer, refuse_child, kTransportChildren, 2, nullptr, nullptr};

qerrno parse_transport(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kTransport);
}

// ---- neighbor ----

qerrno handle_neighbor(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kNeighborList);
    }
    const qerrno status = in_peer(ctx, node, 0, target);
    return status == TVK_OK ? settle_entry(ctx, node, 1) : status;
}

constexpr struct tmap_child_entry kNeighborChildren[] = {
    {"neighbor-address", handle_key<kNeighborList>, TMAP_CHILD_KEY},
    {"config", Leaves<kConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kState>::parse, TMAP_CHILD_PROPAGATE},
    {"transport", parse_transport, TMAP_CHILD_PROPAGATE},
    {"afi-safis", parse_afi_safis, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kNeighborKeys[] = {{"neighbor-address", kNeighborPath, "config"}};
constexpr struct tmap_node_list_info kNeighbor = {handle_neighbor, refuse_child, kNeighborChildren, kNeighborKeys, 5, 1,
                                                  kNeighborPath,   nullptr};

qerrno parse_neighbor(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kNeighbor, kNeighborList);
}

// ---- bgp and neighbors, which are one native container ----

qerrno in_peers(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
    const qerrno status = in_instance(ctx, node, child_count, target);
    return status == TVK_OK && !is_read(ctx) ? settle_container(ctx, node, target, "peers") : status;
}

constexpr struct tmap_child_entry kNeighborsChildren[] = {{"neighbor", parse_neighbor, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kNeighbors = {in_peers, refuse_child, kNeighborsChildren, 1, nullptr, nullptr};

qerrno parse_neighbors(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kNeighbors);
}

constexpr struct tmap_child_entry kBgpChildren[] = {{"neighbors", parse_neighbors, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kBgp = {in_peers, refuse_child, kBgpChildren, 1, nullptr, nullptr};

}  // namespace

qerrno parse_bgp(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kBgp);
}

}  // namespace bgp
