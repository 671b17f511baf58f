// Finding a child by tag and value, and a value along a path.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_lists.h"

using namespace tvk;

qerrno tvk_map_datatree_get_subtree(const struct qidl_tvk_datatree *parent, const struct qidl_tvk_datatree **found,
                                    const char *tag, const char *data, const char *ns) {
    if (parent == nullptr || found == nullptr) {
        return TVK_ERR_INVALID;
    }
    if (lost_children(*parent)) {
        return TVK_ERR_NOT_FOUND;
    }
    for (const Node &child : children(*parent)) {
        if (child.tag == nullptr) {
            return TVK_ERR_INVALID;
        }
        // The value is compared first: values tell apart more children than tags do, and not all children have one.
        if (data != nullptr && !(has(child, TVK_HAS_DATA) && same_text(child.data, data))) {
            continue;
        }
        if (!same_text(child.tag, tag)) {
            continue;
        }
        // Without a value the first child of the tag decides, and it must be of the namespace.
        if (data == nullptr && ns != nullptr && !same_text(child.ns, ns)) {
            return TVK_ERR_INVALID;
        }
        *found = &child;
        return TVK_OK;
    }
    return TVK_ERR_INVALID;
}

namespace tvk {

namespace {

bool carries_value(const Node &node, const char *value) {
    return has(node, TVK_HAS_DATA) && same_text(node.data, value);
}

enum class Step { kValueMet, kGoOn, kNoTag };

// Looks at the children of this tag. The first one with the value ends the search; without one, node becomes the last
// of them.
Step step_down(const Node *&node, const char *tag, const char *value) {
    const Node *next = node;
    for (const Node &child : children(*node)) {
        if (child.tag == nullptr) {
            return Step::kNoTag;
        }
        if (!same_text(child.tag, tag)) {
            continue;
        }
        next = &child;
        if (carries_value(child, value)) {
            return Step::kValueMet;
        }
    }
    node = next;
    return Step::kGoOn;
}

}  // namespace

}  // namespace tvk

qerrno tvk_map_get_subtree_from_key(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, const char *path,
                                    const char *key_value, const struct qidl_tvk_datatree *) {
    constexpr char kPrototype[] =
        "qerrno tvk_map_get_subtree_from_key(tvk_map_ctx, const struct qidl_tvk_datatree *, const char *, const char "
        "*, const struct qidl_tvk_datatree *)";
    if (node == nullptr || path == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const NamedString copy = copy_text(path, "TVK MAP sub key");
    if (copy == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR(ctx, "Failed to copy path string!");
        return TVK_ERR_NO_MEMORY;
    }
    Components components{copy.get()};
    if (same_text(node->tag, components.current()) && carries_value(*node, key_value)) {
        return TVK_OK;
    }
    for (; components.current() != nullptr; components.advance()) {
        if (children(*node).empty()) {
            return TVK_ERR_NOT_FOUND;
        }
        switch (step_down(node, components.current(), key_value)) {
            case Step::kValueMet:
                return TVK_OK;
            case Step::kNoTag:
                TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
                TVK_ERR(ctx, "Tag name is not available!");
                return TVK_ERR_NOT_FOUND;
            case Step::kGoOn:
                break;
        }
    }
    return TVK_ERR_NOT_FOUND;
}
