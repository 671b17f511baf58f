// Dumps data trees to the debug log.
#include <algorithm>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "tvk_datatree.hpp"
#include "tvk_diagnostics.h"

namespace {

using tvk::Node;

constexpr std::size_t kBlanksPerLevel = 4;
constexpr std::uint32_t kDeepestIndent = 64;  // a deeper level is shown, no further to the right

std::string describe(const Node &node) {
    std::string text = tvk::text_of(node, node.tag, TVK_HAS_TAG, "(no tag)");
    if (const char *ns = tvk::text_of(node, node.ns, TVK_HAS_NS, nullptr)) {
        text.append(" (").append(ns).append(")");
    }
    if (const char *value = tvk::text_of(node, node.data, TVK_HAS_DATA, nullptr)) {
        text.append(" : ").append(value);
    }
    if (tvk::has_operation(node)) {
        const char *name = tvk::operation_name(node.operation);
        text.append(" (").append(name != nullptr ? name : "-").append(")");
    }
    if (tvk::has_key_mark(node)) {
        text.append(" (key)");
    }
    return text;
}

struct Level {
    const Node *next;
    const Node *end;
};

// Depth first, on a stack of its own: a tree may be deeper than the thread's.
void dump(void *const *log_filter, const Node &tree, const std::string &prefix, std::uint32_t depth,
          std::uint32_t max_depth) {
    std::vector<Level> levels{{&tree, &tree + 1}};
    while (!levels.empty()) {
        if (levels.back().next == levels.back().end) {
            levels.pop_back();
            continue;
        }
        const Node &node = *levels.back().next++;
        const auto level = static_cast<std::uint32_t>(levels.size());
        const std::uint32_t indent = std::min(depth, kDeepestIndent) + std::min(level - 1, kDeepestIndent);
        const std::string line = prefix + std::string(indent * kBlanksPerLevel, ' ') + describe(node);
        std::uint32_t site_word = UINT32_MAX;
        _kel_dt_log_filter_adv(*log_filter, 0, 0, 0, 0, 0, &site_word, "%s", line.c_str());
        const auto children = tvk::children(node);
        if (!children.empty() && (max_depth == 0 || level < max_depth)) {
            levels.push_back({children.begin(), children.end()});
        }
    }
}

}  // namespace

qerrno tvk_gpb_datatree_trace_internal(void *const *log_filter, const struct qidl_tvk_datatree *tree, const char *title,
                                       uint32_t depth, uint32_t max_depth, uint32_t) {
    if (log_filter == nullptr || tree == nullptr || tvk_debug_should_log(log_filter, TVK_LOG_LEVEL_TRC) == 0) {
        return TVK_OK;
    }
    try {
        dump(log_filter, *tree, title != nullptr ? std::string(title) + ": " : std::string(), depth, max_depth);
    } catch (const std::bad_alloc &) {  // the lines that were written stand
    }
    return TVK_OK;
}
