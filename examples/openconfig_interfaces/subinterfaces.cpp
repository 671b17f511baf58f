// Maps subinterfaces with their addresses. On the native side subinterface 1 of eth0 is an interface of its own,
// eth0.1.
#include <cstdio>
#include <cstring>

#include "openconfig.h"

namespace interfaces {

namespace {

constexpr std::size_t kMaxName = 1024;  // room for 255 characters of UTF-8

// Composes the native name of a subinterface. Returns false when it is too long.
bool compose_name(const char *interface_name, const char *index, char (&name)[kMaxName]) {
    const int length = std::snprintf(name, sizeof name, "%s.%s", interface_name, index);
    return length < static_cast<int>(sizeof name) && kInterfaceName.accepts(name);
}

qerrno enter_subinterface(tvk_map_ctx ctx, const Node *node, Node *target) {
    char *interface_name = nullptr;
    char *index = nullptr;
    qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &interface_name);
    if (status == TVK_OK) {
        status = tvk_map_get_node_info(ctx, kSubinterfacePath, "index", &index);
    }
    if (status != TVK_OK) {
        return status;
    }
    char name[kMaxName];
    Scratch scratch;
    if (!compose_name(interface_name, canonical_number(index, scratch), name)) {
        return refuse(ctx, node, TVK_ERR_INVALID, "with its interface %s its name is no %s",
                      Quoted(interface_name).text, kInterfaceName.name);
    }
    return enter_interface(ctx, node, target, name, Kind::kSubinterface);
}

qerrno in_subinterface(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : enter_subinterface(ctx, node, target);
}

// ---- The list in a read ----

Nodes subinterface_candidates(tvk_map_ctx ctx, const Node *) {
    return native_interfaces(native_root(ctx));
}

// Returns the index at the end of a name, or null when there is none in canonical form, as in eth0.a, eth0.01 and eth0.
const char *index_in(Text name) {
    const char *end = name.begin != nullptr ? name.begin + name.length : nullptr;
    const char *dot = end != nullptr ? std::strrchr(name.begin, '.') : nullptr;
    Scratch scratch;
    const bool is_index =
        dot != nullptr && kUint32.accepts(dot + 1) && equal(canonical_number(dot + 1, scratch), dot + 1);
    return is_index ? dot + 1 : nullptr;
}

// Returns the name of the interface that an entry is a subinterface of, by its name. A name may hold more than one dot:
// eth0.1.2 is subinterface 2 of eth0.1, and not of eth0.
Text outer_name(const Node &entry) {
    const Text name = interface_name(entry);
    const char *index = index_in(name);
    return index != nullptr ? Text{name.begin, static_cast<std::size_t>(index - 1 - name.begin)} : Text{nullptr, 0};
}

const char *subinterface_key(const Node *entry, const char *interface_name, Scratch &) {
    const bool is_part = is_virtual(entry) && same(outer_name(*entry), all_of(interface_name));
    return is_part ? index_in(interfaces::interface_name(*entry)) : nullptr;
}

const char *subinterface_name(const char *index, const char *interface_name, Scratch &scratch) {
    const int length = std::snprintf(scratch, sizeof scratch, "%s.%s", interface_name, index);
    return length < static_cast<int>(sizeof scratch) ? scratch : nullptr;
}

constexpr ListShape kSubinterfaceList = {.level = 1,
                                         .parent = &kInterfaceList,
                                         .path = "interface/subinterfaces/subinterface",
                                         .key = "index",
                                         .key_type = &kUint32,
                                         .ns = kInterfacesNs,
                                         .candidates = subinterface_candidates,
                                         .key_of = subinterface_key,
                                         .text_of = interface_name,
                                         .native_key = subinterface_name,
                                         .outer_key_of = outer_name};

// ---- Addresses, alike for both families ----

// An address family.
struct Family {
    const char *hierarchy_path;  // the path of the OpenConfig list
    List list;                   // the native list below the interface
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
Nodes address_candidates(tvk_map_ctx, const Node *interface_entry) {
    return children_of(find(interface_entry, kFamily.list.container));
}

Text address_text(const Node &address) {
    return child_text(address, "ip");
}

constexpr ListShape kIpv4List = {.level = 2,
                                 .parent = &kSubinterfaceList,
                                 .path = "interface/subinterfaces/subinterface/ipv4/addresses/address",
                                 .key = "ip",
                                 .key_type = &kIpv4Address,
                                 .ns = kIpNs,
                                 .candidates = address_candidates<kIpv4>,
                                 .key_of = address_key,
                                 .text_of = address_text};
constexpr ListShape kIpv6List = {.level = 2,
                                 .parent = &kSubinterfaceList,
                                 .path = "interface/subinterfaces/subinterface/ipv6/addresses/address",
                                 .key = "ip",
                                 .key_type = &kIpv6Address,
                                 .ns = kIpNs,
                                 .candidates = address_candidates<kIpv6>,
                                 .key_of = address_key,
                                 .text_of = address_text};

constexpr LeafRule kIpv4Rules[] = {
    {.tag = "ip", .type = &kIpv4Address},
    {.tag = "prefix-length", .type = &kIpv4PrefixLength, .path = "prefix-length"},
};
constexpr LeafRule kIpv6Rules[] = {
    {.tag = "ip", .type = &kIpv6Address},
    {.tag = "prefix-length", .type = &kIpv6PrefixLength, .path = "prefix-length"},
};

template <const Family &kFamily, const ListShape &kList, const auto &kRulesOfFamily>
struct Addresses {
    static qerrno enter_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        char *ip = nullptr;
        qerrno status = tvk_map_get_node_info(ctx, kFamily.hierarchy_path, "ip", &ip);
        if (status == TVK_OK) {
            status = enter_subinterface(ctx, node, target);
        }
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

