// Copies trees, and settles who owns arrays that several nodes show.
#include "framework/tree_holder.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <new>
#include <span>
#include <unordered_set>
#include <vector>

#include "kel_memory.h"

namespace tvk::framework {

namespace {

// The mark stands in the framework's byte of an array's first record, where only a framework looks.
constexpr uint8_t kSeen = 0xff;

// Child arrays that are still to be looked at. They are linked through the framework words of their first records,
// since trees are also released when memory has run out.
class PendingArrays {
public:
    void push(Node &parent) {
        Node &first = *parent.subtrees;
        first.framework_words[0] = std::bit_cast<uint64_t>(first_);
        first.framework_words[1] = static_cast<uint64_t>(parent.subtree_count);
        first_ = &first;
    }
    std::span<Node> pop() {
        Node *array = first_;
        if (array == nullptr) {
            return {};
        }
        first_ = std::bit_cast<Node *>(array->framework_words[0]);
        return {array, static_cast<size_t>(array->framework_words[1])};
    }

private:
    Node *first_ = nullptr;
};

void take_out_if_seen(Node &node, PendingArrays &pending) {
    if (node.subtrees == nullptr || node.subtree_count <= 0) {
        return;
    }
    if (node.subtrees->framework_byte == kSeen) {
        node.subtrees = nullptr;
        node.subtree_count = 0;
        return;
    }
    node.subtrees->framework_byte = kSeen;
    pending.push(node);
}

void take_out_seen_arrays(Node &root) {
    PendingArrays pending;
    take_out_if_seen(root, pending);
    for (std::span<Node> array = pending.pop(); !array.empty(); array = pending.pop()) {
        for (Node &node : array) {
            take_out_if_seen(node, pending);
        }
    }
}

void copy_array(Node &node) {
    Node shown{};
    shown.subtrees = node.subtrees;
    shown.subtree_count = node.subtree_count;
    Node copy{};
    copy_tree(shown, copy);
    node.subtrees = copy.subtrees;
}

}  // namespace

Node &append_child(Node &parent) {
    const auto count = static_cast<size_t>(parent.subtree_count);
    void *grown = kel_named_realloc(parent.subtrees, (count + 1) * sizeof(Node));
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    parent.subtrees = static_cast<Node *>(grown);
    ++parent.subtree_count;
    set_present(parent, TVK_HAS_SUBTREES);
    return parent.subtrees[count] = Node{};
}

void copy_tree(const Node &tree, Node &copy) {
    if (qidl_tvk_datatree_duplicate(&copy, &tree, tvk_gpb_alloc, nullptr) != TVK_OK) {
        qidl_tvk_datatree_free_ext(&copy, tvk_gpb_free, nullptr, 0);
        throw std::bad_alloc();
    }
}

void unshare(std::initializer_list<Node *> roots) noexcept {
    for (Node *root : roots) {
        take_out_seen_arrays(*root);
    }
}

ChildArrays::ChildArrays(const Node &tree) {
    std::vector<const Node *> pending{&tree};
    while (!pending.empty()) {
        const Node &node = *pending.back();
        pending.pop_back();
        if (children(node).empty()) {
            continue;
        }
        arrays_.push_back(node.subtrees);
        for (const Node &child : children(node)) {
            pending.push_back(&child);
        }
    }
    std::sort(arrays_.begin(), arrays_.end(), std::less<>());
}

bool ChildArrays::contains(const Node *array) const {
    return std::binary_search(arrays_.begin(), arrays_.end(), array, std::less<>());
}

void own_arrays(Node &tree, std::initializer_list<const ChildArrays *> others) {
    std::unordered_set<const Node *> seen;
    std::vector<Node *> pending{&tree};
    while (!pending.empty()) {
        Node &node = *pending.back();
        pending.pop_back();
        if (children(node).empty()) {
            continue;
        }
        const bool is_shown = std::any_of(others.begin(), others.end(),
                                          [&](const ChildArrays *other) { return other->contains(node.subtrees); });
        if (is_shown || !seen.insert(node.subtrees).second) {
            copy_array(node);
            continue;
        }
        for (Node &child : children(node)) {
            pending.push_back(&child);
        }
    }
}

}  // namespace tvk::framework
