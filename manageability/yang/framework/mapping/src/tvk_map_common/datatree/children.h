// The one writer of child arrays.
//
// Whatever makes children come, go or move, or gives one another value, does it here: the index and the request state
// are told then, and a lookup never answers for an array that has changed.
#ifndef TVK_MAP_DATATREE_CHILDREN_H
#define TVK_MAP_DATATREE_CHILDREN_H

#include "tvk_map_common/index/children_index.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"

namespace tvk {

// ---- Appending ----

// A record behind the last child of a node, which is not its child yet. Unless it is committed it goes again with what
// it owns, and the siblings stay as they were. Making it may move them.
class NewChild {
public:
    // Zeroed, or false when there is no memory.
    NewChild(tvk_map_ctx ctx, Node &parent);
    ~NewChild();
    NewChild(const NewChild &) = delete;
    NewChild &operator=(const NewChild &) = delete;

    explicit operator bool() const { return array_ != nullptr; }
    Node &operator*() const { return array_[count_]; }
    // The siblings, where they stand now.
    const Node *array() const { return array_; }
    // How many children there are with this one.
    std::int32_t new_count() const { return count_ + 1; }

    void commit();

private:
    tvk_map_ctx ctx_;
    Node &parent_;
    std::int32_t count_;
    Node *array_ = nullptr;
    bool is_committed_ = false;
};

// ---- Values ----

// Gives a child of parent another value; a null one leaves it without. The former value stays with whoever else holds
// it.
void set_value(tvk_map_ctx ctx, const Node &parent, Node &child, NamedString value);
// The same, and the former value goes.
void replace_value(tvk_map_ctx ctx, const Node &parent, Node &child, NamedString value);

// ---- Children as a whole ----

struct DetachedChildren {
    Node *array;
    std::int32_t count;
};

// Takes the children away from a node that gets them back soon.
DetachedChildren detach_children(Node &node);
// Gives a node its children back. What was added to it meanwhile goes, since nobody would own it.
void give_back_children(tvk_map_ctx ctx, Node &node, const DetachedChildren &detached);

// The children as they are claimed by pointer and count, whatever the presence bit says.
inline DetachedChildren child_array_of(const Node &node) {
    return {node.subtrees, node.subtree_count};
}
// Takes the children away for good. The presence bit stays, so that the node still reads as a container.
DetachedChildren take_children(Node &node);
// Gives a node that has none these children.
void adopt_children(tvk_map_ctx ctx, Node &node, const DetachedChildren &children);
// Releases children that no node shows any more.
void release_children(tvk_map_ctx ctx, const DetachedChildren &children);

// ---- Dropping ----

// Releases the last child. The array may move, and holds at least one child before and after.
void drop_last_child(tvk_map_ctx ctx, Node &node);

// Releases all children. The array and the presence bit stay.
void drop_all_children(tvk_map_ctx ctx, Node &node);

// Releases the children that do not stay, and moves the others up. What stays needs no copy, and cannot get lost for
// want of memory. The array keeps its size.
template <typename Stays>
void drop_children_unless(tvk_map_ctx ctx, Node &node, Stays stays) {
    forget_index(ctx);
    const std::span<Node> nodes = children(node);
    std::size_t kept = 0;  // also the first gap, once there is one
    for (Node &child : nodes) {
        if (!stays(child)) {
            free_contents(child);
            reset(child);
            continue;
        }
        if (Node &slot = nodes[kept]; &slot != &child) {
            slot = child;
            reset(child);
        }
        ++kept;
    }
    if (kept < nodes.size()) {
        node.subtree_count = static_cast<std::int32_t>(kept);
        set_present(node, TVK_HAS_SUBTREES);
    }
}

}  // namespace tvk

#endif
