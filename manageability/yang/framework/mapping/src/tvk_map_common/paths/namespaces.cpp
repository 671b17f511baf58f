// Namespaces of nodes that were copied from another model.
#include <functional>
#include <utility>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_lists.h"

namespace tvk {

namespace {

// The modes of tvk_map_datatree_update_namespace.
constexpr int kStampAll = 0;
constexpr int kStampLastOnly = 1;

NamedString copy_ns(const char *ns) {
    return copy_text(ns, "TVK MAP update namespace");
}

// Puts another namespace into a node; returns false when copy is null. The old one is released in any case, because a
// node must never show a namespace that it should no longer have.
bool put_ns(Node &node, NamedString copy) {
    release(node.ns);
    set_absent(node, TVK_HAS_NS);
    if (copy == nullptr) {
        return false;
    }
    node.ns = copy.release();
    set_present(node, TVK_HAS_NS);
    return true;
}

bool is_part_of(const char *part, const char *text) {
    const std::less_equal<const char *> not_behind;
    return text != nullptr && not_behind(text, part) && not_behind(part, text + std::strlen(text));
}

constexpr char kStamping[] = "tvk_map_datatree_update_namespace";

class NamespaceWalk {
public:
    NamespaceWalk(tvk_map_ctx ctx, Node &tree, char *ns, int mode) : ctx_(ctx), node_(&tree), ns_(ns), mode_(mode) {}

    // Walks along path. Returns false and ends the walk when a namespace could not be copied.
    bool run(char *path) {
        Components components{path};
        do {
            if (!take(components.current())) {
                return false;
            }
            components.advance();
        } while (components.current() != nullptr);
        return true;
    }

    qerrno stamp_last() {
        if (!found_ || mode_ == kStampAll || last_children_ == nullptr) {
            return TVK_OK;
        }
        TVK_TRC_AS(kStamping, ctx_, "Setting '%s'|'%s', ns '%s'.", node_->tag, node_->tag, ns_);
        return tvk_map_update_node_namespace(ctx_, node_, ns_);
    }

private:
    // Takes one component. When it names no child, the next one is searched among the same children. The count alone
    // says whether there are any, not the presence bit.
    bool take(const char *component) {
        TVK_TRC_AS(kStamping, ctx_, "Checking - '%s'", shown(component));
        last_children_ = node_->subtrees;
        const auto children = child_array(node_->subtrees, node_->subtree_count);
        if (children.empty()) {
            return true;
        }
        for (Node &child : children) {
            TVK_TRC_AS(kStamping, ctx_, "Processing - '%s' ns '%s'.", shown(child.tag), shown(child.ns));
            if (has(child, TVK_HAS_TAG) && same_text(child.tag, component)) {
                found_ = true;
                node_ = &child;
                return stamp(child, component);
            }
        }
        found_ = false;
        return true;
    }

    bool stamp(Node &child, const char *component) {
        if (mode_ == kStampLastOnly) {
            TVK_TRC_AS(kStamping, ctx_, "SKIPPING '%s' ns '%s'.", component, shown(child.ns));
            return true;
        }
        TVK_TRC_AS(kStamping, ctx_, "Setting '%s' ns '%s'.", component, ns_);
        TVK_TRC_AS(kStamping, ctx_, "freeing old ns %p", static_cast<void *>(child.ns));
        NamedString copy = copy_ns(ns_);
        if (is_part_of(ns_, child.ns)) {
            kept_.reset(std::exchange(child.ns, nullptr));  // it holds ns_, which other nodes still get
        }
        if (!put_ns(child, std::move(copy))) {
            TVK_ERR_AS(kStamping, ctx_, "Failed to update ns!");
            return false;
        }
        TVK_TRC_AS(kStamping, ctx_, "setting new ns %p", static_cast<void *>(child.ns));
        return true;
    }

    tvk_map_ctx ctx_;
    Node *node_;
    char *ns_;
    int mode_;
    bool found_ = false;
    const Node *last_children_ = nullptr;
    NamedString kept_;
};

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_update_node_namespace(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, char *ns) {
    if (node == nullptr || ns == nullptr) {
        TVK_ASSERT_CONTEXT(
            ctx, kCommonSource,
            "qerrno tvk_map_update_node_namespace(tvk_map_ctx, const struct qidl_tvk_datatree *, char *)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (!has(*node, TVK_HAS_TAG) || !has(*node, TVK_HAS_NS) || node->ns == nullptr) {
        return TVK_ERR_INVALID;
    }
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_update_node_namespace(tvk_map_ctx, const struct qidl_tvk_datatree *, char *)");
    auto &changed = const_cast<Node &>(*node);
    TVK_TRC(ctx, "Setting '%s' ns '%s'.", changed.ns, ns);
    TVK_TRC(ctx, "free old ns %p", static_cast<void *>(changed.ns));
    if (!put_ns(changed, copy_ns(ns))) {
        TVK_ERR(ctx, "Failed to update ns!");
        return TVK_ERR_NO_MEMORY;
    }
    TVK_TRC(ctx, "set new ns %p", static_cast<void *>(changed.ns));
    return TVK_OK;
}

qerrno tvk_map_datatree_update_namespace(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, char *path, char *ns,
                                         int mode) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_datatree_update_namespace(tvk_map_ctx, const struct qidl_tvk_datatree *, char "
                       "*, char *, int)");
    TVK_TRC(ctx, "Start");
    if (tree == nullptr || path == nullptr || ns == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    // A path that does not fit leaves working_path empty, which matches nothing.
    char working_path[TVK_MAP_MAX_PATH];
    tvk_strcpy_s(__func__, working_path, sizeof working_path, path);
    NamespaceWalk walk{ctx, const_cast<Node &>(*tree), ns, mode};
    if (!walk.run(working_path)) {
        return TVK_ERR_NO_MEMORY;
    }
    const qerrno status = walk.stamp_last();
    TVK_TRC(ctx, "End");
    return status;
}
