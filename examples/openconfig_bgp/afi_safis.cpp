// Maps the address families of a neighbor.
#include "conversions.h"
#include "native.h"

namespace bgp {

namespace {

// ---- The list in a read ----

Nodes family_candidates(tvk_map_ctx, const Node *peer) {
    return children_of(find(peer, "families"));
}

const char *afi_safi_key(const Node *family, const char *, Scratch &) {
    const Node *name = find(family, "name");
    return name != nullptr ? openconfig_value(kFamilies, name->data) : nullptr;
}

Text family_name(const Node &family) {
    return child_text(family, "name");
}

const char *family_of(const char *identity, const char *, Scratch &) {
    return native_value(kFamilies, identity);
}

}  // namespace

constexpr ListShape kAfiSafiList = {
    .level = 3,
    .parent = &kNeighborList,
    .path = "network-instance/protocols/protocol/bgp/neighbors/neighbor/afi-safis/afi-safi",
    .key = "afi-safi-name",
    .key_type = nullptr,
    .ns = kNetworkInstanceNs,
    .candidates = family_candidates,
    .key_of = afi_safi_key,
    .text_of = family_name,
    .native_key = family_of,
    .key_ns = kBgpTypesNs};

namespace {

// ---- config and state ----

constexpr ValuePair kModes[] = {{"true", "on"}, {"false", "off"}, {nullptr, nullptr}};

constexpr LeafRule kRules[] = {
    {.tag = "afi-safi-name", .values = kFamilies, .value_ns = kBgpTypesNs},
    {.tag = "enabled", .type = &kBoolean, .path = "mode", .values = kModes},
};
constexpr LeafContainer kConfig = {kRules, &kAfiSafiList, "config", kNetworkInstanceNs, in_family};
constexpr LeafContainer kState = {kRules, &kAfiSafiList, "state", kNetworkInstanceNs, nullptr};

// ---- afi-safi ----

// Checks the key. An identity without its module would be one of the model of the leaf, which has none.
qerrno check_identity(tvk_map_ctx ctx, const Node *identity) {
    if (!equal(identity->data_ns, kBgpTypesNs)) {
        return refuse_identity(ctx, identity, kBgpTypesNs);
    }
    return native_value(kFamilies, identity->data) != nullptr ? TVK_OK : refuse_choice(ctx, identity, kFamilies);
}

qerrno handle_afi_safi(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kAfiSafiList);
    }
    qerrno status = check_identity(ctx, find(node, "afi-safi-name"));
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
constexpr struct tmap_node_list_info kAfiSafi = list_table(handle_afi_safi, kAfiSafiChildren, kAfiSafiKeys);

qerrno parse_afi_safi(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kAfiSafi, kAfiSafiList);
}

// ---- afi-safis ----

qerrno in_families(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
    const qerrno status = in_peer(ctx, node, child_count, target);
    return status == TVK_OK && !is_read(ctx) ? settle_container(ctx, node, target, "families") : status;
}

constexpr struct tmap_child_entry kAfiSafisChildren[] = {{"afi-safi", parse_afi_safi, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kAfiSafis = container_table(in_families, kAfiSafisChildren);

}  // namespace

qerrno parse_afi_safis(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kAfiSafis, kNetworkInstanceNs);
}

}  // namespace bgp
