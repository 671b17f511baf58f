// Looks up native entries and namespaces.
#include "list_shape.h"

namespace mapping {

bool is_of_module(const Node &leaf, const char *value_ns) {
    return leaf.data_ns == nullptr || value_ns == nullptr || equal(leaf.data_ns, value_ns);
}

bool is_read(tvk_map_ctx ctx) {
    const uint32_t type = ctx->state->request->type;
    return type == TVK_REQUEST_GET || type == TVK_REQUEST_GET_CONFIG;
}

const Node *native_root(tvk_map_ctx ctx) {
    return static_cast<const Node *>(tvk_map_get_varn_conn_hdl(ctx, VARN_CONN_A_0, 0, 0));
}

const Node *native_entry(tvk_map_ctx ctx, const ListShape &list) {
    return memory_of(ctx).levels[list.level].native;
}

const char *entry_key(tvk_map_ctx ctx, const ListShape &list) {
    return memory_of(ctx).levels[list.level].key;
}

const Node *find_entry(tvk_map_ctx ctx, Nodes list, TextOf text_of, const char *text) {
    Entries found;
    note_failure(ctx, Entries::find(ctx, list.data(), list, text_of, all_of(text), found));
    return memory_of(ctx).failure == TVK_OK ? found.next() : nullptr;
}

Text child_text(const Node &entry, const char *tag) {
    const Node *child = find(&entry, tag);
    return all_of(child != nullptr ? child->data : nullptr);
}

bool is_of_model(tvk_map_ctx ctx, const Node &node, const char *ns) {
    return equal(node.ns, ns) || (node.ns == nullptr && is_read(ctx));
}

qerrno refuse_namespace(tvk_map_ctx ctx, const Node *node, const char *ns) {
    return refuse(ctx, node, TVK_ERR_NAMESPACE, "its namespace is %s, not '%s'", Quoted(node->ns).text, ns);
}

}  // namespace mapping
