// /interfaces/interface with config and hold-time.
#include "openconfig.h"

namespace interfaces {

namespace {

// ---- config ----

constexpr ValuePair kTypes[] = {
    {"ethernetCsmacd", "ethernet"}, {"ieee8023adLag", "bundle"}, {"softwareLoopback", "loopback"}, {nullptr, nullptr}};

// The size for all protocols is the entry with the owner interface.
qerrno map_mtu(tvk_map_ctx ctx, const Node *leaf, Node *target) {
    Node *interface_entry = current_entry(ctx);
    char *name = nullptr;
    qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    if (status == TVK_OK) {
        status = enter_list(ctx, interface_entry, "mtus/mtu", "owner", "interface");
    }
    if (status == TVK_OK) {
        status = settle_entry(ctx, leaf, 1);
    }
    if (status == TVK_OK) {
        status =
            tvk_map_datatree_add_path(ctx, interface_entry, "mtus/mtu/mtu", kNativeNs, leaf->data, nullptr, nullptr, 0);
    }
    const qerrno back = enter_interface(ctx, target, name);
    return status == TVK_OK || status == TVK_SKIP_NODE ? back : status;
}

constexpr LeafRule kConfigRules[] = {
    {"name", nullptr, nullptr, nullptr},
    {"type", "interface-configurations/interface-configuration/type", kTypes, nullptr},
    {"mtu", nullptr, nullptr, map_mtu},
    {"description", "interface-configurations/interface-configuration/description", nullptr, nullptr},
    {"enabled", nullptr, nullptr, map_enabled},
};
constexpr LeafRules kConfigLeaves = leaf_rules(kConfigRules);

constexpr struct tmap_node_cont_info kConfig = {in_interface, leaves<kConfigLeaves>, nullptr, 0, nullptr, nullptr};

qerrno parse_config(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kConfig);
}

// ---- hold-time ----

constexpr LeafRule kHoldTimeRules[] = {
    {"up", "interface-configurations/interface-configuration/carrier-delay/up", nullptr, nullptr},
    {"down", "interface-configurations/interface-configuration/carrier-delay/down", nullptr, nullptr},
};
constexpr LeafRules kHoldTimeLeaves = leaf_rules(kHoldTimeRules);

constexpr struct tmap_node_cont_info kHoldTimeConfig = {in_interface, leaves<kHoldTimeLeaves>, nullptr, 0, nullptr,
                                                        nullptr};

qerrno parse_hold_time_config(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kHoldTimeConfig);
}

qerrno enter_hold_time(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
    const qerrno status = in_interface(ctx, node, child_count, target);
    return status == TVK_OK
               ? settle_container(ctx, node, target, "interface-configurations/interface-configuration/carrier-delay")
               : status;
}

constexpr struct tmap_child_entry kHoldTimeChildren[] = {{"config", parse_hold_time_config, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kHoldTime = {enter_hold_time, refuse_child, kHoldTimeChildren, 1,
                                                  nullptr,         nullptr};

qerrno parse_hold_time(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kHoldTime);
}

// ---- interface ----

qerrno handle_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    char *name = nullptr;
    if (tvk_map_get_node_info(ctx, kInterfacePath, "name", &name) != TVK_OK || name == nullptr) {
        return refuse(ctx, node, TVK_ERR_LIST_KEY);
    }
    const qerrno status = enter_interface(ctx, target, name);
    if (status != TVK_OK) {
        return status;
    }
    if (tvk_map_is_request_delete(node) != 0) {
        remove_subinterfaces(node, target, name);
    }
    return settle_entry(ctx, node, kInterfaceKeyCount);
}

constexpr struct tmap_child_entry kInterfaceChildren[] = {
    {"name", handle_key, TMAP_CHILD_KEY},
    {"config", parse_config, TMAP_CHILD_PROPAGATE},
    {"hold-time", parse_hold_time, TMAP_CHILD_PROPAGATE},
    {"subinterfaces", parse_subinterfaces, TMAP_CHILD_PROPAGATE},
    {"ethernet", parse_ethernet, TMAP_CHILD_PROPAGATE},
    {"aggregation", parse_aggregation, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kInterfaceKeys[] = {{"name", kInterfacePath, "config"}};
constexpr struct tmap_node_list_info kInterface = {
    handle_interface, refuse_child, kInterfaceChildren, kInterfaceKeys, 6, 1, kInterfacePath, kVlanNs};

qerrno parse_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_list_parse(ctx, node, target, &kInterface);
}

// ---- interfaces ----

qerrno enter_interfaces(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return settle_container(ctx, node, target, kNativeInterfaces);
}

constexpr struct tmap_child_entry kInterfacesChildren[] = {{"interface", parse_interface, 0}};
constexpr struct tmap_node_cont_info kInterfaces = {enter_interfaces, refuse_child, kInterfacesChildren, 1,
                                                    nullptr,          nullptr};

}  // namespace

qerrno handle_key(tvk_map_ctx, const Node *, Node *) {
    return TVK_OK;
}

qerrno map_enabled(tvk_map_ctx ctx, const Node *leaf, Node *target) {
    constexpr char kShutdown[] = "interface-configurations/interface-configuration/shutdown";
    if (tvk_map_is_request_delete(leaf) == 0 && tvk_map_do_these_match(leaf->data, "false") != 0) {
        return add_value(ctx, leaf, target, kShutdown, nullptr);
    }
    if (tvk_map_is_request_delete(leaf) == 0 && tvk_map_do_these_match(leaf->data, "true") == 0) {
        return refuse(ctx, leaf, TVK_ERR_INVALID);
    }
    Node removal = *leaf;
    tvk_map_datatree_set_operation(&removal, TVK_OPERATION_REMOVE);
    return add_value(ctx, &removal, target, kShutdown, nullptr);
}

qerrno in_interface(tvk_map_ctx ctx, const Node *, uint32_t, Node *target) {
    char *name = nullptr;
    const qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    return status == TVK_OK ? enter_interface(ctx, target, name) : status;
}

qerrno parse_interfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    const qerrno status = tmap_high_container_parse(ctx, node, target, &kInterfaces);
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    return status;
}

}  // namespace interfaces
