// /interfaces/interface/ethernet and /interfaces/interface/aggregation.
#include "openconfig.h"

namespace interfaces {

namespace {

// ---- ethernet ----

constexpr ValuePair kDuplexModes[] = {{"FULL", "full"}, {"HALF", "half"}, {nullptr, nullptr}};
constexpr ValuePair kSpeeds[] = {{"SPEED_10MB", "10"},    {"SPEED_100MB", "100"},    {"SPEED_1GB", "1000"},
                                 {"SPEED_10GB", "10000"}, {"SPEED_25GB", "25000"},   {"SPEED_40GB", "40000"},
                                 {"SPEED_50GB", "50000"}, {"SPEED_100GB", "100000"}, {"SPEED_400GB", "400000"},
                                 {nullptr, nullptr}};

constexpr LeafRule kEthernetRules[] = {
    {"mac-address", "interface-configurations/interface-configuration/ethernet/mac-address", nullptr, nullptr},
    {"auto-negotiate", "interface-configurations/interface-configuration/ethernet/auto-negotiation", nullptr, nullptr},
    {"duplex-mode", "interface-configurations/interface-configuration/ethernet/duplex", kDuplexModes, nullptr},
    {"port-speed", "interface-configurations/interface-configuration/ethernet/speed", kSpeeds, nullptr},
    // Of the aggregation model: the port becomes a member of that bundle.
    {"aggregate-id", "interface-configurations/interface-configuration/bundle/member-of", nullptr, nullptr},
};
constexpr LeafRules kEthernetLeaves = leaf_rules(kEthernetRules);
constexpr struct tmap_node_cont_info kEthernetConfig = {in_interface, leaves<kEthernetLeaves>, nullptr, 0, nullptr,
                                                        nullptr};

qerrno parse_ethernet_config(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kEthernetConfig);
}

constexpr struct tmap_child_entry kEthernetChildren[] = {{"config", parse_ethernet_config, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kEthernet = {in_interface, refuse_child, kEthernetChildren, 1, nullptr, kVlanNs};

// ---- aggregation ----

constexpr ValuePair kLagTypes[] = {{"LACP", "lacp"}, {"STATIC", "on"}, {nullptr, nullptr}};

constexpr LeafRule kAggregationRules[] = {
    {"lag-type", "interface-configurations/interface-configuration/bundle/mode", kLagTypes, nullptr},
    {"min-links", "interface-configurations/interface-configuration/bundle/minimum-links", nullptr, nullptr},
};
constexpr LeafRules kAggregationLeaves = leaf_rules(kAggregationRules);
constexpr struct tmap_node_cont_info kAggregationConfig = {
    in_interface, leaves<kAggregationLeaves>, nullptr, 0, nullptr, nullptr};

qerrno parse_aggregation_config(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kAggregationConfig);
}

constexpr struct tmap_child_entry kAggregationChildren[] = {{"config", parse_aggregation_config, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kAggregation = {in_interface, refuse_child, kAggregationChildren, 1,
                                                     nullptr,      kVlanNs};

}  // namespace

qerrno parse_ethernet(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kEthernet);
}

qerrno parse_aggregation(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kAggregation);
}

}  // namespace interfaces
