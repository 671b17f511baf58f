// /lacp: the device's priority, and what each bundle says to its partner.
#include "openconfig.h"

namespace interfaces {

namespace {

// ---- interface ----

qerrno in_bundle(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    char *name = nullptr;
    if (tvk_map_get_node_info(ctx, kLacpInterfacePath, "name", &name) != TVK_OK || name == nullptr) {
        return refuse(ctx, node, TVK_ERR_LIST_KEY);
    }
    return enter_interface(ctx, target, name);
}

constexpr ValuePair kIntervals[] = {{"FAST", "short"}, {"SLOW", "long"}, {nullptr, nullptr}};
constexpr ValuePair kModes[] = {{"ACTIVE", "active"}, {"PASSIVE", "passive"}, {nullptr, nullptr}};

constexpr LeafRule kInterfaceRules[] = {
    {"name", nullptr, nullptr, nullptr},
    {"interval", "interface-configurations/interface-configuration/lacp/period", kIntervals, nullptr},
    {"lacp-mode", "interface-configurations/interface-configuration/lacp/mode", kModes, nullptr},
    {"system-id-mac", "interface-configurations/interface-configuration/lacp/system-mac", nullptr, nullptr},
    {"system-priority", "interface-configurations/interface-configuration/lacp/system-priority", nullptr, nullptr},
};
constexpr LeafRules kInterfaceLeaves = leaf_rules(kInterfaceRules);
constexpr struct tmap_node_cont_info kInterfaceConfig = {in_bundle, leaves<kInterfaceLeaves>, nullptr, 0, nullptr,
                                                         nullptr};

qerrno parse_interface_config(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kInterfaceConfig);
}

// The native interface stays when its LACP settings go: only the container below it is deleted or replaced.
qerrno handle_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    const qerrno status = in_bundle(ctx, node, 0, target);
    return status == TVK_OK
               ? settle_container(ctx, node, target, "interface-configurations/interface-configuration/lacp")
               : status;
}

constexpr struct tmap_child_entry kInterfaceChildren[] = {{"name", handle_key, TMAP_CHILD_KEY},
                                                          {"config", parse_interface_config, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_key_entry kInterfaceKeys[] = {{"name", kLacpInterfacePath, "config"}};
constexpr struct tmap_node_list_info kInterface = {
    handle_interface, refuse_child, kInterfaceChildren, kInterfaceKeys, 2, 1, kLacpInterfacePath, nullptr};

qerrno parse_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_list_parse(ctx, node, target, &kInterface);
}

// ---- interfaces ----

// Deleting the LACP settings of all bundles: those that stand in the target.
qerrno enter_interfaces(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    if (tvk_map_is_request_delete(node) == 0) {
        return TVK_OK;
    }
    const Node *list = nullptr;
    Node *entries = nullptr;
    int32_t count = 0;
    if (tvk_map_datatree_get_subtree(target, &list, kNativeInterfaces, nullptr, nullptr) == TVK_OK) {
        tvk_map_get_subtrees(ctx, list, &entries, &count);
    }
    for (int32_t i = 0; i < count; ++i) {
        const Node *lacp = nullptr;
        if (tvk_map_datatree_get_subtree(&entries[i], &lacp, "lacp", nullptr, nullptr) == TVK_OK) {
            remove_entry(const_cast<Node *>(lacp), 0, node->operation);
        }
    }
    return TVK_SKIP_NODE;
}

constexpr struct tmap_child_entry kInterfacesChildren[] = {{"interface", parse_interface, 0}};
constexpr struct tmap_node_cont_info kInterfaces = {enter_interfaces, refuse_child, kInterfacesChildren, 1,
                                                    nullptr,          nullptr};

qerrno parse_lacp_interfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kInterfaces);
}

// ---- lacp ----

constexpr LeafRule kGlobalRules[] = {{"system-priority", "lacp-global/system-priority", nullptr, nullptr}};
constexpr LeafRules kGlobalLeaves = leaf_rules(kGlobalRules);
constexpr struct tmap_node_cont_info kGlobalConfig = {nullptr, leaves<kGlobalLeaves>, nullptr, 0, nullptr, nullptr};

qerrno parse_global_config(tvk_map_ctx ctx, const Node *node, Node *target) {
    tvk_map_datatree_reset_trim_path_ctx(ctx);  // of no interface
    return tmap_high_container_parse(ctx, node, target, &kGlobalConfig);
}

constexpr struct tmap_child_entry kLacpChildren[] = {{"config", parse_global_config, TMAP_CHILD_PROPAGATE},
                                                     {"interfaces", parse_lacp_interfaces, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kLacp = {nullptr, refuse_child, kLacpChildren, 2, nullptr, nullptr};

}  // namespace

qerrno parse_lacp(tvk_map_ctx ctx, const Node *node, Node *target) {
    const qerrno status = tmap_high_container_parse(ctx, node, target, &kLacp);
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    return status;
}

}  // namespace interfaces
