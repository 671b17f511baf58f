// Stitching: hanging a list of one model below a container or list entry of another.
#include <cstring>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_common/state/pending_entry.h"
#include "tvk_map_lists.h"
#include "tvk_map_walk.h"
#include "tvk_map_xpath.h"

namespace tvk {

namespace {

bool check_stitching_record(tvk_map_ctx ctx, const tvk_map_node_operation *record) {
    if (record == nullptr || ctx->state == nullptr) {
        TVK_ERR(ctx, "NULL arguments passed");
        return false;
    }
    return std::memchr(record->trim_path, '\0', sizeof record->trim_path) != nullptr;
}

// Adds the node of the record or finds it, and puts it into the record's result.
bool add_stitch_node(tvk_map_ctx ctx, tvk_map_node_operation &record) {
    record.op = TVK_XPATH_ADD;
    qerrno status = tvk_map_tree_xpath_operations(ctx, &record);
    if (status == TVK_ERR_PRESENT) {
        TVK_TRC(ctx, "list already exists");
        status = TVK_OK;
    }
    if (status != TVK_OK || record.result == nullptr) {
        TVK_ERR(ctx, "List operation failed %d. %s", static_cast<int>(status), record.trim_path);
        return false;
    }
    return true;
}

qerrno install_stitch_node(tvk_map_ctx ctx, const tvk_map_node_operation &record) {
    set_pending_node(*ctx->state, record.result);
    const qerrno status = tvk_map_copy_trim_path_list_ctx(ctx, record.trim_path);
    TVK_TRC(ctx, "Set trim path to: %s", shown(pending_trim_path(ctx)));
    return status == TVK_OK ? tie_pending_entry_to_level(*ctx->state) : status;
}

qerrno give_up_stitching(tvk_map_ctx ctx, qerrno status) {
    TVK_ERR(ctx, "error %d.", static_cast<int>(status));
    release_pending_entry(*ctx->state);
    return status;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_stitch_container_to_list(tvk_map_ctx ctx, struct tvk_map_node_operation *record) {
    TVK_ASSERT_CONTEXT(ctx, kCallbacksSource,
                       "qerrno tvk_map_stitch_container_to_list(tvk_map_ctx, struct tvk_map_node_operation *)");
    if (!check_stitching_record(ctx, record) || !add_stitch_node(ctx, *record)) {
        return TVK_ERR_INVALID;
    }
    qerrno status = install_stitch_node(ctx, *record);
    if (status == TVK_OK) {
        status = tvk_add_to_output_list_ctx(ctx);
    }
    return status == TVK_OK ? TVK_OK : give_up_stitching(ctx, status);
}

qerrno tvk_map_stitch_list_to_list(tvk_map_ctx ctx, struct tvk_map_node_operation *record) {
    TVK_ASSERT_CONTEXT(ctx, kCallbacksSource,
                       "qerrno tvk_map_stitch_list_to_list(tvk_map_ctx, struct tvk_map_node_operation *)");
    if (!check_stitching_record(ctx, record) || !add_stitch_node(ctx, *record)) {
        return TVK_ERR_INVALID;
    }
    const qerrno status = install_stitch_node(ctx, *record);
    return status == TVK_OK ? TVK_OK : give_up_stitching(ctx, status);
}

qerrno tvk_map_auto_stitch_list_to_list(tvk_map_ctx ctx, const void *, struct qidl_tvk_datatree *root, const char *ns,
                                        const char *const *tokens, uint32_t token_count) {
    constexpr std::int32_t kLevelOffset = 1;
    TVK_ASSERT_CONTEXT(ctx, kCallbacksSource,
                       "qerrno tvk_map_auto_stitch_list_to_list(tvk_map_ctx, const void *, struct qidl_tvk_datatree *, "
                       "const char *, const char *const *, uint32_t)");
    if (!is_read_request(ctx)) {
        return TVK_OK;
    }
    if (root == nullptr || ns == nullptr || tokens == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    tvk_map_node_operation record{};
    record.op = TVK_XPATH_ADD;
    record.kind = TVK_XPATH_INSTANCE;
    record.root = root;
    // A namespace that does not fit leaves the field empty, and the operation refuses that.
    strncpy_s(record.ns, sizeof record.ns, ns, sizeof record.ns);
    if (const qerrno status =
            tvk_map_build_xpath_from_tokens(ctx, tokens, token_count, kLevelOffset, record.xpath, record.trim_path);
        status != TVK_OK) {
        return status;
    }
    // The search wants a "/" behind the keys of a list entry.
    if (strcat_s(record.xpath, sizeof record.xpath, "/") != 0) {
        return TVK_ERR_NO_MEMORY;
    }
    TVK_TRC(ctx, "Stitch xpath: %s", record.xpath);
    TVK_TRC(ctx, "Stitch trim_path: %s", record.trim_path);
    return tvk_map_stitch_list_to_list(ctx, &record);
}
