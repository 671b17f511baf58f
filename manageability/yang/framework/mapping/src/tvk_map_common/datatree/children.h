// The one writer of child arrays.
//
// All code that adds, removes or moves children, or changes the value of one, does it through these functions. They
// tell the index and the request state, so that no lookup answers for an array that has changed since.
#ifndef TVK_MAP_DATATREE_CHILDREN_H
#define TVK_MAP_DATATREE_CHILDREN_H

#include "tvk_map_common/index/children_index.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/owned.h"

namespace tvk {

// ---- Appending ----

// A record behind the last child of a node, which is not its child yet. Without a commit the record is released with
// what it owns, and the siblings stay as they were. Making the record may move the siblings.
class NewChild {
public:
    // Makes a zeroed record. The object is false when there is no memory or the parent can count no more children.
    NewChild(tvk_map_ctx ctx, Node &parent);
    ~NewChild() {
        if (array_ != nullptr && !is_committed_) {
            release();
        }
    }
    NewChild(const NewChild &) = delete;
    NewChild &operator=(const NewChild &) = delete;

    explicit operator bool() const { return array_ != nullptr; }
    Node &operator*() const { return array_[count_]; }
    // Returns the array of the siblings at its present place.
    const Node *array() const { return array_; }
    // Returns the number of children including this one.
    std::int32_t new_count() const { return count_ + 1; }

    void commit() {
        parent_.subtrees = array_;
        parent_.subtree_count = count_ + 1;
        set_present(parent_, TVK_HAS_SUBTREES);
        if (keeps_index(ctx_) && has(array_[count_], TVK_HAS_DATA)) {
            entry_gains(ctx_, parent_, array_[count_].tag);
        }
        is_committed_ = true;
    }

private:
    void release();

    tvk_map_ctx ctx_;
    Node &parent_;
    std::int32_t count_ = 0;
    Node *array_ = nullptr;
    bool is_committed_ = false;
};

// ---- Values ----

// Gives a child of parent another value; null leaves it without one. The former value is not released: somebody else
// may hold it.
void set_value(tvk_map_ctx ctx, const Node &parent, Node &child, NamedString value);
// Gives a child of parent another value, as set_value does, and releases the former one.
void replace_value(tvk_map_ctx ctx, const Node &parent, Node &child, NamedString value);

// ---- Children as a whole ----

struct DetachedChildren {
    Node *array;
    std::int32_t count;
};

// Takes the children away from a node until give_back_children returns them.
DetachedChildren detach_children(Node &node);
// Gives a node its children back. Children that were added meanwhile are released, because nobody would own them.
void give_back_children(tvk_map_ctx ctx, Node &node, const DetachedChildren &detached);

// Returns the children by pointer and count, whatever the presence bit says.
inline DetachedChildren child_array_of(const Node &node) {
    return {node.subtrees, node.subtree_count};
}
// Takes the children away for good. The presence bit stays, so that the node still reads as a container.
DetachedChildren take_children(Node &node);
// Gives these children to a node that has none.
void adopt_children(tvk_map_ctx ctx, Node &node, const DetachedChildren &children);
// Releases children that no node shows any more.
void release_children(tvk_map_ctx ctx, const DetachedChildren &children);

// ---- Dropping ----

// Releases the last child of a node with at least two children. The array may move.
void drop_last_child(tvk_map_ctx ctx, Node &node);

// Releases all children. The array and the presence bit stay.
void drop_all_children(tvk_map_ctx ctx, Node &node);

// Releases the children for which stays returns false, and moves the others up. This needs no memory, so that no child
// can get lost for want of it. The array keeps its size.
template <typename Stays>
void drop_children_unless(tvk_map_ctx ctx, Node &node, Stays stays) {
    forget_index(ctx);
    const std::span<Node> nodes = children(node);
    std::size_t kept = 0;  // the number of children kept, and so the position of the first gap
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
