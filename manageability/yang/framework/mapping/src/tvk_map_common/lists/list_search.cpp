// The search for a list entry, and the place of a new one.
#include "tvk_map_common/lists/list_search.h"

#include "tvk_map_common/datatree/platform_exclusions.h"
#include "tvk_map_common/index/candidates.h"
#include "tvk_map_common/paths/placement.h"
#include "tvk_map_lists.h"

namespace tvk {

namespace {

// Returns whether adding a path would go on below this child, the first of its tag, as a search does. Adding prefers a
// child without a number, and takes the last of the numbered ones.
bool is_entered_by_additions(const Node &child) {
    return child.subtree_index == 0 && has(child, TVK_HAS_TAG) && has(child, TVK_HAS_NS);
}

}  // namespace

bool walk_to_list(tvk_map_ctx ctx, const Node *&node, Components &components, const char *ns, bool &is_plain) {
    is_plain = ns != nullptr;
    for (; components.current() != nullptr; components.advance()) {
        const Node *child = first_of_tag(ctx, *node, components.current());
        if (child == nullptr || child->tag == nullptr || (ns != nullptr && !same_text(child->ns, ns))) {
            return false;
        }
        is_plain = is_plain && !platform_excludes(components.current());
        if (components.is_last()) {
            return true;
        }
        is_plain = is_plain && is_entered_by_additions(*child);
        node = child;
    }
    return false;
}

ListSearch::ListSearch(tvk_map_ctx ctx, const Node *root, const ListKey &key)
    : ctx_(ctx), key_(key), path_(copy_text(key.list_path, "TVK_MAP")), parent_(root) {
    if (path_ == nullptr) {
        return;
    }
    if (!walk_to_list(ctx, parent_, components_.emplace(path_.get()), key.ns, is_plain_)) {
        is_plain_ = false;
        tvk_oc_error_path(ctx);
        return;
    }
    const Node *entry = parent_;
    if (tvk_map_iterate_list(ctx, &entry, key.name, key.value, key.list_path, nullptr) == TVK_OK) {
        entry_ = entry;
    }
}

Node *ListSearch::place_for_entry() const {
    if (!is_plain_ || !keeps_index(ctx_) || !goes_where_it_says(ctx_) || std::strchr(key_.name, '/') != nullptr ||
        key_.name[0] == '\0') {
        return nullptr;
    }
    const std::span<const Node> siblings = children(*parent_);
    const KeyText wanted{key_.name, key_.value};
    const EntryTable *entries = find_entry_table(ctx_, siblings, entry_name(), {&wanted, 1});
    const bool gets_the_key = entries != nullptr && entries->frontier() == siblings.size() && entries->all_numbered();
    return gets_the_key ? const_cast<Node *>(parent_) : nullptr;
}

}  // namespace tvk
