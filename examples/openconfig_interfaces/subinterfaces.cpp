// Subinterfaces with their addresses. Each is an interface of its own on the native side, called eth0.1 for
// subinterface 1 of eth0.
#include <cstring>

#include "openconfig.h"
#include "tvk_string.h"

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
    return tvk_strcpy_s(__func__, name, kMaxName, interface_name) == 0 &&
           tvk_strcat_s(__func__, name, kMaxName, ".") == 0 && tvk_strcat_s(__func__, name, kMaxName, index) == 0;
}

qerrno enter_subinterface(tvk_map_ctx ctx, const Node *node, Node *target) {
    char name[kMaxName];
    return native_name(ctx, name) ? enter_interface(ctx, target, name) : refuse(ctx, node, TVK_ERR_LIST_KEY);
}

qerrno in_subinterface(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : enter_subinterface(ctx, node, target);
}

// ---- The list in a read ----

// The native list is flat, so all of it is looked through.
NodeRange subinterface_candidates(tvk_map_ctx ctx, const Node *) {
    return native_interfaces(native_root(ctx));
}

const char *subinterface_key(const Node *entry, const char *interface_name, Scratch &) {
    const Node *name = find(entry, "interface-name");
    const std::size_t length = std::strlen(interface_name);
    if (name == nullptr || name->data == nullptr || !is_virtual(entry) ||
        std::strncmp(name->data, interface_name, length) != 0 || name->data[length] != '.') {
        return nullptr;
    }
    return name->data + length + 1;
}

constexpr ListShape kSubinterfaceList = {1,
                                         &kInterfaceList,
                                         "interface/subinterfaces/subinterface",
                                         "index",
                                         kInterfacesNs,
                                         subinterface_candidates,
                                         subinterface_key};

// ---- Addresses, alike for both families ----

struct Family {
    const char *hierarchy_path;  // of the OpenConfig list
    List list;                   // native, below the interface
};

constexpr Family kIpv4 = {"/interfaces/interface/subinterfaces/subinterface/ipv4/addresses/address",
                          {"ipv4-addresses", "address", "ip", kNativeNs}};
constexpr Family kIpv6 = {"/interfaces/interface/subinterfaces/subinterface/ipv6/addresses/address",
                          {"ipv6-addresses", "address", "ip", kNativeNs}};

const char *address_key(const Node *address, const char *, Scratch &) {
    const Node *ip = find(address, "ip");
    return ip != nullptr ? ip->data : nullptr;
}

template <const Family &kFamily>
NodeRange address_candidates(tvk_map_ctx, const Node *interface_entry) {
    return children_of(find(interface_entry, kFamily.list.container));
}

constexpr ListShape kIpv4List = {2,
                                 &kSubinterfaceList,
                                 "interface/subinterfaces/subinterface/ipv4/addresses/address",
                                 "ip",
                                 kIpNs,
                                 address_candidates<kIpv4>,
                                 address_key};
constexpr ListShape kIpv6List = {2,
                                 &kSubinterfaceList,
                                 "interface/subinterfaces/subinterface/ipv6/addresses/address",
                                 "ip",
                                 kIpNs,
                                 address_candidates<kIpv6>,
                                 address_key};

constexpr LeafRule kAddressRules[] = {{.tag = "ip"}, {.tag = "prefix-length", .path = "prefix-length"}};

