#include <algorithm>
#include <cstdint>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "qidl_tvk_datatree.h"
#include "tvk_diagnostics.h"

namespace {

using Record = qidl_tvk_datatree;

constexpr std::size_t kBlanksPerLevel = 4;
constexpr std::uint32_t kDeepestIndent = 64;  // a deeper level is shown, no further to the right

const char *operation_name(std::uint32_t operation) {
    static const char *const names[] = {"merge", "replace", "create", "delete", "remove"};
    return operation < std::size(names) ? names[operation] : "-";
}

bool has(const Record &record, std::uint16_t bit, const void *field) {
    return (record.presence & bit) != 0 && field != nullptr;
}

std::string describe(const Record &record) {
    std::string text = has(record, TVK_HAS_TAG, record.tag) ? record.tag : "(no tag)";
    if (has(record, TVK_HAS_NS, record.ns)) {
        text.append(" (").append(record.ns).append(")");
    }
    if (has(record, TVK_HAS_DATA, record.data)) {
        text.append(" : ").append(record.data);
    }
    if ((record.presence & TVK_HAS_OPERATION) != 0) {
        text.append(" (").append(operation_name(record.operation)).append(")");
    }
    if ((record.presence & TVK_HAS_IS_KEY) != 0 && record.is_key != 0) {
        text.append(" (key)");
    }
    return text;
}

struct Level {
    const Record *next;
    const Record *end;
};

// Depth first, on a stack of its own: a tree may be deeper than the thread's.
void dump(void *const *log_filter, const Record &tree, const std::string &prefix, std::uint32_t depth,
          std::uint32_t max_depth) {
    std::vector<Level> levels{{&tree, &tree + 1}};
    while (!levels.empty()) {
        if (levels.back().next == levels.back().end) {
            levels.pop_back();
            continue;
        }
        const Record &record = *levels.back().next++;
        const auto level = static_cast<std::uint32_t>(levels.size());
        const std::uint32_t indent = std::min(depth, kDeepestIndent) + std::min(level - 1, kDeepestIndent);
        const std::string line = prefix + std::string(indent * kBlanksPerLevel, ' ') + describe(record);
        std::uint32_t site_word = UINT32_MAX;
        _kel_dt_log_filter_adv(*log_filter, 0, 0, 0, 0, 0, &site_word, "%s", line.c_str());
        if (has(record, TVK_HAS_SUBTREES, record.subtrees) && (max_depth == 0 || level < max_depth)) {
            levels.push_back({record.subtrees, record.subtrees + std::max(record.subtree_count, 0)});
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
