#include "filter_tree.h"

#include <algorithm>
#include <utility>

#include "heap.h"
#include "tvk_map_filter.h"

namespace tvk::tool {

namespace {

void release(Node &node) {
    qidl_tvk_datatree_free_ext(&node, tvk_gpb_free, nullptr, 0);
    node = Node{};
}

void drop_children(Node &node) {
    Node children{};
    children.subtrees = std::exchange(node.subtrees, nullptr);
    children.subtree_count = std::exchange(node.subtree_count, 0);
    node.presence = static_cast<uint16_t>(node.presence & ~TVK_HAS_SUBTREES);
    release(children);
}

// Gives node the children of both, or none when one of them has none. What other still has then goes with it.
void take_children(Node &node, Node &other) {
    if (children_of(node).empty() || children_of(other).empty()) {
        drop_children(node);
        return;
    }
    const std::span<const Node> own = children_of(node);
    const std::span<const Node> further = children_of(other);
    Node *all = zeroed_array<Node>(own.size() + further.size());
    std::copy(further.begin(), further.end(), std::copy(own.begin(), own.end(), all));
    kel_named_free(node.subtrees);
    kel_named_free(other.subtrees);
    node.subtrees = all;
    node.subtree_count += other.subtree_count;
    other.subtrees = nullptr;
    other.subtree_count = 0;
}

Node *find_top(std::span<Node> tops, const Node &named) {
    const auto found = std::find_if(tops.begin(), tops.end(), [&](const Node &top) { return has_name_of(top, named); });
    return found != tops.end() ? &*found : nullptr;
}

// Keeps, in order, the top nodes for which keep is true.
template <typename Keep>
void keep_tops(TreeHolder &tree, Keep keep) {
    const std::span<Node> tops = tree.tops();
    size_t kept = 0;
    for (Node &top : tops) {
        if (keep(top, tops.first(kept))) {
            std::swap(tops[kept++], top);
        }
    }
    for (Node &top : tops.subspan(kept)) {
        release(top);
    }
    tree.root().subtree_count = static_cast<int32_t>(kept);
}

}  // namespace

void select_everything(const MappingModule &module, TreeHolder &filter) {
    if (module.containers().empty()) {
        return;
    }
    Node &root = filter.root();
    root.subtrees = zeroed_array<Node>(module.containers().size());
    root.presence = TVK_HAS_SUBTREES;
    for (const tvk_map_module_container &container : module.containers()) {
        Node &top = root.subtrees[root.subtree_count++];
        top.tag = copy_text(container.tag);
        top.ns = copy_text(container.ns);
        top.presence = TVK_HAS_TAG | TVK_HAS_NS;
    }
}

void merge_tops(TreeHolder &filter) {
    keep_tops(filter, [](Node &top, std::span<Node> before) {
        Node *same = find_top(before, top);
        if (same != nullptr) {
            take_children(*same, top);
        }
        return same == nullptr;
    });
}

void prune(RequestScope &scope, MarkPhase mark, TreeHolder &filter, TreeHolder &response) {
    keep_tops(response, [&](Node &top, std::span<Node>) {
        Node *selection = find_top(filter.tops(), top);
        if (selection == nullptr) {
            return false;
        }
        mark(scope.ctx(), selection, &top);
        tvk_map_dfs_filter_sweep(scope.ctx(), &top);
        return !children_of(top).empty() || children_of(*selection).empty();
    });
}

}  // namespace tvk::tool
