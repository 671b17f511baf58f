// Maps /interfaces/interface/ethernet and /interfaces/interface/aggregation.
#include "openconfig.h"

namespace interfaces {

namespace {

// ---- ethernet ----

constexpr ValuePair kDuplexModes[] = {{"FULL", "full"}, {"HALF", "half"}, {nullptr, nullptr}};
constexpr ValuePair kSpeeds[] = {{"SPEED_10MB", "10"},      {"SPEED_100MB", "100"},    {"SPEED_1GB", "1000"},
                                 {"SPEED_2500MB", "2500"},  {"SPEED_5GB", "5000"},     {"SPEED_10GB", "10000"},
                                 {"SPEED_25GB", "25000"},   {"SPEED_40GB", "40000"},   {"SPEED_50GB", "50000"},
                                 {"SPEED_100GB", "100000"}, {"SPEED_200GB", "200000"}, {"SPEED_400GB", "400000"},
                                 {"SPEED_600GB", "600000"}, {"SPEED_800GB", "800000"}, {"SPEED_1600GB", "1600000"},
                                 {"SPEED_UNKNOWN", "0"},    {nullptr, nullptr}};

constexpr LeafRule kEthernetRules[] = {
    {.tag = "mac-address", .type = &kMacAddress, .path = "ethernet/mac-address"},
    {.tag = "auto-negotiate", .type = &kBoolean, .path = "ethernet/auto-negotiation", .default_value = "true"},
    {.tag = "duplex-mode", .path = "ethernet/duplex", .values = kDuplexModes},
    {.tag = "port-speed", .path = "ethernet/speed", .values = kSpeeds, .value_ns = kEthernetNs},
    // The leaf is of the aggregation model: the port becomes a member of that bundle.
    {.tag = "aggregate-id", .type = &kInterfaceName, .path = "bundle/member-of", .ns = kAggregateNs},
};
constexpr LeafContainer kEthernetConfig = {kEthernetRules, &kInterfaceList, "ethernet/config", kEthernetNs,
                                           in_interface};
constexpr LeafContainer kEthernetState = {kEthernetRules, &kInterfaceList, "ethernet/state", kEthernetNs, nullptr};

constexpr struct tmap_child_entry kEthernetChildren[] = {
    {"config", Leaves<kEthernetConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kEthernetState>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_node_cont_info kEthernet = container_table(in_interface, kEthernetChildren);

// ---- aggregation ----

constexpr ValuePair kLagTypes[] = {{"LACP", "lacp"}, {"STATIC", "on"}, {nullptr, nullptr}};

constexpr LeafRule kAggregationRules[] = {
    {.tag = "lag-type", .path = "bundle/mode", .values = kLagTypes},
    {.tag = "min-links", .type = &kUint16, .path = "bundle/minimum-links"},
};
constexpr LeafContainer kAggregationConfig = {kAggregationRules, &kInterfaceList, "aggregation/config", kAggregateNs,
                                              in_interface};
constexpr LeafContainer kAggregationState = {kAggregationRules, &kInterfaceList, "aggregation/state", kAggregateNs,
                                             nullptr};

constexpr struct tmap_child_entry kAggregationChildren[] = {
    {"config", Leaves<kAggregationConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kAggregationState>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_node_cont_info kAggregation = container_table(in_interface, kAggregationChildren);

}  // namespace

qerrno parse_ethernet(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kEthernet, kEthernetNs);
}

qerrno parse_aggregation(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kAggregation, kAggregateNs);
}

}  // namespace interfaces
