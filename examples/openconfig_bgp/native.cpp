#include "native.h"

#include <cstdio>
#include <cstring>

#include "conversions.h"
#include "kel_memory.h"
#include "tvk_string.h"

namespace bgp {

namespace {

// An operation on what xpath leads to below root. TVK_ERR_INVALID when a text does not fit.
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

// Adds the node at path below root, or changes its value; the former value is the caller's then.
qerrno put(tvk_map_ctx ctx, Node *root, uint32_t op, const char *path, const char *value) {
    char xpath[TVK_MAP_MAX_PATH];
    std::snprintf(xpath, sizeof xpath, "/%s", path);
    tvk_map_node_operation record;
    return run(ctx, root, op, xpath, value, record);
}

// The key leaf of the list entry at a path of the hierarchy; null when the walk is in none, or it has no value.
const Node *key_leaf(tvk_map_ctx ctx, const char *path, const char *tag) {
    const Node *key = tvk_map_get_node(ctx, path, tag);
    return key != nullptr && key->data != nullptr ? key : nullptr;
}

constexpr char kInstances[] = "bgp/instances";
constexpr char kInstance[] = "bgp/instances/instance";

// Looking for an entry whose list is not there yet counts as a failure for the error path, though it is then added.
void forget_error_path(tvk_map_ctx ctx) {
    kel_named_free(ctx->state->error_xpath);
    kel_named_free(ctx->state->error_xpath_ns);
    ctx->state->error_xpath = nullptr;
    ctx->state->error_xpath_ns = nullptr;
}

// Entries that were read from a file have no number, and one of those would be given the key of the next new entry.
// They are the first ones, and get theirs all at once.
void number_instances(tvk_map_ctx ctx, const Node *root) {
    const NodeRange instances = children_of(find(root, kInstances));
    if (instances.count == 0 || (instances.first->presence & TVK_HAS_SUBTREE_INDEX) != 0) {
        return;
    }
    tvk_map_forget_children(ctx, find(root, kInstances));
    int32_t place = 0;
    for (Node &entry : instances) {
        entry.subtree_index = ++place;
        entry.presence = static_cast<uint16_t>(entry.presence | TVK_HAS_SUBTREE_INDEX);
    }
}

// Paths lead on from the entry itself, so the trim path goes.
qerrno find_or_add_instance(tvk_map_ctx ctx, Node *root, const char *name) {
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    number_instances(ctx, root);
    const bool failed_before = ctx->state->error_xpath != nullptr;
    const Node *entry = nullptr;
    const qerrno status = tvk_map_search_or_add_list(ctx, root, &entry, text(kInstance), text(name),
                                                     text("instance-name"), text(kNativeNs));
    tvk_map_free_trim_path_list_ctx(ctx);
    if (status == TVK_OK) {
        ctx->state->pending_list_node = const_cast<Node *>(entry);
        if (!failed_before) {
            forget_error_path(ctx);
        }
    }
    return status;
}

qerrno enter_instance(tvk_map_ctx ctx, const Node *node, Node *target) {
    const Node *name = key_leaf(ctx, kInstancePath, "name");
    if (name == nullptr) {
        return refuse(ctx, node, TVK_ERR_LIST_KEY);
    }
    if (!is_plain_name(name->data)) {
        return refuse(ctx, name, TVK_ERR_INVALID);
    }
    return find_or_add_instance(ctx, target, name->data);
}

qerrno enter_peer(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (const qerrno status = enter_instance(ctx, node, target); status != TVK_OK) {
        return status;
    }
    const Node *address = key_leaf(ctx, kNeighborPath, "neighbor-address");
    if (address == nullptr) {
        return refuse(ctx, node, TVK_ERR_LIST_KEY);
    }
    Scratch number;
    if (number_of_address(address->data, number) == nullptr) {
        return refuse(ctx, address, TVK_ERR_INVALID);
    }
    char xpath[TVK_MAP_MAX_PATH];
    std::snprintf(xpath, sizeof xpath, "/peers/peer[address=%s]/", number);
    // Adding passes over a peer that is marked as deleted: it goes, and one of the same address comes after it.
    tvk_map_node_operation record;
    const qerrno status = run(ctx, current_entry(ctx), TVK_XPATH_ADD, xpath, nullptr, record);
    if (status != TVK_OK && status != TVK_ERR_PRESENT) {
        return status;
    }
    ctx->state->pending_list_node = record.result;
    return TVK_OK;
}

qerrno enter_family(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (const qerrno status = enter_peer(ctx, node, target); status != TVK_OK) {
        return status;
    }
    const Node *identity = key_leaf(ctx, kAfiSafiPath, "afi-safi-name");
    if (identity == nullptr) {
        return refuse(ctx, node, TVK_ERR_LIST_KEY);
    }
    const char *name = native_value(kFamilies, identity->data);
    if (name == nullptr) {
        return refuse(ctx, identity, TVK_ERR_INVALID);
    }
    constexpr List kFamilyList = {"families", "family", "name", kNativeNs};
    return enter_entry(ctx, current_entry(ctx), kFamilyList, name);
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
    if (!is_plain_name(name->data)) {
        return refuse(ctx, name, TVK_ERR_INVALID);
    }
    tvk_map_node_operation record;
    const qerrno status = run(ctx, current_entry(ctx), TVK_XPATH_READ, "/process-name", nullptr, record);
    if (status == TVK_ERR_NOT_PRESENT) {
        return put(ctx, current_entry(ctx), TVK_XPATH_ADD, "process-name", name->data);
    }
    if (status == TVK_OK && !equal(record.value, name->data)) {
        return refuse(ctx, name, TVK_ERR_INVALID);
    }
    return status;
}

bool is_plain_name(const char *name) {
    constexpr std::size_t kMaxName = 255;
    return *name != '\0' && std::strpbrk(name, "[]") == nullptr && std::strlen(name) <= kMaxName;
}

}  // namespace bgp

qerrno mapping::add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value) {
    Node *entry = current_node(ctx, target);
    Node *native = find(entry, path);
    const bool taken_back = take_back_removal(native);
    qerrno status = TVK_OK;
    if (native == nullptr || value != nullptr) {
        char *former = native != nullptr ? native->data : nullptr;
        status = bgp::put(ctx, entry, native == nullptr ? TVK_XPATH_ADD : TVK_XPATH_MODIFY, path, value);
        kel_named_free(status == TVK_OK ? former : nullptr);
        native = find(entry, path);
    }
    if (status != TVK_OK) {
        return status == TVK_ERR_INVALID ? refuse(ctx, leaf, status) : status;
    }
    if (tvk_map_is_request_delete(leaf) != 0) {
        remove_entry(ctx, native, 0, leaf->operation);
    } else if (!taken_back) {
        give_operation(ctx, leaf, native);
    }
    return TVK_OK;
}
