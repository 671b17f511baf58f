// Finding a list entry by its key, and adding it where it is missing.
#include <cstdlib>
#include <memory>

#include "tvk_map_common/index/candidates.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/lists/list_search.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"

using namespace tvk;

qerrno tvk_map_get_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree **node, char *path, char *ns) {
    if (path == nullptr) {
        return TVK_ERR_INVALID;
    }
    if (node == nullptr || *node == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                           "qerrno tvk_map_get_list(tvk_map_ctx, const struct qidl_tvk_datatree **, char *, char *)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    Components components{path};
    bool is_plain = false;
    if (!walk_to_list(ctx, *node, components, ns, is_plain)) {
        tvk_oc_error_path(ctx);
        return TVK_ERR_INVALID;
    }
    return TVK_OK;
}

qerrno tvk_map_iterate_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree **node, char *key_name, char *key_value,
                            char *list_path, char *ns) {
    constexpr char kPrototype[] =
        "qerrno tvk_map_iterate_list(tvk_map_ctx, const struct qidl_tvk_datatree **, char *, char *, char *, char *)";
    if (node == nullptr || *node == nullptr || list_path == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    // Only a path with "/" at its end has to be cut, and is copied for that.
    std::unique_ptr<char, decltype(&std::free)> copy{nullptr, &std::free};
    if (list_path[0] != '\0' && list_path[std::strlen(list_path) - 1] == '/') {
        copy.reset(strdup(list_path));
        if (copy == nullptr) {
            return TVK_ERR_NOT_FOUND;
        }
    }
    const char *const entry_name = last_component(copy != nullptr ? copy.get() : list_path);
    if (lost_children(**node)) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR(ctx, "Failed to get subtrees!");
        return TVK_ERR_NOT_FOUND;
    }
    const KeyText wanted{key_name, key_value};
    EntryCandidates<const Node> entries{ctx, **node, entry_name, {&wanted, entry_name != nullptr ? 1u : 0u}};
    while (const Node *entry = entries.next()) {
        const Node *key = nullptr;
        if (tvk_map_datatree_get_subtree(entry, &key, key_name, key_value, ns) == TVK_OK && has(*entry, TVK_HAS_TAG) &&
            same_text(entry->tag, entry_name)) {
            *node = entry;
            return TVK_OK;
        }
    }
    return TVK_ERR_INVALID;
}

namespace tvk {

namespace {

// Adds the entry and its key leaf by one path each. key_path is a buffer of size bytes, enough for the path of the key
// leaf.
qerrno add_paths(tvk_map_ctx ctx, Node *root, const Node **entry, const ListKey &key, char *key_path,
                 std::size_t size) {
    Node *added = nullptr;
    const qerrno entry_status =
        tvk_map_datatree_add_path_flagged(ctx, root, key.list_path, key.ns, nullptr, nullptr, &added, 1, 0);
    if (added != nullptr) {
        *entry = added;
    }
    // Adding the key leaf meets any other failure again. After a lack of memory it could make the entry after all, but
    // one without a number, in which the keys of its siblings would land.
    if (entry_status == TVK_ERR_NO_MEMORY) {
        return entry_status;
    }
    const std::size_t list_length = std::strlen(key.list_path);
    std::memcpy(key_path, key.list_path, list_length);
    key_path[list_length] = '/';
    std::memcpy(key_path + list_length + 1, key.name, size - list_length - 1);
    return tvk_map_datatree_add_path_flagged(ctx, root, key_path, key.ns, key.value, nullptr, nullptr, 0, 0);
}

// Adds the entry and its key leaf below parent, once the search has shown that the paths would lead there.
qerrno add_directly(tvk_map_ctx ctx, Node &parent, const char *name, const Node **entry, const ListKey &key) {
    Node *added = nullptr;
    const qerrno status =
        tvk_map_datatree_add_subtree_flagged(ctx, &parent, name, key.ns, nullptr, nullptr, &added, 1, 0);
    if (status != TVK_OK) {
        return status;
    }
    *entry = added;
    return tvk_map_datatree_add_subtree_flagged(ctx, added, key.name, key.ns, key.value, nullptr, nullptr, 0, 0);
}

}  // namespace

}  // namespace tvk

qerrno tvk_map_search_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree *root,
                           const struct qidl_tvk_datatree **entry, char *list_path, char *key_value, char *key_name,
                           char *ns) {
    if (root == nullptr || entry == nullptr || list_path == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                           "qerrno tvk_map_search_list(tvk_map_ctx, const struct qidl_tvk_datatree *, const struct "
                           "qidl_tvk_datatree **, char *, char *, char *, char *)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const ListKey key{list_path, key_value, key_name, ns};
    const ListSearch search{ctx, root, key};
    if (search.entry() == nullptr) {
        return search.was_made() ? TVK_ERR_INVALID : TVK_ERR_NOT_FOUND;
    }
    *entry = search.entry();
    return TVK_OK;
}

qerrno tvk_map_search_or_add_list(tvk_map_ctx ctx, const struct qidl_tvk_datatree *root,
                                  const struct qidl_tvk_datatree **entry, char *list_path, char *key_value,
                                  char *key_name, char *ns) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "qerrno tvk_map_search_or_add_list(tvk_map_ctx, const struct qidl_tvk_datatree *, const struct "
                       "qidl_tvk_datatree **, char *, char *, char *, char *)");
    TVK_TRC(ctx, "Start");
    if (root == nullptr || entry == nullptr || list_path == nullptr || key_value == nullptr || key_name == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const ListKey key{list_path, key_value, key_name, ns};
    const ListSearch search{ctx, root, key};
    qerrno status = TVK_OK;
    if (const Node *found = search.entry(); found != nullptr && (ns == nullptr || same_text(found->ns, ns))) {
        *entry = found;
    } else if (Node *parent = search.place_for_entry(); parent != nullptr) {
        status = add_directly(ctx, *parent, search.entry_name(), entry, key);
    } else {
        const std::size_t size = std::strlen(list_path) + std::strlen(key_name) + 2;
        const NamedString key_path = allocate_text(size, "TVK MAP search list");
        if (key_path == nullptr) {
            TVK_ERR(ctx, "Failed to allocate for key path!");
            return TVK_ERR_NO_MEMORY;
        }
        status = add_paths(ctx, const_cast<Node *>(root), entry, key, key_path.get(), size);
    }
    if (status == TVK_OK) {
        status = tvk_map_copy_trim_path_list_ctx(ctx, list_path);
    }
    TVK_TRC(ctx, "End");
    return status;
}
