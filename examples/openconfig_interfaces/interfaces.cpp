// Maps /interfaces/interface with config, state and hold-time.
#include "openconfig.h"

namespace interfaces {

namespace {

// ---- The list in a read ----

Nodes interface_candidates(tvk_map_ctx, const Node *root) {
    return native_interfaces(root);
}

const char *interface_key(const Node *entry, const char *, Scratch &) {
    const Node *name = find(entry, "interface-name");
    return name != nullptr && !is_virtual(entry) ? name->data : nullptr;
}

}  // namespace

constexpr ListShape kInterfaceList = {.level = 0,
                                      .parent = nullptr,
                                      .path = "interface",
                                      .key = "name",
                                      .key_type = &kInterfaceName,
                                      .ns = kInterfacesNs,
                                      .candidates = interface_candidates,
                                      .key_of = interface_key,
                                      .text_of = interface_name};

namespace {

// ---- config and state ----

constexpr char kInterfaceTypeNs[] = "urn:ietf:params:xml:ns:yang:iana-if-type";
constexpr ValuePair kTypes[] = {
    {"ethernetCsmacd", "ethernet"}, {"ieee8023adLag", "bundle"}, {"softwareLoopback", "loopback"}, {nullptr, nullptr}};

// Sets the size for all protocols, which is the entry with the owner "interface".
qerrno edit_mtu(tvk_map_ctx ctx, const Node *leaf, Node *, const char *value) {
    constexpr List kMtus = {"mtus", "mtu", "owner", kNativeNs};
    Node *interface_entry = current_entry(ctx);
    qerrno status = enter_entry(ctx, interface_entry, kMtus, "interface");
    if (status == TVK_OK) {
        status = settle_entry(ctx, leaf, 1);
    }
    if (status == TVK_OK) {
        status = tvk_map_datatree_add_subtree(ctx, current_entry(ctx), "mtu", kNativeNs, value, nullptr, nullptr, 0);
    }
    ctx->state->pending_list_node = interface_entry;  // it has not moved, only its children have
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

// Returns a leaf that the device observes, or null. Observed leaves stand in a list of their own.
const Node *observed(tvk_map_ctx ctx, const char *leaf) {
    const Nodes states = children_of(find(native_root(ctx), kNativeStates));
    const Node *state = find_entry(ctx, states, interface_name, entry_key(ctx, kInterfaceList));
    return state != nullptr ? find(state, leaf) : nullptr;
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
    {.tag = "name", .type = &kInterfaceName},
    {.tag = "type", .path = "type", .values = kTypes, .value_ns = kInterfaceTypeNs},
    {.tag = "mtu", .type = &kUint16, .edit = edit_mtu, .read = read_mtu},
    {.tag = "description", .type = &kString, .path = "description"},
    {.tag = "enabled", .type = &kBoolean, .default_value = "true", .edit = edit_enabled, .read = read_enabled},
    {.tag = "ifindex", .read = read_if_index, .in_state_alone = true},
    {.tag = "admin-status", .read = read_admin_status, .in_state_alone = true},
    {.tag = "oper-status", .read = read_oper_status, .in_state_alone = true},
};
constexpr LeafContainer kConfig = {kRules, &kInterfaceList, "config", kInterfacesNs, in_interface};
constexpr LeafContainer kState = {kRules, &kInterfaceList, "state", kInterfacesNs, nullptr};

// ---- hold-time ----

constexpr LeafRule kHoldTimeRules[] = {
    {.tag = "up", .type = &kUint32, .path = "carrier-delay/up", .default_value = "0"},
    {.tag = "down", .type = &kUint32, .path = "carrier-delay/down", .default_value = "0"},
};
constexpr LeafContainer kHoldTimeConfig = {kHoldTimeRules, &kInterfaceList, "hold-time/config", kInterfacesNs,
                                           in_interface};
constexpr LeafContainer kHoldTimeState = {kHoldTimeRules, &kInterfaceList, "hold-time/state", kInterfacesNs, nullptr};

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
constexpr struct tmap_node_cont_info kHoldTime = container_table(enter_hold_time, kHoldTimeChildren);

qerrno parse_hold_time(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kHoldTime, kInterfacesNs);
}

// ---- interface ----

qerrno handle_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kInterfaceList);
    }
    char *name = nullptr;
    qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    if (status == TVK_OK) {
        status = enter_interface(ctx, node, target, name, Kind::kInterface);
    }
    if (status == TVK_OK && tvk_map_is_request_delete(node) != 0) {
        status = remove_subinterfaces(ctx, node, target, name);
    }
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
constexpr struct tmap_node_list_info kInterface = list_table(handle_interface, kInterfaceChildren, kInterfaceKeys);

qerrno parse_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kInterface, kInterfaceList);
}

// ---- interfaces ----

qerrno enter_interfaces(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    if (is_read(ctx)) {
        return enter_read(ctx);
    }
    forget_interfaces(ctx);  // a deletion removes them all
    return settle_container(ctx, node, target, kNativeInterfaces);
}

constexpr struct tmap_child_entry kInterfacesChildren[] = {{"interface", parse_interface, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kInterfaces = container_table(enter_interfaces, kInterfacesChildren);

}  // namespace

qerrno parse_interfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_top(ctx, node, target, &kInterfaces, kInterfacesNs);
}

qerrno in_interface(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    char *name = nullptr;
    if (is_read(ctx)) {
        return enter_read(ctx);
    }
    const qerrno status = tvk_map_get_node_info(ctx, kInterfacePath, "name", &name);
    return status == TVK_OK ? enter_interface(ctx, node, target, name, Kind::kInterface) : status;
}

Nodes native_interfaces(const Node *root) {
    return children_of(find(root, kNativeInterfaces));
}

NodeRange<Node> native_interfaces(Node *root) {
    return children_of(find(root, kNativeInterfaces));
}

Text interface_name(const Node &entry) {
    return child_text(entry, "interface-name");
}

qerrno edit_enabled(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *value) {
    if (equal(value, "false")) {
        return add_value(ctx, leaf, target, "shutdown", nullptr);
    }
    Node removal = *leaf;
    tvk_map_datatree_set_operation(&removal, TVK_OPERATION_REMOVE);
    return add_value(ctx, &removal, target, "shutdown", nullptr);
}

const char *read_enabled(tvk_map_ctx, const Node *native) {
    return find(native, "shutdown") != nullptr ? "false" : nullptr;
}

}  // namespace interfaces
