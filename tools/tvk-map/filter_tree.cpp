#include "filter_tree.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

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

using Name = std::pair<std::string_view, std::string_view>;  // tag and namespace

// Gives the first of the nodes the children of all, or none when one of them has none.
void gather_children(std::span<Node *const> nodes) {
    Node &first = *nodes.front();
    if (std::any_of(nodes.begin(), nodes.end(), [](const Node *node) { return children_of(*node).empty(); })) {
        drop_children(first);
        return;
    }
    size_t count = 0;
    for (const Node *node : nodes) {
        count += children_of(*node).size();
    }
    Node *all = zeroed_array<Node>(count);
    Node *end = all;
    for (Node *node : nodes) {
        const std::span<const Node> children = children_of(*node);
        end = std::copy(children.begin(), children.end(), end);
        kel_named_free(std::exchange(node->subtrees, nullptr));
        node->subtree_count = 0;
    }
    first.subtrees = all;
    first.subtree_count = static_cast<int32_t>(count);
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
        if (keep(top)) {
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
    std::map<Name, std::vector<Node *>> groups;
    for (Node &top : filter.tops()) {
        groups[{tag_of(top), namespace_of(top)}].push_back(&top);
    }
    for (const auto &[name, same] : groups) {
        if (same.size() > 1) {
            gather_children(same);
        }
    }
    keep_tops(filter, [&](const Node &top) { return groups[{tag_of(top), namespace_of(top)}].front() == &top; });
}

void prune(RequestScope &scope, MarkPhase mark, TreeHolder &filter, TreeHolder &response) {
    keep_tops(response, [&](Node &top) {
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
