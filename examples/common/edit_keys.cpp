// Checks keys one by one.
#include "edit_keys.h"

#include "kel_memory.h"
#include "tvk_string.h"

namespace mapping {

namespace {

constexpr char kTag[] = "example mapping";

qerrno check_key(tvk_map_ctx ctx, const Node *key, const ListShape &list) {
    if (!is_of_model(ctx, *key, list.ns)) {
        return refuse_namespace(ctx, key, list.ns);
    }
    if (!children_of(key).empty()) {
        return refuse(ctx, key, TVK_ERR_INVALID, "it holds elements, and is a leaf");
    }
    if (key->data == nullptr) {
        return refuse(ctx, key, TVK_ERR_LIST_KEY, "a key needs a value");
    }
    const ValueType *type = equal(key->tag, list.key) ? list.key_type : nullptr;
    if (type != nullptr && !type->accepts(key->data)) {
        return refuse(ctx, key, TVK_ERR_INVALID, "%s is no %s", Quoted(key->data).text, type->name);
    }
    return TVK_OK;
}

// Marks a key leaf, as the library does later on. An error that comes before can then name the entry by its keys.
void mark_as_key(const Node &leaf) {
    tvk::mark_key(const_cast<Node &>(leaf));
}

// Checks the key of that name. It must stand once: the library counts keys, and would take two of one name for two.
qerrno check_key_of_name(tvk_map_ctx ctx, const Node *entry, const char *name, const ListShape &list) {
    const Node *key = nullptr;
    for (const Node &child : children_of(entry)) {
        if (!equal(child.tag, name)) {
            continue;
        }
        if (key != nullptr) {
            return refuse(ctx, &child, TVK_ERR_INVALID, "it is given twice");
        }
        mark_as_key(child);
        key = &child;
    }
    if (key != nullptr) {
        return check_key(ctx, key, list);
    }
    const qerrno status = refuse(ctx, entry, TVK_ERR_LIST_KEY, "its key <%s> is missing", name);
    kel_named_free(ctx->state->error_node_tag);
    ctx->state->error_node_tag = tvk_strdup(name, kTag);
    return status;
}

}  // namespace

qerrno check_keys(tvk_map_ctx ctx, const Node *entry, tmap_node_list_info_p info, const ListShape &list) {
    qerrno status = TVK_OK;
    for (uint8_t i = 0; i < info->key_count && status == TVK_OK; ++i) {
        status = check_key_of_name(ctx, entry, info->keys[i].key_tag, list);
    }
    return status;
}

}  // namespace mapping
