// Finding and adding list entries by their key leaf.
#include "tvk_map_common/index/candidates.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/openconfig.h"
#include "tvk_map_datatree.h"

namespace tvk {

namespace {

constexpr char kOperation[] = "tvk_map_datatree_add_list_node";

bool carries_key(const Node &entry, const KeyText &key) {
    for (const Node &child : children(entry)) {
        if (has(child, TVK_HAS_TAG) && has(child, TVK_HAS_DATA) && same_text(child.data, key.value) &&
            same_text(child.tag, key.name)) {
            return true;
        }
    }
    return false;
}

// Returns the entries that a search looks at. A search that logs its steps looks at all of them.
EntryCandidates<Node> candidates(tvk_map_ctx ctx, Node &parent, const char *list_name, const KeyText &key,
                                 bool is_logged) {
    return {ctx, parent, list_name, {&key, is_logged ? 0u : 1u}};
}

bool is_named(const Node &entry, const char *list_name, const char *ns) {
    return has(entry, TVK_HAS_TAG) && has(entry, TVK_HAS_NS) && same_text(entry.tag, list_name) &&
           same_text(entry.ns, ns);
}

// Keys are compared before names, because they tell apart more entries. A search that logs its steps compares them in
// the order of the messages, names first.
Node *find_entry(tvk_map_ctx ctx, Node &parent, const char *list_name, const char *ns, const KeyText &key) {
    const bool is_logged = is_tracing(ctx);
    auto entries = candidates(ctx, parent, list_name, key, is_logged);
    while (Node *entry = entries.next()) {
        if ((!is_logged && !carries_key(*entry, key)) || !is_named(*entry, list_name, ns)) {
            continue;
        }
        TVK_TRC_AS(kOperation, ctx, "List node '%s' found. Now checking the key.", list_name);
        if (!is_logged || carries_key(*entry, key)) {
            TVK_TRC_AS(kOperation, ctx, "Existing list node found.");
            return entry;
        }
    }
    return nullptr;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_add_list_node(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent, const char *list_name,
                                      const char *ns, const char *key_name, const char *key_value,
                                      struct qidl_tvk_datatree **entry) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_datatree_add_list_node(tvk_map_ctx, struct qidl_tvk_datatree *, const char *, "
                       "const char *, const char *, const char *, struct qidl_tvk_datatree **)");
    TVK_TRC(ctx, "Start");
    if (parent == nullptr || list_name == nullptr || ns == nullptr || key_name == nullptr || key_value == nullptr ||
        entry == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    *entry = nullptr;
    qerrno status = TVK_OK;
    Node *added = nullptr;
    if (!has(*parent, TVK_HAS_SUBTREES)) {
        TVK_TRC(ctx, "Adding a new list node '%s'", list_name);
        // The first entry is not numbered; later ones are.
        status = tvk_map_datatree_add_subtree_flagged(ctx, parent, list_name, ns, nullptr, nullptr, &added, 0, 0);
    } else if (added = find_entry(ctx, *parent, list_name, ns, {key_name, key_value}); added == nullptr) {
        TVK_TRC(ctx, "Adding a new list node.");
        status = tvk_map_datatree_add_subtree_flagged(ctx, parent, list_name, ns, nullptr, nullptr, &added, 1, 0);
    }
    if (status == TVK_OK) {
        *entry = added;
    }
    TVK_TRC(ctx, "End");
    return status;
}

int tvk_map_is_node_in_subtrees(tvk_map_ctx ctx, const struct qidl_tvk_datatree *subtrees, uint32_t count,
                                const char *name, const char *value, int match_value,
                                const struct qidl_tvk_datatree **found) {
    constexpr char kPrototype[] =
        "int tvk_map_is_node_in_subtrees(tvk_map_ctx, const struct qidl_tvk_datatree *, uint32_t, const char *, const "
        "char *, int, const struct qidl_tvk_datatree **)";
    for (uint32_t i = 0; subtrees != nullptr && i < count; ++i) {
        const Node &node = subtrees[i];
        // The value is compared as it stands, whatever its presence bit says.
        const bool same_value = (value == nullptr && node.data == nullptr) || same_text(node.data, value);
        if (same_text(node.tag, name) && (match_value == 0 || same_value)) {
            if (found != nullptr) {
                *found = &node;
            }
            TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
            TVK_TRC(ctx, "Returning true");
            return 1;
        }
    }
    TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
    TVK_TRC(ctx, "Returning false");
    return 0;
}

int tvk_map_is_list_node_already_present(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                         const char *, const char *key_name, const char *key_value,
                                         const struct qidl_tvk_datatree **entry) {
    Node *reached = nullptr;
    const qerrno status =
        tvk_map_datatree_add_path_flagged(ctx, tree, path, kOpenconfigBgpNs, nullptr, nullptr, &reached, 0, 0);
    if (status != TVK_OK || reached == nullptr) {
        return 0;
    }
    auto entries = candidates(ctx, *reached, nullptr, {key_name, key_value}, is_tracing(ctx));
    while (const Node *child = entries.next()) {
        // An entry without children ends the search; the entries behind it are not looked at.
        if (!has(*child, TVK_HAS_SUBTREES)) {
            return 0;
        }
        const auto leaves = children(*child);
        if (tvk_map_is_node_in_subtrees(ctx, leaves.data(), static_cast<uint32_t>(leaves.size()), key_name, key_value,
                                        1, nullptr) == 1) {
            if (entry != nullptr) {
                *entry = child;
            }
            return 1;
        }
    }
    return 0;
}
