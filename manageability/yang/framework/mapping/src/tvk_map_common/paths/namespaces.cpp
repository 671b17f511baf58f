// Namespaces of nodes that were copied from another model, and of the values that they carry.
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

// How tvk_map_datatree_update_namespace treats the nodes along its path.
constexpr int kStampAll = 0;
constexpr int kStampLastOnly = 1;

NamedString copy_ns(const char *ns) {
    return copy_text(ns, "TVK MAP update namespace");
}

// The old namespace goes even when there is no new one: a node never shows one that it should no longer have.
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

    // False when a namespace could not be copied: the walk ends at once then.
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
    // A component that names no child is passed over: the next one is searched among the same children. The count
    // alone says whether there are any, not the presence bit.
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
            kept_.reset(std::exchange(child.ns, nullptr));  // it is still to be given to others
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
    // A path that does not fit leaves an empty one, which matches nothing.
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

namespace tvk {

namespace {

constexpr char kAddingDataNs[] = "tvk_map_datatree_add_data_ns";

// The node at path, whose first component is the tag of tree itself and which has at least one more; null when the
// path leaves the tree or meets a child without a tag.
const Node *find_absolute(tvk_map_ctx ctx, const Node &tree, Components components) {
    const Node *node = &tree;
    bool at_last = false;
    for (; !components.is_last(); components.advance()) {
        TVK_TRC_AS(kAddingDataNs, ctx, "Checking node '%s'", components.current());
        if (!same_text(node->tag, components.current())) {
            return nullptr;
        }
        TVK_TRC_AS(kAddingDataNs, ctx, "Checking subtrees of node '%s'", components.current());
        at_last = false;
        if (children(*node).empty()) {
            return nullptr;
        }
        for (const Node &child : children(*node)) {
            if (!has(child, TVK_HAS_TAG) || child.tag == nullptr) {
                return nullptr;
            }
            if (std::strcmp(child.tag, components.next()) == 0) {
                node = &child;
                at_last = true;
                break;
            }
        }
    }
    return at_last ? node : nullptr;
}

qerrno attach_data_ns(tvk_map_ctx ctx, Node &node, const char *path, const char *data_ns) {
    TVK_TRC_AS(kAddingDataNs, ctx, "Found path '%s' in the datatree", path);
    NamedString copy = copy_text(data_ns, "TVK MAP DATA NS");
    if (copy == nullptr) {
        TVK_ERR_AS(kAddingDataNs, ctx, "Failed to copy data ns");
        return TVK_ERR_NO_MEMORY;
    }
    // A former value is left to whoever else holds it.
    node.data_ns = copy.release();
    set_present(node, TVK_HAS_DATA_NS);
    return TVK_OK;
}

}  // namespace

}  // namespace tvk

qerrno tvk_map_datatree_add_data_ns(tvk_map_ctx ctx, const struct qidl_tvk_datatree *tree, const char *path,
                                    const char *data_ns) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_datatree_add_data_ns(tvk_map_ctx, const struct qidl_tvk_datatree *, const char "
                       "*, const char *)");
    TVK_TRC(ctx, "Start");
    if (tree == nullptr || path == nullptr || data_ns == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (!has(*tree, TVK_HAS_SUBTREES)) {
        TVK_ERR(ctx, "Invalid subtree passed!");
        TVK_TRC(ctx, "End");
        return TVK_ERR_NOT_FOUND;
    }
    const NamedString copy = copy_text(path, "TVK MAP get subtree num");
    if (copy == nullptr) {
        TVK_ERR(ctx, "Failed to copy path string!");
        return TVK_ERR_NO_MEMORY;
    }
    TVK_TRC(ctx, "Searching subtrees of path '%s'", path);
    const Components components{copy.get()};
    if (components.current() == nullptr) {
        return TVK_OK;
    }
    qerrno status = TVK_ERR_NOT_FOUND;
    if (const Node *node = find_absolute(ctx, *tree, components); node != nullptr) {
        status = attach_data_ns(ctx, const_cast<Node &>(*node), path, data_ns);
    } else {
        TVK_ERR(ctx, "Can't find path '%s' in the datatree!", path);
        TVK_ERR(ctx, "Asserting ...");
    }
    TVK_TRC(ctx, "End");
    return status;
}

namespace tvk {

namespace {

// Reads and deletes name leaves without a value.
bool needs_no_value(tvk_map_ctx ctx, const Node &node) {
    return !has(node, TVK_HAS_DATA) && (is_read_request(ctx) || is_delete(node));
}

}  // namespace

}  // namespace tvk

qerrno tvk_map_validate_data_ns(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, char *ns, int optional) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_validate_data_ns(tvk_map_ctx, const struct qidl_tvk_datatree *, char *, int)");
    if (node == nullptr || ns == nullptr) {
        TVK_ERR(ctx, "Invalid arguments passed!");
        return TVK_ERR_INVALID;
    }
    if (needs_no_value(ctx, *node)) {
        TVK_TRC(ctx, "get, get-config, or delete with empty tag");
        return TVK_OK;
    }
    if (!has(*node, TVK_HAS_DATA_NS)) {
        if (optional == 1) {
            return TVK_OK;
        }
        TVK_ERR(ctx, "There is no data ns for this node!");
    } else if (node->data_ns == nullptr) {
        TVK_ERR(ctx, "data ns is NULL!");
    } else if (std::strcmp(node->data_ns, ns) == 0) {
        return TVK_OK;
    } else {
        TVK_ERR(ctx, "mismatched data_ns: %s and ns: %s", node->data_ns, ns);
    }
    tvk_oc_error_path(ctx);
    return TVK_ERR_NAMESPACE;
}