template <const Family &kFamily, const ListShape &kList>
struct Addresses {
    static qerrno enter_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        char *ip = nullptr;
        if (tvk_map_get_node_info(ctx, kFamily.hierarchy_path, "ip", &ip) != TVK_OK || ip == nullptr) {
            return refuse(ctx, node, TVK_ERR_LIST_KEY);
        }
        const qerrno status = enter_subinterface(ctx, node, target);
        return status == TVK_OK ? enter_entry(ctx, current_entry(ctx), kFamily.list, ip) : status;
    }

    static qerrno handle_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        if (is_read(ctx)) {
            return push_instances(ctx, kList);
        }
        const qerrno status = enter_address(ctx, node, target);
        return status == TVK_OK ? settle_entry(ctx, node, 1) : status;
    }

    static qerrno in_address(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
        return enter_address(ctx, node, target);
    }

    static qerrno in_addresses(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
        const qerrno status = in_subinterface(ctx, node, child_count, target);
        return status == TVK_OK && !is_read(ctx) ? settle_container(ctx, node, target, kFamily.list.container) : status;
    }

    static constexpr LeafContainer kConfig = {kAddressRules, 2, &kList, "config", kIpNs, in_address};
    static constexpr LeafContainer kState = {kAddressRules, 2, &kList, "state", kIpNs, nullptr};

    static constexpr struct tmap_child_entry kAddressChildren[] = {
        {"ip", handle_key<kList>, TMAP_CHILD_KEY},
        {"config", Leaves<kConfig>::parse, TMAP_CHILD_PROPAGATE},
        {"state", Leaves<kState>::parse, TMAP_CHILD_PROPAGATE},
    };
    static constexpr struct tmap_key_entry kAddressKeys[] = {{"ip", kFamily.hierarchy_path, "config"}};
    static constexpr struct tmap_node_list_info kAddress = {
        handle_address, refuse_child, kAddressChildren, kAddressKeys, 3, 1, kFamily.hierarchy_path, nullptr};
    static qerrno parse_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        return parse_list(ctx, node, target, &kAddress, kList);
    }

    static constexpr struct tmap_child_entry kAddressesChildren[] = {{"address", parse_address, TMAP_CHILD_PROPAGATE}};
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

// ---- config and state ----

constexpr LeafRule kRules[] = {
    {.tag = "index"},
    {.tag = "description", .path = "description"},
    {.tag = "enabled", .default_value = "true", .edit = edit_enabled, .read = read_enabled},
};
constexpr LeafContainer kConfig = {kRules, 3, &kSubinterfaceList, "config", kInterfacesNs, in_subinterface};
constexpr LeafContainer kState = {kRules, 3, &kSubinterfaceList, "state", kInterfacesNs, nullptr};

// ---- subinterface ----

qerrno handle_subinterface(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kSubinterfaceList);
    }
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
    return tvk_map_datatree_add_subtree(ctx, current_entry(ctx), "interface-virtual", kNativeNs, nullptr, nullptr,
                                        nullptr, 0);
}

constexpr struct tmap_child_entry kSubinterfaceChildren[] = {
    {"index", handle_key<kSubinterfaceList>, TMAP_CHILD_KEY},
    {"config", Leaves<kConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kState>::parse, TMAP_CHILD_PROPAGATE},
    {"ipv4", Addresses<kIpv4, kIpv4List>::parse, TMAP_CHILD_PROPAGATE},
    {"ipv6", Addresses<kIpv6, kIpv6List>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kSubinterfaceKeys[] = {{"index", kSubinterfacePath, "config"}};
constexpr struct tmap_node_list_info kSubinterface = {
    handle_subinterface, refuse_child, kSubinterfaceChildren, kSubinterfaceKeys, 5, 1, kSubinterfacePath, kVlanNs};

qerrno parse_subinterface(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kSubinterface, kSubinterfaceList);
}

// ---- subinterfaces ----

qerrno enter_subinterfaces(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    char *name = nullptr;
    if (is_read(ctx)) {
        return enter_read(ctx);
    }
    if (tvk_map_is_request_delete(node) == 0) {
        return TVK_OK;
    }
    const qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    if (status == TVK_OK) {
        remove_subinterfaces(ctx, node, target, name);
    }
    return status == TVK_OK ? TVK_SKIP_NODE : status;
}

constexpr struct tmap_child_entry kSubinterfacesChildren[] = {
    {"subinterface", parse_subinterface, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kSubinterfaces = {
    enter_subinterfaces, refuse_child, kSubinterfacesChildren, 1, nullptr, nullptr};

}  // namespace

void remove_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target, const char *interface_name) {
    ctx->state->pending_list_node = nullptr;  // an address, it may be, of one of those
    for (Node &entry : native_interfaces(target)) {
        Scratch scratch;
        if (subinterface_key(&entry, interface_name, scratch) != nullptr) {
            remove_entry(ctx, &entry, kInterfaceKeyCount, node->operation);
        }
    }
}

qerrno parse_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kSubinterfaces);
}

}  // namespace interfaces
