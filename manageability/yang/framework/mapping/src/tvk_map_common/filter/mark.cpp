// The mark phase: it walks filter and response side by side and puts a verdict in each response node that the filter
// names.
#include "tvk_map_common/filter/filter_node.h"
#include "tvk_map_common/filter/work_stack.h"
#include "tvk_map_common/index/candidates.h"
#include "tvk_map_filter.h"

namespace tvk {

namespace {

// The nodes of one step of the phase: a filter node and the response node in its place.
struct Pair {
    tvk_map_ctx ctx;
    kel_queue *stack;
    Node &filter;
    Node &response;
    std::uint32_t level;
};

struct Keys {
    explicit Keys(const Node &entry) : valued(tvk_map_datatree_get_keys(&entry, &info)) {}

    tvk_map_key_info info;
    std::uint32_t valued;
};

// Returns whether the filter node asks for all below it. A node whose array is missing asks for nothing.
bool asks_for_all(tvk_map_ctx ctx, const Node &filter) {
    if (!has(filter, TVK_HAS_SUBTREES)) {
        return true;
    }
    if (!content_match_in_request(ctx)) {
        return false;
    }
    const std::span<const Node> nodes = children(filter);
    return nodes.empty() ? filter.subtree_count == 0 : all_match_content(nodes);
}

void descend(const Pair &pair, Node &child, Node &candidate) {
    set_verdict(pair.response, TVK_NODE_KIND_KN);
    tvk_map_dfs_mark_stack_push(pair.ctx, pair.stack, &child, &candidate, pair.level + 1, 0);
}

// Returns the keys by which response entries are compared, the leading leaves of the filter's entry. Returns none when
// one of them takes any value.
std::span<const KeyText> valued_keys(const Node &entry, const Keys &keys, std::span<KeyText> texts) {
    const std::span<const Node> leading = children(entry);
    std::size_t count = 0;
    for (std::size_t i = 0; i < keys.info.key_count && i < leading.size(); ++i) {
        if (keys.info.key_has_value[i] != 1) {
            continue;
        }
        if (!has(leading[i], TVK_HAS_DATA)) {
            return {};
        }
        texts[count++] = {leading[i].tag, leading[i].data};
    }
    return texts.first(count);
}

// Marks the response entries that have the keys of the filter's entry, and only the first when the filter gives a value
// for each key.
void mark_keyed(const Pair &pair, Node &entry, const Keys &keys) {
    const bool only_one = keys.valued == keys.info.key_count;
    KeyText texts[TVK_MAP_MAX_FILTER_KEYS];
    EntryCandidates<Node> candidates{pair.ctx, pair.response, entry.tag, valued_keys(entry, keys, texts)};
    while (Node *candidate = candidates.next()) {
        if (!same_text(candidate->tag, entry.tag) ||
            tvk_map_datatree_compare_keys(&entry, &keys.info, candidate) != 1) {
            continue;
        }
        descend(pair, entry, *candidate);
        if (only_one) {
            return;
        }
    }
}

// Returns whether a list entry has nothing but keys, one of them with a value. It then stands for the whole entry.
bool is_keys_only(const Node &filter) {
    if (!is_of_type(filter, TVK_NODE_TYPE_LIST)) {
        return false;
    }
    const Keys keys{filter};
    return keys.valued >= 1 && keys.info.key_count == children(filter).size();
}

void mark_named(const Pair &pair, Node &child) {
    const bool whole_entry = is_keys_only(pair.filter);
    for (Node &candidate : children(pair.response)) {
        if (!same_text(candidate.tag, child.tag)) {
            continue;
        }
        descend(pair, child, candidate);
        if (whole_entry) {
            set_verdict(pair.response, TVK_NODE_KIND_KA);
            return;
        }
    }
}

void mark_child(const Pair &pair, Node &child) {
    if (is_of_type(child, TVK_NODE_TYPE_LIST)) {
        if (const Keys keys{child}; keys.valued >= 1) {
            mark_keyed(pair, child, keys);
            return;
        }
    }
    mark_named(pair, child);
}

}  // namespace

}  // namespace tvk

using namespace tvk;

uint32_t tvk_map_dfs_process_mark(tvk_map_ctx ctx, struct kel_queue *stack, const struct tvk_map_dfs_elem *element) {
    if (element == nullptr || element->node == nullptr || element->pair.node == nullptr) {
        return 0;
    }
    const Pair pair{ctx, stack, *element->node, *element->pair.node, element->level};
    if (asks_for_all(ctx, pair.filter)) {
        set_verdict(pair.response, TVK_NODE_KIND_KA);
        return 1;
    }
    for (Node &child : children(pair.filter)) {
        if (child.tag == nullptr) {
            return 0;
        }
        mark_child(pair, child);
    }
    return 0;
}

uint32_t tvk_map_dfs_filter_mark(tvk_map_ctx ctx, struct qidl_tvk_datatree *filter,
                                 struct qidl_tvk_datatree *response) {
    if (ctx == nullptr || filter == nullptr || response == nullptr) {
        return 0;
    }
    WorkStack stack;
    tvk_map_dfs_mark_stack_push(ctx, stack.get(), filter, response, 1, 1);
    return stack.work_off([&](const tvk_map_dfs_elem &element) {
        tvk_map_dfs_process_mark(ctx, stack.get(), &element);
        return 0u;  // a response node that is kept whole ends its own step, not the walk
    });
}
