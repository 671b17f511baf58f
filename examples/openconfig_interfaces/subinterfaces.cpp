// Subinterfaces with their addresses. Each is an interface of its own on the native side, called eth0.1 for
// subinterface 1 of eth0.
#include <cstdio>
#include <cstring>

#include "openconfig.h"

namespace interfaces {

namespace {

constexpr std::size_t kMaxName = 256;

// The native name of the subinterface that the walk is in; false when there is none, or it is too long.
bool native_name(tvk_map_ctx ctx, char (&name)[kMaxName]) {
    char *interface_name = nullptr;
    char *index = nullptr;
    if (tvk_map_get_node_info(ctx, kInterfacePath, "name", &interface_name) != TVK_OK ||
        tvk_map_get_node_info(ctx, kSubinterfacePath, "index", &index) != TVK_OK || interface_name == nullptr ||
        index == nullptr) {
        return false;
    }
    const int length = std::snprintf(name, kMaxName, "%s.%s", interface_name, index);
    return length >= 0 && static_cast<std::size_t>(length) < kMaxName;
}

qerrno enter_subinterface(tvk_map_ctx ctx, const Node *node, Node *target) {
    char name[kMaxName];
    return native_name(ctx, name) ? enter_interface(ctx, target, name) : refuse(ctx, node, TVK_ERR_LIST_KEY);
}

qerrno in_subinterface(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return enter_subinterface(ctx, node, target);
}

// ---- Addresses, alike for both families ----

struct Family {
    const char *hierarchy_path;  // of the OpenConfig list
    const char *container;       // native, by its whole path
    const char *list;            // native, below the interface
};

constexpr Family kIpv4 = {"/interfaces/interface/subinterfaces/subinterface/ipv4/addresses/address",
                          "interface-configurations/interface-configuration/ipv4-addresses", "ipv4-addresses/address"};
constexpr Family kIpv6 = {"/interfaces/interface/subinterfaces/subinterface/ipv6/addresses/address",
                          "interface-configurations/interface-configuration/ipv6-addresses", "ipv6-addresses/address"};

constexpr LeafRule kIpv4Rules[] = {{"ip", nullptr, nullptr, nullptr},
                                   {"prefix-length", "ipv4-addresses/address/prefix-length", nullptr, nullptr}};
constexpr LeafRule kIpv6Rules[] = {{"ip", nullptr, nullptr, nullptr},
                                   {"prefix-length", "ipv6-addresses/address/prefix-length", nullptr, nullptr}};
constexpr LeafRules kIpv4Leaves = leaf_rules(kIpv4Rules);
constexpr LeafRules kIpv6Leaves = leaf_rules(kIpv6Rules);

template <const Family &kFamily, const LeafRules &kLeaves>
struct Addresses {
    static qerrno enter_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        char *ip = nullptr;
        if (tvk_map_get_node_info(ctx, kFamily.hierarchy_path, "ip", &ip) != TVK_OK || ip == nullptr) {
            return refuse(ctx, node, TVK_ERR_LIST_KEY);
        }
        const qerrno status = enter_subinterface(ctx, node, target);
        return status == TVK_OK ? enter_list(ctx, current_entry(ctx), kFamily.list, "ip", ip) : status;
    }

    static qerrno handle_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        const qerrno status = enter_address(ctx, node, target);
        return status == TVK_OK ? settle_entry(ctx, node, 1) : status;
    }

    static qerrno in_address(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
        return enter_address(ctx, node, target);
    }

    static qerrno in_addresses(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
        const qerrno status = enter_subinterface(ctx, node, target);
        return status == TVK_OK ? settle_container(ctx, node, target, kFamily.container) : status;
    }

    static constexpr struct tmap_node_cont_info kConfig = {in_address, leaves<kLeaves>, nullptr, 0, nullptr, nullptr};
    static qerrno parse_config(tvk_map_ctx ctx, const Node *node, Node *target) {
        return tmap_high_container_parse(ctx, node, target, &kConfig);
    }

