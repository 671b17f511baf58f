// Checks namespaces and keys before a walk.
#include "parse.h"

#include "edit_keys.h"

namespace mapping {

// In a propagation the node is one above, so its namespace is not looked at.
qerrno parse_container(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns) {
    if (ctx->state->delete_walk_active != 1 && !is_of_model(ctx, *node, ns)) {
        return is_read(ctx) ? TVK_OK : refuse_namespace(ctx, node, ns);
    }
    return tmap_high_container_parse(ctx, node, target, info);
}

qerrno parse_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list) {
    const bool is_own = ctx->state->delete_walk_active != 1;
    if (is_own && !is_of_model(ctx, *node, list.ns)) {
        return is_read(ctx) ? TVK_OK : refuse_namespace(ctx, node, list.ns);
    }
    if (is_read(ctx)) {
        return answer_list(ctx, node, target, info, list);
    }
    const qerrno status = is_own ? check_keys(ctx, node, info, list) : TVK_OK;
    return status == TVK_OK ? tmap_high_list_parse(ctx, node, target, info) : status;
}

qerrno parse_top(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns) {
    Node *top = target;
    qerrno status = open_memory(ctx);
    if (status == TVK_OK && is_read(ctx)) {
        status = tvk_map_datatree_add_subtree(ctx, target, node->tag, ns, nullptr, nullptr, &top, 0);
    }
    if (status == TVK_OK) {
        status = parse_container(ctx, node, top, info, ns);
    }
    tvk_map_release_pending_entry(ctx);
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    return status != TVK_OK || ctx->mapping_data == nullptr ? status : memory_of(ctx).failure;
}

}  // namespace mapping
