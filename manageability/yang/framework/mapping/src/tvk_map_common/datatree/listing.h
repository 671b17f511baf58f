// The indented listing of a tree. A sink takes its pieces.
#ifndef TVK_MAP_DATATREE_LISTING_H
#define TVK_MAP_DATATREE_LISTING_H

#include <algorithm>
#include <cstdint>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_print.h"

namespace tvk {

// These return the label of an operation, an insert position or a verdict. An operation or position that has none gets
// " (-)". A verdict that has none gets null and is not shown.
const char *operation_label(std::uint32_t operation);
const char *position_label(std::uint32_t position);
const char *node_kind_label(std::uint32_t node_kind);

// The siblings of one level that are still to be listed.
struct ListingLevel {
    const Node *next;
    const Node *end;
};

// The levels that a listing is inside. They stand on the heap, because trees may be deeper than a thread's stack.
class ListingStack {
public:
    ListingStack() = default;
    ListingStack(const ListingStack &) = delete;
    ListingStack &operator=(const ListingStack &) = delete;
    ~ListingStack() { kel_named_free(levels_); }

    // Pushes a level unless it is empty. Returns false when memory runs out.
    bool push(const Node *array, std::int32_t count);
    bool empty() const { return depth_ == 0; }
    std::uint32_t depth() const { return depth_; }

    // Returns the next node of the innermost level. At the end of the level it leaves the level and returns null.
    const Node *take();

private:
    ListingLevel *levels_ = nullptr;
    std::uint32_t depth_ = 0;
    std::uint32_t capacity_ = 0;
};

// Returns the width of the indent, which is bounded so that no depth makes a line of absurd length.
inline int indent_of(std::uint64_t depth) {
    constexpr std::uint64_t kBlanks = 4;
    constexpr std::uint64_t kDeepest = 1000;
    return static_cast<int>(std::min(depth, kDeepest) * kBlanks);
}

template <typename Sink>
qerrno list_insert(const Node &node, Sink &sink) {
    const NamedBlock<struct tvk_map_insert_info> info{static_cast<struct tvk_map_insert_info *>(
        kel_named_calloc_(1, sizeof(struct tvk_map_insert_info), "TVK MAP print tree", 0))};
    if (info == nullptr) {
        return TVK_ERR_NO_MEMORY;
    }
    tvk_datatree_get_insert_attribute_info(&node, info.get());
    sink.position(position_label(info->position));
    if (info->has_key_or_value == 1) {
        if (info->key_count > 0) {
            sink.keys(*info);
        } else {
            sink.value(info->value);
        }
    }
    return TVK_OK;
}

template <typename Sink>
qerrno list_details(const Node &node, Sink &sink) {
    if (has(node, TVK_HAS_OPERATION)) {
        sink.operation(operation_label(node.operation));
    }
    if (carries_insert(node)) {
        if (const qerrno status = list_insert(node, sink); status != TVK_OK) {
            return status;
        }
    }
    if (has(node, TVK_HAS_ATTRIBUTES) && node.attributes != nullptr) {
        for (std::int32_t i = 0; i < node.attribute_count; ++i) {
            sink.attribute(node.attributes[i]);
        }
    }
    // The label is shown whether or not the presence bit is set.
    if (const char *label = node_kind_label(node.node_kind); label != nullptr) {
        sink.node_kind(label);
    }
    return TVK_OK;
}

// Lists the descendants of node. Sink takes the pieces by these members: name, name_with_ns, data, operation, position,
// keys, value, attribute, node_kind, end_line.
template <typename Sink>
qerrno list_descendants(const Node &node, std::uint32_t depth, bool namespaces, Sink &sink) {
    ListingStack stack;
    // The presence bit of the topmost node does not matter.
    if (!stack.push(node.subtrees, node.subtree_count)) {
        return TVK_ERR_NO_MEMORY;
    }
    while (!stack.empty()) {
        const Node *child = stack.take();
        if (child == nullptr) {
            continue;
        }
        const int indent = indent_of(std::uint64_t{depth} + stack.depth() - 1);
        const qerrno status = namespaces ? sink.name_with_ns(*child, indent) : sink.name(*child, indent);
        if (status != TVK_OK) {
            return status;
        }
        if (has(*child, TVK_HAS_DATA)) {
            sink.data(child->data);
        }
        if (!namespaces) {
            if (const qerrno detail_status = list_details(*child, sink); detail_status != TVK_OK) {
                return detail_status;
            }
        }
        sink.end_line();
        if (has(*child, TVK_HAS_SUBTREES) && !stack.push(child->subtrees, child->subtree_count)) {
            return TVK_ERR_NO_MEMORY;
        }
    }
    return TVK_OK;
}

}  // namespace tvk

#endif
