// Namespaces of values: an identity belongs to the model that defines it.
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

constexpr char kAddingDataNs[] = "tvk_map_datatree_add_data_ns";

// Returns the node at a path of at least two components, the first of which is the tag of tree itself; null when the
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
    // A former namespace is not released: somebody else may hold it.
    node.data_ns = copy.release();
    set_present(node, TVK_HAS_DATA_NS);
    return TVK_OK;
}

// Returns whether the node may lack a value: reads and deletes name leaves without one.
bool needs_no_value(tvk_map_ctx ctx, const Node &node) {
    return !has(node, TVK_HAS_DATA) && (is_read_request(ctx) || is_delete(node));
}

}  // namespace

}  // namespace tvk

using namespace tvk;

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
