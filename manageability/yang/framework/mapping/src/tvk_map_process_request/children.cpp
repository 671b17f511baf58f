#include "tvk_map_common/internal/log.h"
#include "tvk_map_lists.h"
#include "tvk_map_process_request/request_walk.h"

namespace tvk {

const tmap_child_entry *find_child_handler(tvk_map_ctx ctx, std::span<const tmap_child_entry> entries,
                                           const Node &child) {
    for (const tmap_child_entry &entry : entries) {
        TVK_ERR(ctx, "FOOBAR: tag:%s, ctag:%s", shown(child.tag), shown(entry.ctag));
        if (tvk_map_do_these_match(child.tag, entry.ctag) != 0) {
            return &entry;
        }
    }
    return nullptr;
}

qerrno refuse_unsupported_child(tvk_map_ctx ctx, const Node &child) {
    TVK_ERR(ctx, "Unsupported tag is specified in the request.");
    if (is_read_request(ctx)) {
        return TVK_OK;
    }
    set_error_node_tag(ctx, child.tag);
    tvk_oc_error_path(ctx);
    return TVK_ERR_NAMESPACE;
}

}  // namespace tvk

using namespace tvk;

int tvk_map_do_these_match(const char *a, const char *b) {
    return same_text(a, b) ? 1 : 0;
}
