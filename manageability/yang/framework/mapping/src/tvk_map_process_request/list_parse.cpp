// The parse of a list entry, step by step: its keys, then one pass, or two for a replace.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_process_request/list_keys.h"
#include "tvk_map_process_request/list_pass.h"

namespace tvk {

namespace {

void enter(const ListEntry &entry) {
    tvk_map_add_to_node_hierarchy(entry.ctx, &entry.node, TVK_LEVEL_LIST);
    set_node_type(entry.node, TVK_NODE_TYPE_LIST);
    if (is_read_request(entry.ctx)) {
        clear_walk_flags(entry.ctx);
    }
}

void leave(const ListEntry &entry, int items) {
    for (; items > 0; --items) {
        tvk_map_util_itree_stack_pop(entry.ctx);
    }
    if (!is_propagating(entry.ctx)) {
        tvk_map_remove_from_node_hierarchy(entry.ctx, &entry.node);
    }
}

void become_merge(const ListEntry &entry) {
    set_operation(entry.node, TVK_OPERATION_MERGE);
    set_build_flags(entry.ctx, 0, TVK_BUILD_REPLACE_REMOVING);
}

// Replaces in two passes: a removal by the keys, then a merge. The children stay in place, because the removal needs
// the keys.
qerrno replace(const ListEntry &entry, SeenChildren &seen, int &items) {
    set_operation(entry.node, TVK_OPERATION_REMOVE);
    begin_replace(entry.ctx);
    seen.empty_key = false;
    seen.other = false;
    qerrno status = make_pass(entry, seen, items);
    become_merge(entry);
    if (status == TVK_OK) {
        status = make_pass(entry, seen, items);
        become_merge(entry);
    }
    end_replace(entry.ctx);
    return status;
}

// Returns whether the keys are checked: only when the request itself names the entry, not when a delete or read of a
// node above is propagated to it.
bool are_keys_checked(const ListEntry &entry) {
    return !entry.is_childless() && !is_propagating(entry.ctx) && !is_working_on_keys(entry.ctx);
}

qerrno parse(const ListEntry &entry) {
    if (!is_propagating(entry.ctx)) {
        enter(entry);
    }
    SeenChildren seen;
    int items = 0;
    qerrno status = tvk_map_update_current_list_node(entry.ctx, entry.info.list_path);
    if (status == TVK_OK && are_keys_checked(entry)) {
        KeyCounts counts;
        status = scan_keys(entry, counts, seen);
        if (status != TVK_OK) {
            // The level of the hierarchy stays here, unlike on every other way out.
            TVK_ERR_AS(kListParse, entry.ctx, "leafref value check fail");
            TVK_TRC_AS(kListParse, entry.ctx, "End");
            return status;
        }
        status = judge_keys(entry, counts);
    }
    if (status == TVK_OK) {
        const bool is_replaced = entry.node.operation == TVK_OPERATION_REPLACE;
        status = is_replaced ? replace(entry, seen, items) : make_pass(entry, seen, items);
    }
    leave(entry, items);
    TVK_TRC_AS(kListParse, entry.ctx, "End");
    return status;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tmap_high_list_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, struct qidl_tvk_datatree *target,
                            tmap_node_list_info_p info) {
    TVK_ASSERT_CONTEXT(ctx, kProcessRequestSource,
                       "qerrno tmap_high_list_parse(tvk_map_ctx, const struct qidl_tvk_datatree *, struct "
                       "qidl_tvk_datatree *, tmap_node_list_info_p)");
    TVK_TRC(ctx, "Start");
    if (const qerrno status = check_arguments(kListParse, ctx, node, target, info); status != TVK_OK) {
        return status;
    }
    if (const qerrno status = check_children(kListParse, ctx, *node); status != TVK_OK) {
        return status;
    }
    const ListEntry entry{ctx, const_cast<Node &>(*node), *target, *info};
    if (entry.is_childless()) {
        TVK_ERR(ctx, "No keys specified with a list node.");
        if (!is_propagating(ctx) && !is_working_on_keys(ctx) && is_add_request(ctx)) {
            TVK_ERR(ctx, "No keys specified with a list node.");
            TVK_TRC(ctx, "End");
            return TVK_ERR_NOT_FOUND;
        }
    }
    return parse(entry);
}
