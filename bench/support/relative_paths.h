// Building a tree as mapping code does. For each leaf the list entry is looked for, or added, and the leaf's path is
// added below it.
#pragma once

#include <cstddef>

#include "inputs.h"
#include "mapping.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"

namespace tvk::bench {

// The operations of the library, or of another build of it.
struct Operations {
    decltype(&tvk_map_search_or_add_list) search_or_add_list = tvk_map_search_or_add_list;
    decltype(&tvk_map_free_trim_path_list_ctx) free_trim_path = tvk_map_free_trim_path_list_ctx;
    decltype(&tvk_map_datatree_add_path_flagged) add_path = tvk_map_datatree_add_path_flagged;
};

inline const Node *find_or_add(const Operations &library, Build &build, const Node *root, const char *list,
                               const char *key_name, const char *key) {
    const Node *entry = nullptr;
    check(library.search_or_add_list(build.ctx(), root, &entry, text(list), text(key), text(key_name), text(kNs)));
    check(library.free_trim_path(build.ctx()));
    return entry;
}

inline void build_by_relative_paths(const Operations &library, Build &build, std::size_t n) {
    const Texts &keys = names(n);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t leaf = 0; leaf < kLeavesPerEntry; ++leaf) {
            const Node *entry =
                find_or_add(library, build, &build.root(), "interfaces/interface", "name", keys[i].c_str());
            if (kLeaves[leaf].is_of_subinterface) {
                entry = find_or_add(library, build, entry, "subinterfaces/subinterface", "index", "0");
            }
            check(library.add_path(build.ctx(), const_cast<Node *>(entry), kLeaves[leaf].path, kNs, value_of(leaf, i),
                                   nullptr, nullptr, 0, TVK_ADD_RELATIVE));
        }
    }
}

}  // namespace tvk::bench
