// A search for a list entry by its key.
#ifndef TVK_MAP_LISTS_LIST_SEARCH_H
#define TVK_MAP_LISTS_LIST_SEARCH_H

#include <optional>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_types.h"

namespace tvk {

struct ListKey {
    char *list_path;
    char *value;
    char *name;
    char *ns;
};

// Walks from node down to the parent of the entries that the last component names. Returns false when it does not get
// there; node is then the last one reached. On success is_plain says whether adding the path would have gone the same
// way.
bool walk_to_list(tvk_map_ctx ctx, const Node *&node, Components &components, const char *ns, bool &is_plain);

class ListSearch {
public:
    ListSearch(tvk_map_ctx ctx, const Node *root, const ListKey &key);

    // Returns false when the path could not be copied and nothing was searched.
    bool was_made() const { return path_ != nullptr; }
    // Returns the entry found, or null.
    const Node *entry() const { return entry_; }

    // Returns the parent to which a new entry with its key leaf may be appended directly; null when adding the list's
    // path and then the key's would do more than that. An index has to know that no sibling would get the key instead.
    Node *place_for_entry() const;
    const char *entry_name() const { return components_->current(); }

private:
    tvk_map_ctx ctx_;
    const ListKey &key_;
    NamedString path_;
    std::optional<Components> components_;
    const Node *parent_;
    const Node *entry_ = nullptr;
    bool is_plain_ = false;
};

}  // namespace tvk

#endif
