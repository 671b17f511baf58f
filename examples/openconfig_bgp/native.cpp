// Enters native entries by keys of the node hierarchy, and adds values by xpath.
#include "native.h"

#include <cstdio>
#include <cstring>

#include "conversions.h"
#include "kel_memory.h"
#include "tvk_string.h"

namespace bgp {

namespace {

// Runs an operation on the node that xpath leads to below root. Returns TVK_ERR_INVALID when a text does not fit.
qerrno run(tvk_map_ctx ctx, Node *root, uint32_t op, const char *xpath, const char *value,
           tvk_map_node_operation &record) {
    record = {};
    record.root = root;
    record.op = op;
    record.kind = value != nullptr ? TVK_XPATH_LEAF : TVK_XPATH_CONTAINER;
    const bool fits = tvk_strcpy_s(__func__, record.ns, sizeof record.ns, kNativeNs) == 0 &&
                      tvk_strcpy_s(__func__, record.xpath, sizeof record.xpath, xpath) == 0 &&
                      tvk_strcpy_s(__func__, record.value, sizeof record.value, value != nullptr ? value : "") == 0;
    return fits ? tvk_map_tree_xpath_operations(ctx, &record) : TVK_ERR_INVALID;
}

// Adds the node at path below root, or changes its value. The former value belongs to the caller then.
qerrno put(tvk_map_ctx ctx, Node *root, uint32_t op, const char *path, const char *value) {
    char xpath[TVK_MAP_MAX_PATH];
    std::snprintf(xpath, sizeof xpath, "/%s", path);
    tvk_map_node_operation record;
    return run(ctx, root, op, xpath, value, record);
}

// Returns the value of a key of the list entry at a path of the hierarchy, or null when the walk is in none.
const char *key_value(tvk_map_ctx ctx, const char *path, const char *tag) {
    char *value = nullptr;
    tvk_map_get_node_info(ctx, path, tag, &value);
    return value;
}

qerrno enter_instance(tvk_map_ctx ctx, const Node *, Node *target) {
    constexpr List kInstanceList = {"instances", "instance", "instance-name", kNativeNs};
    ctx->state->pending_list_node = nullptr;  // the path leads on from the root
    Node *root = nullptr;
    const qerrno status = tvk_map_datatree_add_subtree(ctx, target, "bgp", kNativeNs, nullptr, nullptr, &root, 0);
    return status == TVK_OK ? enter_entry(ctx, root, kInstanceList, key_value(ctx, kInstancePath, "name")) : status;
}

qerrno enter_peer(tvk_map_ctx ctx, const Node *node, Node *target) {
    constexpr List kPeerList = {"peers", "peer", "address", kNativeNs};
    if (const qerrno status = enter_instance(ctx, node, target); status != TVK_OK) {
        return status;
    }
    Scratch number;
    const char *address = key_value(ctx, kNeighborPath, "neighbor-address");
    return enter_entry(ctx, current_entry(ctx), kPeerList,
                       address != nullptr ? number_of_address(address, number) : nullptr);
}

qerrno enter_family(tvk_map_ctx ctx, const Node *node, Node *target) {
    constexpr List kFamilyList = {"families", "family", "name", kNativeNs};
    if (const qerrno status = enter_peer(ctx, node, target); status != TVK_OK) {
        return status;
    }
    const char *identity = key_value(ctx, kAfiSafiPath, "afi-safi-name");
    return enter_entry(ctx, current_entry(ctx), kFamilyList, native_value(kFamilies, identity));
}

}  // namespace

qerrno in_instance(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : enter_instance(ctx, node, target);
}

qerrno in_peer(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : enter_peer(ctx, node, target);
}

qerrno in_family(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return is_read(ctx) ? enter_read(ctx) : enter_family(ctx, node, target);
}

qerrno set_process(tvk_map_ctx ctx, const Node *name) {
    tvk_map_node_operation record;
    const qerrno status = run(ctx, current_entry(ctx), TVK_XPATH_READ, "/process-name", nullptr, record);
    if (status == TVK_ERR_NOT_PRESENT) {
        return put(ctx, current_entry(ctx), TVK_XPATH_ADD, "process-name", name->data);
    }
    if (status == TVK_OK && !equal(record.value, name->data)) {
        return refuse(ctx, name, TVK_ERR_INVALID, "the instance has a process already, %s", Quoted(record.value).text);
    }
    return status;
}

bool is_plain_name(const char *name) {
    return std::strpbrk(name, "[]") == nullptr && is_text(name, 1, 255) && std::strlen(name) < TVK_MAP_XPATH_MAX_VALUE;
}

}  // namespace bgp

qerrno mapping::add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value) {
    Node *entry = current_node(ctx, target);
    Node *native = find(entry, path);
    const bool was_there = native != nullptr;
    if (tvk_map_is_request_delete(leaf) == 0) {
        take_back_removal(native);  // xpaths pass over a node that is marked as removed
    }
    if (!was_there || value != nullptr) {
        char *former = was_there ? native->data : nullptr;
        const qerrno status = bgp::put(ctx, entry, was_there ? TVK_XPATH_MODIFY : TVK_XPATH_ADD, path, value);
        if (status != TVK_OK) {
            return status;
        }
        kel_named_free(former);
        native = find(entry, path);
    }
    const Node *within = was_there ? current_entry(ctx) : nullptr;
    if (tvk_map_is_request_delete(leaf) != 0) {
        remove_entry(ctx, leaf, native, 0, within);
    } else {
        give_operation(ctx, leaf, native, within);
    }
    return TVK_OK;
}