    static constexpr LeafContainer kConfig = {kRulesOfFamily, &kList, "config", kIpNs, in_address};
    static constexpr LeafContainer kState = {kRulesOfFamily, &kList, "state", kIpNs, nullptr};

    static constexpr struct tmap_child_entry kAddressChildren[] = {
        {"ip", handle_key<kList>, TMAP_CHILD_KEY},
        {"config", Leaves<kConfig>::parse, TMAP_CHILD_PROPAGATE},
        {"state", Leaves<kState>::parse, TMAP_CHILD_PROPAGATE},
    };
    static constexpr struct tmap_key_entry kAddressKeys[] = {{"ip", kFamily.hierarchy_path, "config"}};
    static constexpr struct tmap_node_list_info kAddress = list_table(handle_address, kAddressChildren, kAddressKeys);
    static qerrno parse_address(tvk_map_ctx ctx, const Node *node, Node *target) {
        return parse_list(ctx, node, target, &kAddress, kList);
    }

    static constexpr struct tmap_child_entry kAddressesChildren[] = {{"address", parse_address, TMAP_CHILD_PROPAGATE}};
    static constexpr struct tmap_node_cont_info kAddresses = container_table(in_addresses, kAddressesChildren);
    static qerrno parse_addresses(tvk_map_ctx ctx, const Node *node, Node *target) {
        return parse_container(ctx, node, target, &kAddresses, kIpNs);
    }

    static constexpr struct tmap_child_entry kChildren[] = {{"addresses", parse_addresses, TMAP_CHILD_PROPAGATE}};
    static constexpr struct tmap_node_cont_info kFamilyContainer = container_table(in_subinterface, kChildren);
    static qerrno parse(tvk_map_ctx ctx, const Node *node, Node *target) {
        return parse_container(ctx, node, target, &kFamilyContainer, kIpNs);
    }
};

// ---- config and state ----

constexpr LeafRule kRules[] = {
    {.tag = "index", .type = &kUint32},
    {.tag = "description", .type = &kString, .path = "description"},
    {.tag = "enabled", .type = &kBoolean, .default_value = "true", .edit = edit_enabled, .read = read_enabled},
};
constexpr LeafContainer kConfig = {kRules, &kSubinterfaceList, "config", kInterfacesNs, in_subinterface};
constexpr LeafContainer kState = {kRules, &kSubinterfaceList, "state", kInterfacesNs, nullptr};

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
    give_creation(ctx);
    return tvk_map_datatree_add_subtree(ctx, current_entry(ctx), "interface-virtual", kNativeNs, nullptr, nullptr,
                                        nullptr, 0);
}

constexpr struct tmap_child_entry kSubinterfaceChildren[] = {
    {"index", handle_key<kSubinterfaceList>, TMAP_CHILD_KEY},
    {"config", Leaves<kConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kState>::parse, TMAP_CHILD_PROPAGATE},
    {"ipv4", Addresses<kIpv4, kIpv4List, kIpv4Rules>::parse, TMAP_CHILD_PROPAGATE},
    {"ipv6", Addresses<kIpv6, kIpv6List, kIpv6Rules>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kSubinterfaceKeys[] = {{"index", kSubinterfacePath, "config"}};
constexpr struct tmap_node_list_info kSubinterface =
    list_table(handle_subinterface, kSubinterfaceChildren, kSubinterfaceKeys);

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
    qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    if (status == TVK_OK) {
        ctx->state->pending_list_node = nullptr;  // it may be an address of a subinterface
        status = remove_subinterfaces(ctx, node, target, name);
    }
    return status == TVK_OK ? TVK_SKIP_NODE : status;
}

constexpr struct tmap_child_entry kSubinterfacesChildren[] = {
    {"subinterface", parse_subinterface, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kSubinterfaces = container_table(enter_subinterfaces, kSubinterfacesChildren);

// Identifies the native list in an edit, where it moves as it grows.
constexpr int kEditedList = 0;

}  // namespace

qerrno remove_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target, const char *interface_name) {
    const NodeRange<Node> all = native_interfaces(target);
    Entries entries;
    const qerrno status = Entries::find(ctx, &kEditedList, all, outer_name, all_of(interface_name), entries);
    if (status != TVK_OK) {
        return status;
    }
    while (const Node *entry = entries.next()) {
        if (is_virtual(entry)) {
            remove_entry(ctx, node, &all[static_cast<std::size_t>(entry - all.data())], kInterfaceKeyCount, entry);
        }
    }
    return TVK_OK;
}

void forget_interfaces(tvk_map_ctx ctx) {
    forget_entries(ctx, &kEditedList);
}

qerrno parse_subinterfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kSubinterfaces, kInterfacesNs);
}

}  // namespace interfaces
