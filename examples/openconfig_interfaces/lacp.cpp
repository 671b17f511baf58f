// Maps /lacp: the priority of the device, and the settings of each bundle.
#include "openconfig.h"

namespace interfaces {

namespace {

// ---- interface ----

Nodes bundle_candidates(tvk_map_ctx, const Node *root) {
    return native_interfaces(root);
}

const char *bundle_key(const Node *entry, const char *, Scratch &) {
    const Node *name = find(entry, "interface-name");
    return name != nullptr && find(entry, "lacp") != nullptr ? name->data : nullptr;
}

constexpr ListShape kBundleList = {.level = 0,
                                   .parent = nullptr,
                                   .path = "interfaces/interface",
                                   .key = "name",
                                   .key_type = &kInterfaceName,
                                   .ns = kLacpNs,
                                   .candidates = bundle_candidates,
                                   .key_of = bundle_key,
                                   .text_of = interface_name};

qerrno in_bundle(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    char *name = nullptr;
    const qerrno status = tvk_map_get_node_info(ctx, kLacpInterfacePath, "name", &name);
    return status == TVK_OK ? enter_interface(ctx, node, target, name, Kind::kEither) : status;
}

constexpr ValuePair kIntervals[] = {{"FAST", "short"}, {"SLOW", "long"}, {nullptr, nullptr}};
constexpr ValuePair kModes[] = {{"ACTIVE", "active"}, {"PASSIVE", "passive"}, {nullptr, nullptr}};

constexpr LeafRule kBundleRules[] = {
    {.tag = "name", .type = &kInterfaceName},
    {.tag = "interval", .path = "lacp/period", .values = kIntervals, .default_value = "SLOW"},
    {.tag = "lacp-mode", .path = "lacp/mode", .values = kModes, .default_value = "ACTIVE"},
    {.tag = "system-id-mac", .type = &kMacAddress, .path = "lacp/system-mac"},
    {.tag = "system-priority", .type = &kUint16, .path = "lacp/system-priority"},
};
constexpr LeafContainer kBundleConfig = {kBundleRules, &kBundleList, "config", kLacpNs, in_bundle};
constexpr LeafContainer kBundleState = {kBundleRules, &kBundleList, "state", kLacpNs, nullptr};

// The native interface stays when its LACP settings are deleted or replaced: only the container below it is. The bundle
// speaks LACP when that container is there, even an empty one.
qerrno handle_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kBundleList);
    }
    const qerrno status = in_bundle(ctx, node, 0, target);
    if (status != TVK_OK) {
        return status;
    }
    const bool is_delete = tvk_map_is_request_delete(node) != 0;
    if (!is_delete) {
        take_back_removal(current_entry(ctx));  // it was deleted as an interface, and is there again as a bundle
    }
    const qerrno added = add_value(ctx, node, target, "lacp", nullptr);
    return added == TVK_OK && is_delete ? TVK_SKIP_NODE : added;
}

constexpr struct tmap_child_entry kInterfaceChildren[] = {
    {"name", handle_key<kBundleList>, TMAP_CHILD_KEY},
    {"config", Leaves<kBundleConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kBundleState>::parse, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kInterfaceKeys[] = {{"name", kLacpInterfacePath, "config"}};
constexpr struct tmap_node_list_info kInterface = list_table(handle_interface, kInterfaceChildren, kInterfaceKeys);

qerrno parse_interface(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kInterface, kBundleList);
}

// ---- interfaces ----

// Deletes the LACP settings of all bundles in the target.
qerrno enter_interfaces(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    if (is_read(ctx)) {
        return enter_read(ctx);
    }
    if (tvk_map_is_request_delete(node) == 0) {
        return TVK_OK;
    }
    for (Node &entry : native_interfaces(target)) {
        if (Node *lacp = find(&entry, "lacp"); lacp != nullptr) {
            remove_entry(ctx, node, lacp, 0, &entry);
        }
    }
    return TVK_SKIP_NODE;
}

constexpr struct tmap_child_entry kInterfacesChildren[] = {{"interface", parse_interface, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kInterfaces = container_table(enter_interfaces, kInterfacesChildren);

qerrno parse_lacp_interfaces(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kInterfaces, kLacpNs);
}

// ---- lacp ----

// Leaves the entry of any interface, so that paths lead on from the root.
qerrno enter_global(tvk_map_ctx ctx, const Node *, uint32_t, Node *) {
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    return TVK_OK;
}

constexpr LeafRule kGlobalRules[] = {
    {.tag = "system-priority", .type = &kUint16, .path = "lacp-global/system-priority"}};
constexpr LeafContainer kGlobalConfig = {kGlobalRules, nullptr, "config", kLacpNs, enter_global};
constexpr LeafContainer kGlobalState = {kGlobalRules, nullptr, "state", kLacpNs, nullptr};

qerrno enter_lacp(tvk_map_ctx ctx, const Node *, uint32_t, Node *) {
    return is_read(ctx) ? enter_read(ctx) : TVK_OK;
}

constexpr struct tmap_child_entry kLacpChildren[] = {
    {"config", Leaves<kGlobalConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kGlobalState>::parse, TMAP_CHILD_PROPAGATE},
    {"interfaces", parse_lacp_interfaces, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_node_cont_info kLacp = container_table(enter_lacp, kLacpChildren);

}  // namespace

qerrno parse_lacp(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_top(ctx, node, target, &kLacp, kLacpNs);
}

}  // namespace interfaces
