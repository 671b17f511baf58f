// Questions about the children of the node at a path.
#include <cstring>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/openconfig.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"

namespace tvk {

namespace {

constexpr char kCounting[] = "tvk_map_datatree_get_subtree_num";

qerrno find_last_child(tvk_map_ctx ctx, Node *tree, const char *path, Node **out) {
    Node *reached = nullptr;
    const qerrno status =
        tvk_map_datatree_add_path_flagged(ctx, tree, path, kOpenconfigBgpNs, nullptr, nullptr, &reached, 0, 0);
    if (status != TVK_OK) {
        return status;
    }
    if (reached == nullptr || children(*reached).empty()) {
        tvk_oc_error_path(ctx);
        return TVK_ERR_INVALID;
    }
    *out = &children(*reached).back();
    return TVK_OK;
}

// Descends from node to the child that the next component names; node stays when there is none. Returns false when a
// child without a tag comes first.
bool descend(const Node *&node, const char *next) {
    for (const Node &child : children(*node)) {
        if (!has(child, TVK_HAS_TAG) || child.tag == nullptr) {
            return false;
        }
        if (std::strcmp(child.tag, next) == 0) {
            node = &child;
            return true;
        }
    }
    return true;
}

qerrno count_children(tvk_map_ctx ctx, const Node *node, Components components, uint32_t *count) {
    for (; !components.is_last(); components.advance()) {
        TVK_TRC_AS(kCounting, ctx, "Checking node '%s'", components.current());
        if (node->tag == nullptr) {
            TVK_ERR_AS(kCounting, ctx, "Invalid datatree passed!");
            return TVK_ERR_NOT_FOUND;
        }
        if (std::strcmp(node->tag, components.current()) != 0) {
            TVK_ERR_AS(kCounting, ctx, "Can't find '%s' in the datatree!", components.current());
            return TVK_ERR_NOT_FOUND;
        }
        TVK_TRC_AS(kCounting, ctx, "Checking subtrees of node '%s'", components.current());
        if (children(*node).empty()) {
            *count = 0;
            return TVK_OK;
        }
        if (!descend(node, components.next())) {
            TVK_ERR_AS(kCounting, ctx, "Invalid datatree passed!");
            return TVK_ERR_NOT_FOUND;
        }
    }
    // The last component is not compared. When it matched no child, node is still the one above it.
    TVK_TRC_AS(kCounting, ctx, "Checking subtrees of a last node '%s'", components.current());
    *count = has(*node, TVK_HAS_SUBTREES) ? static_cast<uint32_t>(node->subtree_count) : 0;
    return TVK_OK;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_get_last_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                         struct qidl_tvk_datatree **out) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_datatree_get_last_subtree(tvk_map_ctx, struct qidl_tvk_datatree *, const char "
                       "*, struct qidl_tvk_datatree **)");
    TVK_TRC(ctx, "Start");
    if (tree == nullptr || path == nullptr || out == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const qerrno status = find_last_child(ctx, tree, path, out);
    TVK_TRC(ctx, "End");
    return status;
}

qerrno tvk_map_datatree_get_subtree_num(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, const char *path,
                                        uint32_t *count) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_datatree_get_subtree_num(tvk_map_ctx, const struct qidl_tvk_datatree *, const "
                       "char *, uint32_t *)");
    TVK_TRC(ctx, "Start");
    if (tree == nullptr || path == nullptr || count == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    qerrno status = TVK_OK;
    if (!has(*tree, TVK_HAS_SUBTREES)) {
        *count = 0;
    } else if (const NamedString copy = copy_text(path, "TVK MAP get subtree num"); copy == nullptr) {
        TVK_ERR(ctx, "Failed to copy path string!");
        status = TVK_ERR_NO_MEMORY;
    } else {
        TVK_TRC(ctx, "Searching subtrees of path '%s'", path);
        const Components components{copy.get()};
        if (components.current() != nullptr) {
            status = count_children(ctx, tree, components, count);
        }
    }
    TVK_TRC(ctx, "End");
    return status;
}
