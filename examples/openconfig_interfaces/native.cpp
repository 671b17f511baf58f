// Enters native interfaces, and adds values by path.
#include "native.h"

namespace interfaces {

namespace {

constexpr List kInterfaces = {kNativeInterfaces, "interface-configuration", "interface-name", kNativeNs};

bool is_current(tvk_map_ctx ctx, const char *name) {
    const Node *entry = current_entry(ctx);
    const Node *key = nullptr;
    return entry != nullptr && equal(entry->tag, kInterfaces.name) &&
           tvk_map_datatree_get_subtree(entry, &key, kInterfaces.key, name, nullptr) == TVK_OK;
}

// Refuses an entry of another kind. The name of a deleted entry is free for either kind.
qerrno check_kind(tvk_map_ctx ctx, const Node *node, const char *name, Kind kind) {
    const Node *entry = current_entry(ctx);
    if (kind == Kind::kEither || memory_of(ctx).entry_is_new || tvk_map_is_request_delete(entry) != 0 ||
        is_virtual(entry) == (kind == Kind::kSubinterface)) {
        return TVK_OK;
    }
    return refuse(ctx, node, TVK_ERR_INVALID,
                  kind == Kind::kInterface ? "%s is a subinterface of the device" : "the device has an interface %s",
                  Quoted(name).text);
}

}  // namespace

qerrno enter_interface(tvk_map_ctx ctx, const Node *node, Node *target, const char *name, Kind kind) {
    if (is_current(ctx, name)) {
        memory_of(ctx).entry_is_new = false;
        return TVK_OK;
    }
    qerrno status = enter_entry(ctx, target, kInterfaces, name);
    if (status == TVK_OK) {
        status = check_kind(ctx, node, name, kind);
    }
    return status == TVK_OK
               ? tvk_map_datatree_add_subtree(ctx, current_entry(ctx), "active", kNativeNs, "act", nullptr, nullptr, 0)
               : status;
}

bool is_virtual(const Node *entry) {
    return find(entry, "interface-virtual") != nullptr;
}

}  // namespace interfaces

qerrno mapping::add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value) {
    Node *entry = current_node(ctx, target);
    Node *native = find(entry, path);
    const bool was_there = native != nullptr;
    if (tvk_map_is_request_delete(leaf) == 0) {
        take_back_removal(native);  // paths pass over a node that is marked as removed
    }
    if (!was_there || value != nullptr) {
        const qerrno status =
            tvk_map_datatree_add_path(ctx, entry, path, interfaces::kNativeNs, value, nullptr, &native, 0);
        if (status != TVK_OK || native == nullptr) {
            return status;
        }
    }
    const Node *within = was_there ? current_entry(ctx) : nullptr;
    if (tvk_map_is_request_delete(leaf) != 0) {
        remove_entry(ctx, leaf, native, 0, within);
    } else {
        give_operation(ctx, leaf, native, within);
    }
    return TVK_OK;
}

qerrno mapping::open_entry(tvk_map_ctx ctx, Node *target, const ListShape &list, Place &place) {
    if (list.parent != nullptr) {
        if (const qerrno status = open_entry(ctx, target, *list.parent, place); status != TVK_OK) {
            return status;
        }
    }
    place = {target, 0};  // the output list leads on from there
    if (ctx->state->output_list_count > list.level) {
        return TVK_OK;
    }
    Node *entry = nullptr;
    qerrno status = tvk_map_datatree_add_path_flagged(ctx, target, list.path, list.ns, nullptr, nullptr, &entry, 1,
                                                      TVK_ADD_UNFILTERED);
    if (status == TVK_OK) {
        status = tvk_map_datatree_add_subtree(ctx, entry, list.key, list.ns, entry_key(ctx, list), nullptr, nullptr, 0);
    }
    if (status == TVK_OK) {
        ctx->state->pending_list_node = entry;
        status = tvk_map_copy_trim_path_list_ctx(ctx, list.path);
    }
    return status == TVK_OK ? tvk_add_to_output_list_ctx(ctx) : status;
}
