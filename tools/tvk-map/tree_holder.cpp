#include "tree_holder.h"

#include <new>
#include <unordered_set>
#include <vector>

namespace tvk::tool {

namespace {

// The mark stands in the framework's byte of an array's first record, where only a framework looks.
constexpr uint8_t kSeen = 0xff;

void take_out_seen_arrays(Node &root) {
    std::vector<Node *> pending{&root};
    while (!pending.empty()) {
        Node &node = *pending.back();
        pending.pop_back();
        if (node.subtrees == nullptr || node.subtree_count <= 0) {
            continue;
        }
        if (node.subtrees->framework_byte == kSeen) {
            node.subtrees = nullptr;
            node.subtree_count = 0;
            continue;
        }
        node.subtrees->framework_byte = kSeen;
        for (int32_t i = 0; i < node.subtree_count; ++i) {
            pending.push_back(&node.subtrees[i]);
        }
    }
}

using Arrays = std::unordered_set<const Node *>;

void collect_arrays(const Node &root, Arrays &arrays) {
    std::vector<const Node *> pending{&root};
    while (!pending.empty()) {
        const Node &node = *pending.back();
        pending.pop_back();
        if (!children_of(node).empty() && arrays.insert(node.subtrees).second) {
            for (const Node &child : children_of(node)) {
                pending.push_back(&child);
            }
        }
    }
}

void copy_array(Node &node) {
    Node shown{};
    shown.subtrees = node.subtrees;
    shown.subtree_count = node.subtree_count;
    Node copy{};
    if (qidl_tvk_datatree_duplicate(&copy, &shown, tvk_gpb_alloc, nullptr) != TVK_OK) {
        qidl_tvk_datatree_free_ext(&copy, tvk_gpb_free, nullptr, 0);
        throw std::bad_alloc();
    }
    node.subtrees = copy.subtrees;
}

}  // namespace

void unshare(std::initializer_list<Node *> roots) {
    for (Node *root : roots) {
        take_out_seen_arrays(*root);
    }
}

void own_arrays(Node &tree, std::initializer_list<const Node *> others) {
    Arrays arrays;
    for (const Node *other : others) {
        collect_arrays(*other, arrays);
    }
    std::vector<Node *> pending{&tree};
    while (!pending.empty()) {
        Node &node = *pending.back();
        pending.pop_back();
        if (children_of(node).empty()) {
            continue;
        }
        if (!arrays.insert(node.subtrees).second) {
            copy_array(node);
            continue;
        }
        for (int32_t i = 0; i < node.subtree_count; ++i) {
            pending.push_back(&node.subtrees[i]);
        }
    }
}

}  // namespace tvk::tool
