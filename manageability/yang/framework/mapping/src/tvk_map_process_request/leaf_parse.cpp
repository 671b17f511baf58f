// The parse of a leaf.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_process_request/request_walk.h"

namespace tvk {

namespace {

// Marks the leaf for the get filter as a selection or a content match, and notes in the walk flags which of the two it
// is.
void mark(tvk_map_ctx ctx, Node &leaf) {
    if (is_propagating(ctx) || is_working_on_keys(ctx)) {
        return;
    }
    set_node_type(leaf, TVK_NODE_TYPE_SELECTION);
    if (!is_read_request(ctx)) {
        return;
    }
    if (has(leaf, TVK_HAS_DATA)) {
        set_node_type(leaf, TVK_NODE_TYPE_CONTENT_MATCH);
        ctx->state->walk_flags |= TVK_WALK_CONTENT_MATCH_SEEN | TVK_WALK_CONTENT_MATCH_IN_REQUEST;
    } else {
        ctx->state->walk_flags |= TVK_WALK_SELECTION_SEEN;
    }
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tmap_high_leaf_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *leaf, struct qidl_tvk_datatree *target,
                            const char *, uint8_t, tmap_node_process_fp process) {
    TVK_ASSERT_CONTEXT(ctx, kProcessRequestSource,
                       "qerrno tmap_high_leaf_parse(tvk_map_ctx, const struct qidl_tvk_datatree *, struct "
                       "qidl_tvk_datatree *, const char *, uint8_t, tmap_node_process_fp)");
    TVK_TRC(ctx, "Start");
    if (const qerrno status = check_arguments(__func__, ctx, leaf, target, reinterpret_cast<const void *>(process));
        status != TVK_OK) {
        return status;
    }
    auto &request_leaf = const_cast<Node &>(*leaf);
    const qerrno status = process(ctx, &request_leaf, target);
    mark(ctx, request_leaf);
    TVK_TRC(ctx, "End");
    return status;
}
