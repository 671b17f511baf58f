// The error path: the place in the OpenConfig model at which a request failed.
#include <algorithm>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_lists.h"

namespace tvk {

namespace {

// Appends texts to a path. After the first one that does not fit nothing more is appended.
class ErrorPath {
public:
    ErrorPath(const char *caller, char *buffer) : caller_(caller), buffer_(buffer) {}

    ErrorPath &operator<<(const char *text) {
        fits_ = fits_ && tvk_strcat_s(caller_, buffer_, TVK_MAP_MAX_PATH, text) == 0;
        return *this;
    }
    bool fits() const { return fits_; }

private:
    const char *caller_;
    char *buffer_;
    bool fits_ = true;
};

bool append_level(char *buffer, const tvk_map_hierarchy_level &level) {
    if (level.node == nullptr) {
        return false;
    }
    if (level.kind == TVK_LEVEL_LIST) {
        return tvk_oc_error_path_list_append(buffer, level.node) == TVK_OK;
    }
    ErrorPath path{"tvk_oc_error_path", buffer};
    path << "ns1:" << level.node->tag;
    if (level.kind == TVK_LEVEL_CONTAINER) {
        path << "/";
    }
    return path.fits();
}

bool build(tvk_map_request_state &state, char *buffer) {
    const int depth = std::min<int>(state.hierarchy_depth, TVK_MAP_MAX_HIERARCHY_LEVELS);
    for (int i = 0; i < depth; ++i) {
        const tvk_map_hierarchy_level &level = state.hierarchy[i];
        if (i == 0) {
            const char *ns = level.node != nullptr ? level.node->ns : nullptr;
            replace(state.error_xpath_ns, copy_text(ns, "OC Error Namespace"));
            if (state.error_xpath_ns == nullptr) {
                return false;
            }
        }
        if (!append_level(buffer, level)) {
            return false;
        }
    }
    return true;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_oc_error_path(tvk_map_ctx ctx) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource, "qerrno tvk_oc_error_path(tvk_map_ctx)");
    if (ctx->state == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    tvk_map_request_state &state = *ctx->state;
    if (state.error_xpath != nullptr) {
        return TVK_OK;
    }
    NamedString buffer = allocate_text(TVK_MAP_MAX_PATH, "TVK MAP error xpath");
    if (buffer == nullptr) {
        TVK_ERR(ctx, "Failed to allocate memory\n");
        return TVK_ERR_NO_MEMORY;
    }
    if (!build(state, buffer.get())) {
        TVK_ERR(ctx, "Memory allocation failed \n");
        release(state.error_xpath_ns);
        return TVK_ERR_NO_MEMORY;
    }
    state.error_xpath = buffer.release();
    return TVK_OK;
}

qerrno tvk_oc_error_path_list_append(char *buffer, const struct qidl_tvk_datatree *node) {
    if (buffer == nullptr || node == nullptr) {
        return TVK_ERR_INVALID;
    }
    ErrorPath path{__func__, buffer};
    path << "ns1:" << node->tag;
    bool has_keys = false;
    // The count alone decides; the presence bit does not matter.
    for (const Node &child : child_array(node->subtrees, node->subtree_count)) {
        if (is_key(child)) {
            // Appending a key without data fails, which drops the whole path: half a predicate would name another
            // entry.
            path << (has_keys ? " and " : "[") << child.tag << " = '" << child.data << "'";
            has_keys = true;
        }
    }
    if (has_keys) {
        path << "]";
    }
    path << "/";
    return path.fits() ? TVK_OK : TVK_ERR_NO_MEMORY;
}

uint32_t tvk_map_get_error_option(tvk_map_ctx ctx) {
    return ctx->state->request->error_option;
}
