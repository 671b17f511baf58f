// The address families of a neighbor.
#include "conversions.h"
#include "native.h"

namespace bgp {

namespace {

// ---- The list in a read ----

NodeRange family_candidates(tvk_map_ctx, const Node *peer) {
    return children_of(find(peer, "families"));
}

const char *afi_safi_key(const Node *family, const char *, Scratch &) {
    const Node *name = find(family, "name");
    return name != nullptr ? openconfig_value(kFamilies, name->data) : nullptr;
}

}  // namespace

constexpr ListShape kAfiSafiList = {
    .level = 3,
    .parent = &kNeighborList,
    .path = "network-instance/protocols/protocol/bgp/neighbors/neighbor/afi-safis/afi-safi",
    .key = "afi-safi-name",
    .ns = kBgpNs,
    .candidates = family_candidates,
    .key_of = afi_safi_key,
    .key_ns = kBgpTypesNs};

namespace {

// ---- config and state ----

constexpr ValuePair kModes[] = {{"true", "on"}, {"false", "off"}, {nullptr, nullptr}};

constexpr LeafRule kRules[] = {
    {.tag = "afi-safi-name", .value_ns = kBgpTypesNs},
    {.tag = "enabled", .path = "mode", .values = kModes, .default_value = "false"},
};
constexpr LeafContainer kConfig = {kRules, 2, &kAfiSafiList, "config", kBgpNs, in_family};
constexpr LeafContainer kState = {kRules, 2, &kAfiSafiList, "state", kBgpNs, nullptr};

// ---- afi-safi ----

// Without its module an identity would be one of the model that the leaf stands in, which has none.
qerrno handle_afi_safi(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kAfiSafiList);
    }
    qerrno status = tvk_map_validate_data_ns(ctx, find(node, "afi-safi-name"), text(kBgpTypesNs), 0);
    if (status == TVK_OK) {
        status = in_family(ctx, node, 0, target);
    }
    return status == TVK_OK ? settle_entry(ctx, node, 1) : status;
}

constexpr struct tmap_child_entry kAfiSafiChildren[] = {
    {"afi-safi-name", handle_key<kAfiSafiList>, TMAP_CHILD_KEY},
    {"config", Leaves<kConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kState>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kAfiSafiKeys[] = {{"afi-safi-name", kAfiSafiPath, "config"}};
constexpr struct tmap_node_list_info kAfiSafi = {handle_afi_safi, refuse_child, kAfiSafiChildren, kAfiSafiKeys, 3, 1,
                                                 kAfiSafiPath,    nullptr};

qerrno parse_afi_safi(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kAfiSafi, kAfiSafiList);
}

// ---- afi-safis ----

qerrno in_families(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
    const qerrno status = in_peer(ctx, node, child_count, target);
    return status == TVK_OK && !is_read(ctx) ? settle_container(ctx, node, target, "families") : status;
}

constexpr struct tmap_child_entry kAfiSafisChildren[] = {{"afi-safi", parse_afi_safi, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kAfiSafis = {in_families, refuse_child, kAfiSafisChildren, 1, nullptr, nullptr};

}  // namespace

qerrno parse_afi_safis(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kAfiSafis);
}

}  // namespace bgp
