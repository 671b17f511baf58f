// The schema filter: it says whether the filter selects a path, before anything is built there.
#include <iterator>

#include "tvk_map_common/filter/filter_node.h"
#include "tvk_map_common/filter/work_stack.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_filter.h"

namespace tvk {

namespace {

// The root's tag and the components of a path.
class Tokens {
public:
    Tokens(const Node &root, char *path) {
        append(root.tag);
        for (Components components{path}; components.current() != nullptr && !is_full(); components.advance()) {
            append(components.current());
        }
    }

    char *const *array() const { return tokens_; }
    std::int32_t count() const { return count_; }

private:
    bool is_full() const { return count_ == std::ssize(tokens_); }
    void append(char *token) { tokens_[count_++] = token; }

    char *tokens_[1 + TVK_MAP_MAX_FILTER_COMPONENTS]{};
    std::int32_t count_ = 0;
};

// Returns whether the filter node stands for all below it. A node without children does.
bool selects_all(tvk_map_ctx ctx, const Node &node) {
    const std::span<const Node> nodes = children(node);
    return nodes.empty() || is_entry_by_keys(nodes) || (content_match_in_request(ctx) && all_match_content(nodes));
}

}  // namespace

}  // namespace tvk

using namespace tvk;

uint32_t tvk_map_dfs_process_node(tvk_map_ctx ctx, struct kel_queue *stack, const struct tvk_map_dfs_elem *element,
                                  char *const *tokens, int32_t token_count, int accept_last) {
    if (element == nullptr || element->node == nullptr || tokens == nullptr) {
        return 0;
    }
    const std::int32_t index = element->pair.index;
    if (index < 0 || index >= token_count || lost_children(*element->node)) {
        return 0;
    }
    if (selects_all(ctx, *element->node)) {
        return 1;
    }
    if (index + 1 == token_count) {
        return accept_last == 1 ? 1 : 0;
    }
    for (Node &child : children(*element->node)) {
        if (child.tag == nullptr) {
            return 0;
        }
        tvk_map_dfs_stack_push(ctx, stack, &child, tokens, index + 1, element->level + 1);
    }
    return 0;
}

uint32_t tvk_map_dfs_filter_schema(tvk_map_ctx ctx, const struct qidl_tvk_datatree *filter, const char *path,
                                   int accept_last) {
    if (ctx == nullptr || filter == nullptr || path == nullptr) {
        return 0;
    }
    const NamedString copy = copy_text(path, "TVK MAP DFS");
    if (copy == nullptr) {
        return 0;
    }
    const Tokens tokens{*filter, copy.get()};
    WorkStack stack;
    // This walk only reads, but it shares its elements with the phases that write.
    tvk_map_dfs_stack_push(ctx, stack.get(), const_cast<Node *>(filter), tokens.array(), 0, 1);
    return stack.work_off([&](const tvk_map_dfs_elem &element) {
        return tvk_map_dfs_process_node(ctx, stack.get(), &element, tokens.array(), tokens.count(), accept_last);
    });
}
