// Hooks that generated code calls and that have no work to do.
#include "tvk_map_walk.h"

qerrno tmap_high_augment_parse(tvk_map_ctx, const struct qidl_tvk_datatree *, struct qidl_tvk_datatree *,
                               tmap_node_cont_info_p) {
    return TVK_OK;
}

qerrno tvk_map_cont_handle_when_statement(tvk_map_ctx, const struct qidl_tvk_datatree *, struct qidl_tvk_datatree *,
                                          tmap_node_cont_info_p) {
    return TVK_OK;
}

qerrno tvk_map_list_handle_when_statement(tvk_map_ctx, const struct qidl_tvk_datatree *, struct qidl_tvk_datatree *,
                                          tmap_node_list_info_p) {
    return TVK_OK;
}
