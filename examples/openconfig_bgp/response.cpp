// Builds the response of a read. It stitches each entry of a list at an xpath with the keys of the entries around it.
#include <cstdio>
#include <cstring>

#include "openconfig.h"
#include "tvk_string.h"

namespace bgp {

namespace {

// Appends the steps that lead to the entry of list that is being answered. Returns false when they do not fit.
bool append_steps(tvk_map_ctx ctx, const ListShape &list, char (&xpath)[TVK_MAP_MAX_PATH]) {
    std::size_t passed = 0;
    if (list.parent != nullptr) {
        if (!append_steps(ctx, *list.parent, xpath)) {
            return false;
        }
        passed = std::strlen(list.parent->path) + 1;
    }
    char fixed[TVK_MAP_XPATH_MAX_VALUE] = "";
    if (list.fixed_key != nullptr) {
        std::snprintf(fixed, sizeof fixed, "[%s=%s]", list.fixed_key->tag, list.fixed_key->value);
    }
    char steps[TVK_MAP_MAX_PATH];
    const int length =
        std::snprintf(steps, sizeof steps, "%s%s[%s=%s]/", list.path + passed, fixed, list.key, entry_key(ctx, list));
    return length < static_cast<int>(sizeof steps) && tvk_strcat_s(__func__, xpath, sizeof xpath, steps) == 0;
}

// Gives a key that is an identity its namespace. The library adds an entry even without memory for a key of it, so the
// key is looked for.
qerrno qualify_key(tvk_map_ctx ctx, const Node *entry, const char *tag, const char *value_ns) {
    const Node *key = find(entry, tag);
    if (key == nullptr) {
        return TVK_ERR_NO_MEMORY;
    }
    if (value_ns == nullptr || key->data_ns != nullptr) {
        return TVK_OK;
    }
    char path[TVK_MAP_MAX_PATH];
    std::snprintf(path, sizeof path, "%s/%s", entry->tag, tag);
    return tvk_map_datatree_add_data_ns(ctx, entry, path, value_ns);
}

// An operation of the library that stitches an entry.
using StitchOperation = qerrno (*)(tvk_map_ctx ctx, struct tvk_map_node_operation *record);

// Adds the entry of list that is being answered to target by operation.
qerrno stitch(tvk_map_ctx ctx, Node *target, const ListShape &list, StitchOperation operation) {
    tvk_map_node_operation record{};
    record.root = target;
    record.kind = TVK_XPATH_INSTANCE;
    tvk_strcpy_s(__func__, record.ns, sizeof record.ns, list.ns);
    tvk_strcpy_s(__func__, record.trim_path, sizeof record.trim_path, list.path);
    tvk_strcpy_s(__func__, record.xpath, sizeof record.xpath, "/");
    if (!append_steps(ctx, list, record.xpath)) {
        return TVK_ERR_NO_MEMORY;
    }
    tvk_map_release_pending_entry(ctx);  // a trim path that is still there would stay
    qerrno status = operation(ctx, &record);
    if (status == TVK_OK) {
        status = qualify_key(ctx, record.result, list.key, list.key_ns);
    }
    if (status == TVK_OK && list.fixed_key != nullptr) {
        status = qualify_key(ctx, record.result, list.fixed_key->tag, list.fixed_key->value_ns);
    }
    return status;
}

}  // namespace

}  // namespace bgp

// The output list drops an entry with the container that the walk leaves. In the next container the entry is stitched
// again, and found. An entry of the innermost list is not in the output list: it stays pending, and paths are trimmed
// by it.
qerrno mapping::open_entry(tvk_map_ctx ctx, Node *target, const ListShape &list, Place &place) {
    if (list.parent != nullptr) {
        if (const qerrno status = open_entry(ctx, target, *list.parent, place); status != TVK_OK) {
            return status;
        }
    }
    if (&list == &bgp::kAfiSafiList) {
        const qerrno status = bgp::stitch(ctx, target, list, tvk_map_stitch_list_to_list);
        place = {ctx->state->pending_list_node, TVK_ADD_TRIM_PENDING};
        return status;
    }
    place = {target, 0};
    const bool is_open = ctx->state->output_list_count > list.level;
    return is_open ? TVK_OK : bgp::stitch(ctx, target, list, tvk_map_stitch_container_to_list);
}
