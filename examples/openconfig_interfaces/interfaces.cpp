// /interfaces/interface with config, state and hold-time.
#include "openconfig.h"

namespace interfaces {

namespace {

// ---- The list in a read ----

NodeRange interface_candidates(tvk_map_ctx, const Node *root) {
    return native_interfaces(root);
}

const char *interface_key(const Node *entry, const char *, Scratch &) {
    const Node *name = find(entry, "interface-name");
    return name != nullptr && !is_virtual(entry) ? name->data : nullptr;
}

}  // namespace

constexpr ListShape kInterfaceList = {
    0, nullptr, "interface", "name", kInterfacesNs, interface_candidates, interface_key};

namespace {

// ---- config and state ----

constexpr char kInterfaceTypeNs[] = "urn:ietf:params:xml:ns:yang:iana-if-type";
constexpr ValuePair kTypes[] = {
    {"ethernetCsmacd", "ethernet"}, {"ieee8023adLag", "bundle"}, {"softwareLoopback", "loopback"}, {nullptr, nullptr}};

// The size for all protocols is the entry with the owner interface.
qerrno edit_mtu(tvk_map_ctx ctx, const Node *leaf, Node *) {
    constexpr List kMtus = {"mtus", "mtu", "owner", kNativeNs};
    Node *interface_entry = current_entry(ctx);
    qerrno status = enter_entry(ctx, interface_entry, kMtus, "interface");
    if (status == TVK_OK) {
        status = settle_entry(ctx, leaf, 1);
    }
    if (status == TVK_OK) {
        status =
            tvk_map_datatree_add_subtree(ctx, current_entry(ctx), "mtu", kNativeNs, leaf->data, nullptr, nullptr, 0);
    }
    ctx->state->pending_list_node = interface_entry;  // where it was: only its children have moved
    return status == TVK_SKIP_NODE ? TVK_OK : status;
}

const char *read_mtu(tvk_map_ctx, const Node *native) {
    for (const Node &entry : children_of(find(native, "mtus"))) {
        const Node *owner = find(&entry, "owner");
        const Node *mtu = find(&entry, "mtu");
        if (owner != nullptr && mtu != nullptr && equal(owner->data, "interface")) {
            return mtu->data;
        }
    }
    return nullptr;
}

// What the device observes stands in a list of its own.
const Node *observed(tvk_map_ctx ctx, const char *leaf) {
    for (const Node &entry : children_of(find(native_root(ctx), kNativeStates))) {
        const Node *name = find(&entry, "interface-name");
        if (name != nullptr && equal(name->data, entry_key(ctx, kInterfaceList))) {
            return find(&entry, leaf);
        }
    }
    return nullptr;
}

const char *read_if_index(tvk_map_ctx ctx, const Node *) {
    const Node *index = observed(ctx, "if-index");
    return index != nullptr ? index->data : nullptr;
}

const char *read_oper_status(tvk_map_ctx ctx, const Node *) {
    const Node *line_state = observed(ctx, "line-state");
    return line_state == nullptr ? nullptr : equal(line_state->data, "up") ? "UP" : "DOWN";
}

const char *read_admin_status(tvk_map_ctx, const Node *native) {
    return find(native, "shutdown") != nullptr ? "DOWN" : "UP";
}

constexpr LeafRule kRules[] = {
    {.tag = "name"},
    {.tag = "type", .path = "type", .values = kTypes, .value_ns = kInterfaceTypeNs},
    {.tag = "mtu", .edit = edit_mtu, .read = read_mtu},
    {.tag = "description", .path = "description"},
    {.tag = "enabled", .default_value = "true", .edit = edit_enabled, .read = read_enabled},
    // Only in state.
    {.tag = "ifindex", .read = read_if_index},
    {.tag = "admin-status", .read = read_admin_status},
    {.tag = "oper-status", .read = read_oper_status},
};
constexpr std::size_t kConfigRuleCount = 5;
constexpr std::size_t kStateRuleCount = 8;

constexpr LeafContainer kConfig = {kRules, kConfigRuleCount, &kInterfaceList, "config", kInterfacesNs, in_interface};
constexpr LeafContainer kState = {kRules, kStateRuleCount, &kInterfaceList, "state", kInterfacesNs, nullptr};

// ---- hold-time ----

constexpr LeafRule kHoldTimeRules[] = {
    {.tag = "up", .path = "carrier-delay/up", .default_value = "0"},
    {.tag = "down", .path = "carrier-delay/down", .default_value = "0"},
};
constexpr LeafContainer kHoldTimeConfig = {kHoldTimeRules, 2,           &kInterfaceList, "hold-time/config",
                                           kInterfacesNs,  in_interface};
constexpr LeafContainer kHoldTimeState = {kHoldTimeRules, 2,      &kInterfaceList, "hold-time/state",
                                          kInterfacesNs,  nullptr};

qerrno enter_hold_time(tvk_map_ctx ctx, const Node *node, uint32_t child_count, Node *target) {
    if (is_read(ctx)) {
        return enter_read(ctx);
    }
    const qerrno status = in_interface(ctx, node, child_count, target);
    return status == TVK_OK ? settle_container(ctx, node, target, "carrier-delay") : status;
}

constexpr struct tmap_child_entry kHoldTimeChildren[] = {
    {"config", Leaves<kHoldTimeConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kHoldTimeState>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_node_cont_info kHoldTime = {enter_hold_time, refuse_child, kHoldTimeChildren, 2,
                                                  nullptr,         nullptr};

qerrno parse_hold_time(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kHoldTime);
}

// ---- interface ----

qerrno handle_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kInterfaceList);
    }
    char *name = nullptr;
    if (tvk_map_get_node_info(ctx, kInterfacePath, "name", &name) != TVK_OK || name == nullptr) {
        return refuse(ctx, node, TVK_ERR_LIST_KEY);
    }
    if (tvk_map_is_request_delete(node) != 0) {
        remove_subinterfaces(ctx, node, target, name);
    }
    const qerrno status = enter_interface(ctx, target, name);
    return status == TVK_OK ? settle_entry(ctx, node, kInterfaceKeyCount) : status;
}

