// An oracle of the filter: it prunes a plain copy of a tree, slowly and by recursion.
#ifndef TVK_FUZZ_FILTER_ORACLE_H
#define TVK_FUZZ_FILTER_ORACLE_H

#include <optional>
#include <string>
#include <vector>

#include "tree.h"

namespace tvk::fuzz {

struct Model {
    test::Text tag, data;
    bool key = false;
    std::optional<std::uint32_t> type, verdict;
    bool has_children = false;  // says so, also with no child
    std::int32_t claimed = 0;   // children that are not there
    std::vector<Model> children;

    test::Node describe() const;
};

// content: the request has TVK_WALK_CONTENT_MATCH_IN_REQUEST.
bool oracle_selects(const Model &filter, std::vector<std::string> path, int accept_last, bool content);
void oracle_mark(const Model &filter, Model &response, bool content);
void oracle_sweep(Model &tree);

}  // namespace tvk::fuzz

#endif
