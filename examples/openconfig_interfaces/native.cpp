#include "native.h"

#include <cstdio>

namespace interfaces {

namespace {

bool is_current(tvk_map_ctx ctx, const char *list_path, const char *key_name, const char *key_value) {
    const Node *key = nullptr;
    return current_entry(ctx) != nullptr && equal(ctx->state->pending_trim_path, list_path) &&
           tvk_map_datatree_get_subtree(current_entry(ctx), &key, key_name, key_value, nullptr) == TVK_OK;
}

}  // namespace

qerrno enter_list(tvk_map_ctx ctx, Node *root, const char *list_path, const char *key_name, const char *key_value) {
    return enter_entry(ctx, root, list_path, key_name, key_value, kNativeNs);
}

qerrno enter_interface(tvk_map_ctx ctx, Node *target, const char *name) {
    if (is_current(ctx, kNativeInterface, "interface-name", name)) {
        return TVK_OK;
    }
    const qerrno status = enter_list(ctx, target, kNativeInterface, "interface-name", name);
    if (status != TVK_OK) {
        return status;
    }
    return tvk_map_datatree_add_path(ctx, target, "interface-configurations/interface-configuration/active", kNativeNs,
                                     "act", nullptr, nullptr, 0);
}

}  // namespace interfaces

qerrno mapping::add_value(tvk_map_ctx ctx, const Node *leaf, Node *target, const char *path, const char *value) {
    const bool taken_back = take_back_removal(find(current_node(ctx, target), path));
    const char *list_path = ctx->state->pending_trim_path;
    char whole_path[TVK_MAP_MAX_PATH];
    std::snprintf(whole_path, sizeof whole_path, "%s/%s", list_path != nullptr ? list_path : "", path);
    Node *native = nullptr;
    const qerrno status =
        tvk_map_datatree_add_path(ctx, target, whole_path, interfaces::kNativeNs, value, nullptr, &native, 0);
    if (status != TVK_OK || native == nullptr) {
        return status;
    }
    if (tvk_map_is_request_delete(leaf) != 0) {
        remove_entry(ctx, native, 0, leaf->operation);
    } else if (!taken_back) {
        give_operation(ctx, leaf, native);
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
