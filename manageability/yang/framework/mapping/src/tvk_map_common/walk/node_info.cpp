// Values of nodes at and below a level of the hierarchy, found by the path of the level.
#include <algorithm>
#include <array>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_walk.h"

namespace tvk {

namespace {

// Calls visit with the node of each hierarchy slot of this path until visit returns true. All slots are looked at;
// popped ones have no path.
template <typename Visit>
bool any_level(tvk_map_ctx ctx, const char *path, Visit visit) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return false;
    }
    const auto &levels = ctx->state->hierarchy;
    return std::any_of(std::begin(levels), std::end(levels), [&](const tvk_map_hierarchy_level &level) {
        return same_text(level.path, path) && level.node != nullptr && visit(*level.node);
    });
}

bool is_named(const Node &node, const char *tag) {
    return has(node, TVK_HAS_TAG) && same_text(node.tag, tag);
}

// Returns the first descendant that is reached by these tags, level by level, or null. Every branch of these tags is
// tried.
template <std::size_t kDepth>
Node *find_descendant(Node &node, const std::array<const char *, kDepth> &tags, std::size_t depth = 0) {
    for (Node &child : children(node)) {
        if (!is_named(child, tags[depth])) {
            continue;
        }
        Node *found = depth + 1 == kDepth ? &child : find_descendant(child, tags, depth + 1);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

template <std::size_t kDepth>
Node *find_below_level(tvk_map_ctx ctx, const char *path, const std::array<const char *, kDepth> &tags) {
    Node *found = nullptr;
    any_level(ctx, path, [&](Node &node) {
        found = find_descendant(node, tags);
        return found != nullptr;
    });
    return found;
}

qerrno give_value(const Node *node, char **value) {
    if (node == nullptr) {
        return TVK_ERR_INVALID;
    }
    if (value != nullptr) {
        *value = node->data;
    }
    return TVK_OK;
}

// Returns the node of this tag on the instance-tree stack, or null. The children of an entry that is named by its keys
// alone stand there and not at their node.
Node *find_instance(tvk_map_ctx ctx, const char *tag) {
    tvk_map_itree_item *item = nullptr;
    if (is_propagating(ctx) || is_working_on_keys(ctx)) {
        tvk_map_util_itree_stack_peak(ctx, &item);
    }
    if (item == nullptr || item->nodes == nullptr) {
        return nullptr;
    }
    Node *end = item->nodes + item->node_count;
    // The presence bit of the tag does not matter here.
    Node *found = std::find_if(item->nodes, end, [tag](const Node &node) { return same_text(node.tag, tag); });
    return found != end ? found : nullptr;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_get_node_info(tvk_map_ctx ctx, const char *path, const char *tag, char **value) {
    const Node *found = nullptr;
    any_level(ctx, path, [&](Node &node) {
        found = find_descendant<1>(node, {tag});
        if (found == nullptr) {
            found = find_instance(ctx, tag);
        }
        return found != nullptr;
    });
    return give_value(found, value);
}

struct qidl_tvk_datatree *tvk_map_get_node(tvk_map_ctx ctx, const char *path, const char *tag) {
    return find_below_level<1>(ctx, path, {tag});
}

qerrno tvk_map_dfs_get_child_match(tvk_map_ctx ctx, const char *path, const char *child_tag, const char *grandchild_tag,
                                   char **value, struct qidl_tvk_datatree **node) {
    Node *found = find_below_level<2>(ctx, path, {child_tag, grandchild_tag});
    if (found != nullptr && node != nullptr) {
        *node = found;
    }
    return give_value(found, value);
}

qerrno tvk_map_get_node_info_mpls_static(tvk_map_ctx ctx, const char *path, const char *child_tag,
                                         const char *grandchild_tag, char **value) {
    return tvk_map_dfs_get_child_match(ctx, path, child_tag, grandchild_tag, value, nullptr);
}

qerrno tvk_map_get_node_info_inv_thresh_static(tvk_map_ctx ctx, const char *path, const char *child_tag,
                                               const char *grandchild_tag, const char *great_grandchild_tag,
                                               char **value) {
    return give_value(find_below_level<3>(ctx, path, {child_tag, grandchild_tag, great_grandchild_tag}), value);
}
