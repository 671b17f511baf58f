// The walk of one path down a filter.
#include "tvk_map_common/filter/filter_node.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_filter.h"

namespace tvk {

namespace {

constexpr char kPrototype[] =
    "qerrno tvk_map_datatree_filter_get_response(tvk_map_ctx, struct qidl_tvk_datatree *, const char *, int, int)";

constexpr char kOperation[] = "tvk_map_datatree_filter_get_response";

// Returns the child that component names; null when there is none, or a child without a tag comes first.
Node *find_child(tvk_map_ctx ctx, Node &node, const char *component) {
    for (Node &child : children(node)) {
        if (child.tag == nullptr) {
            TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
            TVK_ERR_AS(kOperation, ctx, "Tag name is not available!");
            return nullptr;
        }
        if (same_text(child.tag, component)) {
            return &child;
        }
    }
    return nullptr;
}

qerrno walk(tvk_map_ctx ctx, Node *node, Components components, bool partial_ok, int mark_leaf) {
    while (components.current() != nullptr) {
        // Only the root can lack children here, because the walk ends at any other leaf. Such a root uses up the path
        // without a step.
        if (has(*node, TVK_HAS_SUBTREES)) {
            if (node->subtree_count == 0) {
                return TVK_ERR_NO_MEMORY;
            }
            if (mark_leaf == 0 && is_entry_by_keys(children(*node))) {
                return TVK_OK;
            }
            node = find_child(ctx, *node, components.current());
            if (node == nullptr) {
                return TVK_ERR_NOT_FOUND;
            }
            if (!has(*node, TVK_HAS_SUBTREES)) {
                if (mark_leaf == 1) {
                    mark_key(*node);
                }
                return TVK_OK;
            }
        }
        components.advance();
        if (partial_ok && components.current() == nullptr) {
            return TVK_OK;
        }
    }
    return TVK_ERR_NOT_FOUND;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_filter_get_response(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                            int partial_ok, int mark_leaf) {
    const NamedString copy = copy_text(path, "TVK MAP fltr get resp");
    if (copy == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR(ctx, "Failed to copy path string!");
        return TVK_ERR_NO_MEMORY;
    }
    if (tree == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    return walk(ctx, tree, Components{copy.get()}, partial_ok == 1, mark_leaf);
}
