// The steps that the container, the list and the leaf parse share.
#include "tvk_map_process_request/request_walk.h"

#include "tvk_map_common/internal/log.h"
#include "tvk_map_lists.h"

namespace tvk {

qerrno refuse_arguments(const char *operation, tvk_map_ctx ctx, bool lacks_nodes) {
    if (lacks_nodes) {
        TVK_ERR_AS(operation, ctx, "Invalid arguments passed!");
        tvk_oc_error_path(ctx);
    } else {
        TVK_ERR_AS(operation, ctx, "NULL argument(s) passed!");
    }
    return TVK_ERR_INVALID;
}

qerrno refuse_lost_children(const char *operation, tvk_map_ctx ctx) {
    TVK_ERR_AS(operation, ctx, "Failed to get subtrees!");
    TVK_TRC_AS(operation, ctx, "End");
    return TVK_ERR_NOT_FOUND;
}

const tmap_child_entry *find_child_handler(tvk_map_ctx ctx, std::span<const tmap_child_entry> entries,
                                           const Node &child) {
    for (const tmap_child_entry &entry : entries) {
        TVK_ERR(ctx, "FOOBAR: tag:%s, ctag:%s", shown(child.tag), shown(entry.ctag));
        if (same_text(child.tag, entry.ctag)) {
            return &entry;
        }
    }
    return nullptr;
}

namespace {

qerrno refuse_unsupported_child(tvk_map_ctx ctx, const Node &child) {
    TVK_ERR(ctx, "Unsupported tag is specified in the request.");
    if (is_read_request(ctx)) {
        return TVK_OK;
    }
    set_error_node_tag(ctx, child.tag);
    tvk_oc_error_path(ctx);
    return TVK_ERR_NAMESPACE;
}

}  // namespace

qerrno handle_unclaimed_child(tvk_map_ctx ctx, const Node &child, Node &target, const char *unsupported_ns,
                              tmap_node_process_fp child_handler) {
    if (same_text(child.ns, unsupported_ns)) {
        return refuse_unsupported_child(ctx, child);
    }
    return call(child_handler, ctx, child, target);
}

}  // namespace tvk
