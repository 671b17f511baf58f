// Maps /network-instances/network-instance with its protocols. Of the protocols it maps BGP alone.
#include "native.h"

namespace bgp {

namespace {

// ---- The lists in a read ----

Nodes instance_candidates(tvk_map_ctx, const Node *root) {
    return children_of(find(root, "bgp/instances"));
}

const char *plain_name(const Node *leaf) {
    return leaf != nullptr && leaf->data != nullptr && is_plain_name(leaf->data) ? leaf->data : nullptr;
}

const char *instance_key(const Node *instance, const char *, Scratch &) {
    return plain_name(find(instance, "instance-name"));
}

// An instance has one process, which is no native node of its own.
Nodes protocol_candidates(tvk_map_ctx, const Node *instance) {
    return {instance, 1};
}

const char *protocol_key(const Node *instance, const char *, Scratch &) {
    return plain_name(find(instance, "process-name"));
}

Text instance_name(const Node &instance) {
    return child_text(instance, "instance-name");
}

Text process_name(const Node &instance) {
    return child_text(instance, "process-name");
}

constexpr FixedKey kIdentifier = {"identifier", "BGP", kPolicyTypesNs};

}  // namespace

constexpr ListShape kInstanceList = {.level = 0,
                                     .parent = nullptr,
                                     .path = "network-instance",
                                     .key = "name",
                                     .key_type = &kPlainName,
                                     .ns = kNetworkInstanceNs,
                                     .candidates = instance_candidates,
                                     .key_of = instance_key,
                                     .text_of = instance_name};
constexpr ListShape kProtocolList = {.level = 1,
                                     .parent = &kInstanceList,
                                     .path = "network-instance/protocols/protocol",
                                     .key = "name",
                                     .key_type = &kPlainName,
                                     .ns = kNetworkInstanceNs,
                                     .candidates = protocol_candidates,
                                     .key_of = protocol_key,
                                     .text_of = process_name,
                                     .fixed_key = &kIdentifier};

namespace {

const char *read_identifier(tvk_map_ctx, const Node *) {
    return kIdentifier.value;
}

// ---- protocol ----

constexpr LeafRule kProtocolRules[] = {
    {.tag = "identifier", .read = read_identifier, .value_ns = kPolicyTypesNs},
    {.tag = "name", .type = &kPlainName},
};
constexpr LeafContainer kProtocolConfig = {kProtocolRules, &kProtocolList, "config", kNetworkInstanceNs, in_instance};
constexpr LeafContainer kProtocolState = {kProtocolRules, &kProtocolList, "state", kNetworkInstanceNs, nullptr};

// Checks the identifier. Clients may leave its module out, as no other module has protocols.
qerrno check_identifier(tvk_map_ctx ctx, const Node *protocol) {
    const Node *identifier = find(protocol, kIdentifier.tag);
    if (!is_of_module(*identifier, kIdentifier.value_ns)) {
        return refuse_identity(ctx, identifier, kIdentifier.value_ns);
    }
    return equal(identifier->data, kIdentifier.value)
               ? TVK_OK
               : refuse(ctx, identifier, TVK_ERR_UNSUPPORTED, "only BGP is mapped, %s is not",
                        Quoted(identifier->data).text);
}

qerrno handle_protocol(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (is_read(ctx)) {
        return push_instances(ctx, kProtocolList);
    }
    qerrno status = check_identifier(ctx, node);
    if (status == TVK_OK) {
        status = in_instance(ctx, node, 0, target);
    }
    if (status == TVK_OK) {
        status = settle_entry(ctx, node, 1);
    }
    if (status != TVK_OK) {
        return status;
    }
    if (!tvk::has_operation(*node)) {
        give_creation(ctx);
    }
    return set_process(ctx, find(node, "name"));
}

constexpr struct tmap_child_entry kProtocolChildren[] = {
    {"identifier", handle_key<kProtocolList>, TMAP_CHILD_KEY},
    {"name", handle_key<kProtocolList>, TMAP_CHILD_KEY},
    {"config", Leaves<kProtocolConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kProtocolState>::parse, TMAP_CHILD_PROPAGATE},
    {"bgp", parse_bgp, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kProtocolKeys[] = {{"identifier", kProtocolPath, "config"},
                                                   {"name", kProtocolPath, "config"}};
constexpr struct tmap_node_list_info kProtocol = list_table(handle_protocol, kProtocolChildren, kProtocolKeys);

qerrno parse_protocol(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kProtocol, kProtocolList);
}

// ---- protocols, network-instance ----

// Removes the native instance when an OpenConfig node around its BGP process is deleted, since the instance is nothing
// but that process. Does nothing else: the instance is entered when the walk meets the process.
qerrno remove_instance(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (tvk_map_is_request_delete(node) == 0) {
        return TVK_OK;
    }
    const qerrno status = in_instance(ctx, node, 0, target);
    return status == TVK_OK ? settle_entry(ctx, node, 1) : status;
}

qerrno enter_protocols(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : remove_instance(ctx, node, target);
}

constexpr struct tmap_child_entry kProtocolsChildren[] = {{"protocol", parse_protocol, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kProtocols = container_table(enter_protocols, kProtocolsChildren);

qerrno parse_protocols(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_container(ctx, node, target, &kProtocols, kNetworkInstanceNs);
}

// The native side has the name as the key alone, so an edit has nothing to enter.
qerrno enter_config(tvk_map_ctx ctx, const Node *, uint32_t, Node *) {
    return is_read(ctx) ? enter_read(ctx) : TVK_OK;
}

constexpr LeafRule kInstanceRules[] = {{.tag = "name", .type = &kPlainName}};
constexpr LeafContainer kInstanceConfig = {kInstanceRules, &kInstanceList, "config", kNetworkInstanceNs, enter_config};
constexpr LeafContainer kInstanceState = {kInstanceRules, &kInstanceList, "state", kNetworkInstanceNs, nullptr};

qerrno handle_instance(tvk_map_ctx ctx, const Node *node, Node *target) {
    return is_read(ctx) ? push_instances(ctx, kInstanceList) : remove_instance(ctx, node, target);
}

constexpr struct tmap_child_entry kInstanceChildren[] = {
    {"name", handle_key<kInstanceList>, TMAP_CHILD_KEY},
    {"config", Leaves<kInstanceConfig>::parse, TMAP_CHILD_PROPAGATE},
    {"state", Leaves<kInstanceState>::parse, TMAP_CHILD_PROPAGATE},
    {"protocols", parse_protocols, TMAP_CHILD_PROPAGATE},
};
constexpr struct tmap_key_entry kInstanceKeys[] = {{"name", kInstancePath, "config"}};
constexpr struct tmap_node_list_info kInstance = list_table(handle_instance, kInstanceChildren, kInstanceKeys);

qerrno parse_instance(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_list(ctx, node, target, &kInstance, kInstanceList);
}

// ---- network-instances ----

qerrno enter_network_instances(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : settle_container(ctx, node, target, "bgp/instances");
}

constexpr struct tmap_child_entry kNetworkInstancesChildren[] = {
    {"network-instance", parse_instance, TMAP_CHILD_PROPAGATE}};
constexpr struct tmap_node_cont_info kNetworkInstances =
    container_table(enter_network_instances, kNetworkInstancesChildren);

}  // namespace

qerrno parse_network_instances(tvk_map_ctx ctx, const Node *node, Node *target) {
    return parse_top(ctx, node, target, &kNetworkInstances, kNetworkInstanceNs);
}

}  // namespace bgp