constexpr struct tmap_child_entry kInterfaceChildren[] = {
    {"name", handle_key<kInterfaceList>, TMAP_CHILD_KEY},
    {"config", Leaves<kConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kState>::parse, TMAP_CHILD_PROPAGATE},
    {"hold-time", parse_hold_time, TMAP_CHILD_PROPAGATE},
    {"subinterfaces", parse_subinterfaces, TMAP_CHILD_PROPAGATE},
    {"ethernet", parse_ethernet, TMAP_CHILD_PROPAGATE},
    {"aggregation", parse_aggregation, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kInterfaceKeys[] = {{"name", kInterfacePath, "config"}};
constexpr struct tmap_node_list_info kInterface = {
    handle_interface, refuse_child, kInterfaceChildren, kInterfaceKeys, 7, 1, kInterfacePath, kVlanNs};

qerrno parse_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kInterface, kInterfaceList);
}

// ---- interfaces ----

qerrno enter_interfaces(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : settle_container(ctx, node, target, kNativeInterfaces);
}

constexpr struct tmap_child_entry kInterfacesChildren[] = {{"interface", parse_interface, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kInterfaces = {enter_interfaces, refuse_child, kInterfacesChildren, 1,
                                                    nullptr,          nullptr};

}  // namespace

qerrno parse_interfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_top(ctx, node, target, &kInterfaces, kInterfacesNs);
}

qerrno in_interface(tvk_map_ctx ctx, const Node *, uint32_t, Node *target) {
    char *name = nullptr;
    if (is_read(ctx)) {
        return enter_read(ctx);
    }
    const qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    return status == TVK_OK ? enter_interface(ctx, target, name) : status;
}

NodeRange native_interfaces(const Node *root) {
    return children_of(root != nullptr ? find(root, kNativeInterfaces) : nullptr);
}

bool is_virtual(const Node *entry) {
    return find(entry, "interface-virtual") != nullptr;
}

qerrno edit_enabled(tvk_map_ctx ctx, const Node *leaf, Node *target) {
    const bool is_delete = tvk_map_is_request_delete(leaf) != 0;
    if (!is_delete && equal(leaf->data, "false")) {
        return add_value(ctx, leaf, target, "shutdown", nullptr);
    }
    if (!is_delete && !equal(leaf->data, "true")) {
        return refuse(ctx, leaf, TVK_ERR_INVALID);
    }
    Node removal = *leaf;
    tvk_map_datatree_set_operation(&removal, TVK_OPERATION_REMOVE);
    return add_value(ctx, &removal, target, "shutdown", nullptr);
}

const char *read_enabled(tvk_map_ctx, const Node *native) {
    return find(native, "shutdown") != nullptr ? "false" : nullptr;
}

}  // namespace interfaces
