// Maps the neighbors of a BGP protocol.
#include <cstring>

#include "conversions.h"
#include "native.h"
#include "tvk_string.h"

namespace bgp {

namespace {

// ---- The list in a read ----

Nodes neighbor_candidates(tvk_map_ctx, const Node *instance) {
    return children_of(find(instance, "peers"));
}

const char *neighbor_key(const Node *peer, const char *, Scratch &scratch) {
    const Node *address = find(peer, "address");
    return address != nullptr && address->data != nullptr ? address_of_number(address->data, scratch) : nullptr;
}

Text peer_address(const Node &peer) {
    return child_text(peer, "address");
}

const char *peer_of(const char *address, const char *, Scratch &scratch) {
    return number_of_address(address, scratch);
}

}  // namespace

// The model has IPv6 addresses as well; the device has none.
constexpr ListShape kNeighborList = {.level = 2,
                                     .parent = &kProtocolList,
                                     .path = "network-instance/protocols/protocol/bgp/neighbors/neighbor",
                                     .key = "neighbor-address",
                                     .key_type = &kIpv4Address,
                                     .ns = kNetworkInstanceNs,
                                     .candidates = neighbor_candidates,
                                     .key_of = neighbor_key,
                                     .text_of = peer_address,
                                     .native_key = peer_of};

namespace {

// ---- config and state ----

constexpr ValuePair kStates[] = {{"true", "up"}, {"false", "held"}, {nullptr, nullptr}};
constexpr ValuePair kSessions[] = {{"IDLE", "idle"},        {"CONNECT", "trying"},     {"ACTIVE", "listening"},
                                   {"OPENSENT", "opening"}, {"OPENCONFIRM", "opened"}, {"ESTABLISHED", "running"},
                                   {nullptr, nullptr}};

// Tells whether the device takes a text, and an xpath can hold it.
bool is_label(const char *value) {
    const std::size_t length = std::strlen(value);
    return length > 0 && length < TVK_MAP_XPATH_MAX_VALUE;
}
constexpr ValueType kLabel = {"text of 1 to 299 bytes", is_label};

constexpr LeafRule kRules[] = {
    {.tag = "neighbor-address", .type = &kIpv4Address},
    {.tag = "peer-as",
     .type = &kUint32,
     .path = "remote-as",
     .to_native = as_number,
     .native_form = "AS number: 0 is reserved"},
    {.tag = "description", .type = &kLabel, .path = "label"},
    {.tag = "enabled", .type = &kBoolean, .path = "state", .values = kStates, .default_value = "true"},
    {.tag = "link-bandwidth",
     .type = &kUint64,
     .path = "bandwidth",
     .to_native = kilobits_of_bits,
     .from_native = bits_of_kilobits,
     .native_form = "whole number of kilobits per second up to 4294967000",
     .ns = kBandwidthNs},
    {.tag = "session-state", .path = "session", .values = kSessions, .in_state_alone = true},
};
constexpr LeafContainer kConfig = {kRules, &kNeighborList, "config", kNetworkInstanceNs, in_peer};
constexpr LeafContainer kState = {kRules, &kNeighborList, "state", kNetworkInstanceNs, nullptr};

// ---- transport ----

// Sets the source address. When the device has that address already, it stays in the prefix that it has there.
qerrno edit_local_address(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *value) {
    const Node *source = find(current_entry(ctx), "source");
    Scratch address;
    const bool is_there = value != nullptr && source != nullptr && source->data != nullptr &&
                          equal(address_of_prefix(source->data, address), leaf->data);
    Scratch same;
    if (is_there && tvk_strcpy_s(__func__, same, sizeof same, source->data) == 0) {
        value = same;
    }
    return add_value(ctx, leaf, target, "source", value);
}

constexpr LeafRule kTransportRules[] = {{.tag = "local-address",
                                         .type = &kIpv4Address,
                                         .path = "source",
                                         .to_native = prefix_of_address,
                                         .from_native = address_of_prefix,
                                         .edit = edit_local_address}};
constexpr LeafContainer kTransportConfig = {kTransportRules, &kNeighborList, "transport/config", kNetworkInstanceNs,
                                            in_peer};
constexpr LeafContainer kTransportState = {kTransportRules, &kNeighborList, "transport/state", kNetworkInstanceNs,
                                           nullptr};

constexpr struct tmap_child_entry kTransportChildren[] = {
    {"config", Leaves<kTransportConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kTransportState>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_node_cont_info kTransport = container_table(in_peer, kTransportChildren);

qerrno parse_transport(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kTransport, kNetworkInstanceNs);
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
constexpr struct tmap_node_list_info kNeighbor = list_table(handle_neighbor, kNeighborChildren, kNeighborKeys);

qerrno parse_neighbor(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kNeighbor, kNeighborList);
}

// ---- bgp and neighbors, which are one native container ----

qerrno in_peers(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
    const qerrno status = in_instance(ctx, node, child_count, target);
    return status == TVK_OK && !is_read(ctx) ? settle_container(ctx, node, target, "peers") : status;
}

constexpr struct tmap_child_entry kNeighborsChildren[] = {{"neighbor", parse_neighbor, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kNeighbors = container_table(in_peers, kNeighborsChildren);

qerrno parse_neighbors(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kNeighbors, kNetworkInstanceNs);
}

constexpr struct tmap_child_entry kBgpChildren[] = {{"neighbors", parse_neighbors, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kBgp = container_table(in_peers, kBgpChildren);

}  // namespace

qerrno parse_bgp(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kBgp, kNetworkInstanceNs);
}

}  // namespace bgp
