// The end of a request: releasing what its state owns.
#include "tvk_map_common/state/request_state.h"

#include "tvk_map_common/index/children_index.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/state/instance_stack.h"
#include "tvk_map_common/state/pending_entry.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

// Releases the levels of the hierarchy without the messages of leaving them one by one: after the request nobody should
// read about them.
void release_levels(tvk_map_request_state &state) {
    for (; state.hierarchy_depth > 0; --state.hierarchy_depth) {
        tvk_map_hierarchy_level &level = state.hierarchy[state.hierarchy_depth - 1];
        release(level.tag);
        release(level.path);
        level.node = nullptr;
        level.kind = 0;
    }
    state.create_node = nullptr;
    state.create_operation = 0;
}

}  // namespace

void release_request_schema(tvk_map_ctx ctx) {
    Node *&root = ctx->state->req_tree_schema;
    if (root != nullptr) {
        release_nodes(ctx, {root, 1});
        kel_named_free(root);
        root = nullptr;
    }
}

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_release_request_state(tvk_map_ctx ctx) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return TVK_ERR_INVALID;
    }
    tvk_map_request_state &state = *ctx->state;
    release_instance_stack(ctx);
    release_request_schema(ctx);
    state.req_tree_schema_parent = nullptr;
    state.req_tree_schema_last = nullptr;
    forget_index(ctx);
    while (tvk_remove_from_output_list_ctx(ctx, nullptr, nullptr) == TVK_OK) {
    }
    release_levels(state);
    tvk_map_release_pending_entry(ctx);
    for (char **text : {&state.error_node_tag, &state.error_xpath, &state.error_xpath_ns, &ctx->current_list_node}) {
        release(*text);
    }
    return TVK_OK;
}