    static constexpr struct tmap_child_entry kAddressChildren[] = {{"ip", handle_key, TMAP_CHILD_KEY},
                                                                   {"config", parse_config, TMAP_CHILD_PROPAGATE}};
    static constexpr struct tmap_key_entry kAddressKeys[] = {{"ip", kFamily.hierarchy_path, "config"}};
    static constexpr struct tmap_node_list_info kAddress = {
        handle_address, refuse_child, kAddressChildren, kAddressKeys, 2, 1, kFamily.hierarchy_path, nullptr};
    static qerrno parse_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        return tmap_high_list_parse(ctx, node, target, &kAddress);
    }

    static constexpr struct tmap_child_entry kAddressesChildren[] = {{"address", parse_address, 0}};
    static constexpr struct tmap_node_cont_info kAddresses = {in_addresses, refuse_child, kAddressesChildren, 1,
                                                              nullptr,      nullptr};
    static qerrno parse_addresses(tvk_map_ctx ctx, const Node *node, Node *target) {
        return tmap_high_container_parse(ctx, node, target, &kAddresses);
    }

    static constexpr struct tmap_child_entry kChildren[] = {{"addresses", parse_addresses, TMAP_CHILD_PROPAGATE}};
    static constexpr struct tmap_node_cont_info kFamilyContainer = {in_subinterface, refuse_child, kChildren, 1,
                                                                    nullptr,         nullptr};
    static qerrno parse(tvk_map_ctx ctx, const Node *node, Node *target) {
        return tmap_high_container_parse(ctx, node, target, &kFamilyContainer);
    }
};

// ---- config ----

constexpr LeafRule kConfigRules[] = {
    {"index", nullptr, nullptr, nullptr},
    {"description", "interface-configurations/interface-configuration/description", nullptr, nullptr},
    {"enabled", nullptr, nullptr, map_enabled},
};
constexpr LeafRules kConfigLeaves = leaf_rules(kConfigRules);
constexpr struct tmap_node_cont_info kConfig = {in_subinterface, leaves<kConfigLeaves>, nullptr, 0, nullptr, nullptr};

qerrno parse_config(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kConfig);
}

// ---- subinterface ----

qerrno handle_subinterface(tvk_map_ctx ctx, const Node *node, Node *target) {
    qerrno status = enter_subinterface(ctx, node, target);
    if (status == TVK_OK) {
        status = settle_entry(ctx, node, kInterfaceKeyCount);
    }
    if (status != TVK_OK) {
        return status;
    }
    // Natively no part of its interface: what creates the one creates the other.
    if (ctx->state->create_node != nullptr) {
        tvk_map_datatree_set_operation(current_entry(ctx), ctx->state->create_operation);
    }
    return tvk_map_datatree_add_path(ctx, target, "interface-configurations/interface-configuration/interface-virtual",
                                     kNativeNs, nullptr, nullptr, nullptr, 0);
}

constexpr struct tmap_child_entry kSubinterfaceChildren[] = {
    {"index", handle_key, TMAP_CHILD_KEY},
    {"config", parse_config, TMAP_CHILD_PROPAGATE},
    {"ipv4", Addresses<kIpv4, kIpv4Leaves>::parse, TMAP_CHILD_PROPAGATE},
    {"ipv6", Addresses<kIpv6, kIpv6Leaves>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kSubinterfaceKeys[] = {{"index", kSubinterfacePath, "config"}};
constexpr struct tmap_node_list_info kSubinterface = {
    handle_subinterface, refuse_child, kSubinterfaceChildren, kSubinterfaceKeys, 4, 1, kSubinterfacePath, kVlanNs};

qerrno parse_subinterface(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_list_parse(ctx, node, target, &kSubinterface);
}

// ---- subinterfaces ----

qerrno enter_subinterfaces(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    char *name = nullptr;
    if (tvk_map_is_request_delete(node) == 0) {
        return TVK_OK;
    }
    const qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    if (status == TVK_OK) {
        remove_subinterfaces(node, target, name);
    }
    return status == TVK_OK ? TVK_SKIP_NODE : status;
}

constexpr struct tmap_child_entry kSubinterfacesChildren[] = {{"subinterface", parse_subinterface, 0}};
constexpr struct tmap_node_cont_info kSubinterfaces = {
    enter_subinterfaces, refuse_child, kSubinterfacesChildren, 1, nullptr, nullptr};

bool is_subinterface_of(const Node *entry, const char *interface_name) {
    const Node *name = nullptr;
    const std::size_t length = std::strlen(interface_name);
    return tvk_map_datatree_get_subtree(entry, &name, "interface-name", nullptr, nullptr) == TVK_OK &&
           name->data != nullptr && std::strncmp(name->data, interface_name, length) == 0 && name->data[length] == '.';
}

}  // namespace

void remove_subinterfaces(const Node *node, Node *target, const char *interface_name) {
    const Node *list = nullptr;
    if (tvk_map_datatree_get_subtree(target, &list, kNativeInterfaces, nullptr, nullptr) != TVK_OK) {
        return;
    }
    Node *entries = nullptr;
    int32_t count = 0;
    tvk_map_get_subtrees(nullptr, list, &entries, &count);
    for (int32_t i = 0; i < count; ++i) {
        if (is_subinterface_of(&entries[i], interface_name)) {
            remove_entry(&entries[i], kInterfaceKeyCount, node->operation);
        }
    }
}

qerrno parse_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kSubinterfaces);
}

}  // namespace interfaces
