#include "tree_holder.h"

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

}  // namespace

void unshare(Node &first, Node &second) {
    take_out_seen_arrays(first);
    take_out_seen_arrays(second);
}

}  // namespace tvk::tool
