// Adding nodes that share the children of another node or take them over.
#include "tvk_map_common/datatree/children.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_datatree.h"

namespace tvk {

namespace {

constexpr char kSharePrototype[] =
    "qerrno tvk_map_datatree_add_subtree_with_data(tvk_map_ctx, struct qidl_tvk_datatree *, const struct "
    "qidl_tvk_datatree *, int)";

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_add_subtree_with_data(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent,
                                              const struct qidl_tvk_datatree *source, int append) {
    if (source == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kSharePrototype);
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (source == parent) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kSharePrototype);
        TVK_ERR(ctx, "Invalid arguments passed!");
        return TVK_ERR_INVALID;  // a child that shows its parent's children would show itself
    }
    // The source is read first: it may be a child of the parent, whose array moves.
    const bool has_children = has(*source, TVK_HAS_SUBTREES);
    const DetachedChildren shared = child_array_of(*source);
    Node *added = nullptr;
    const qerrno status = tvk_map_datatree_add_subtree_flagged(ctx, parent, source->tag, source->ns, source->data,
                                                               nullptr, &added, append, 0);
    if (status == TVK_OK && added != nullptr && has_children) {
        adopt_children(ctx, *added, shared);
    }
    return status;
}

namespace tvk {

namespace {

qerrno move_child(tvk_map_ctx ctx, Node &target, Node &child) {
    Node *added = nullptr;
    const qerrno status =
        tvk_map_datatree_add_subtree_flagged(ctx, &target, child.tag, child.ns, child.data, nullptr, &added, 1, 0);
    // The child is emptied whether or not it moved.
    const DetachedChildren moving = take_children(child);
    if (added != nullptr) {
        adopt_children(ctx, *added, moving);
    } else {
        release_children(ctx, moving);
    }
    return status;
}

}  // namespace

}  // namespace tvk

qerrno tvk_map_add_subtrees_from_source_to_target(tvk_map_ctx ctx, struct qidl_tvk_datatree *target,
                                                  struct qidl_tvk_datatree *source) {
    if (target == nullptr || source == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                           "qerrno tvk_map_add_subtrees_from_source_to_target(tvk_map_ctx, struct qidl_tvk_datatree "
                           "*, struct qidl_tvk_datatree *)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (target == source) {
        return TVK_OK;  // the children are there already
    }
    for (Node &child : children(*source)) {
        if (&child == target) {
            continue;  // a node does not move below itself
        }
        if (const qerrno status = move_child(ctx, *target, child); status != TVK_OK) {
            return status;
        }
    }
    return TVK_OK;
}
