// The one writer of child arrays: appending, values, whole arrays, dropping.
#include "tvk_map_common/datatree/children.h"

#include <utility>

#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/state/held_nodes.h"
#include "tvk_map_datatree.h"

namespace tvk {

namespace {

void attach_children(Node &node, const DetachedChildren &children) {
    node.subtrees = children.array;
    node.subtree_count = children.count;
    set_present(node, TVK_HAS_SUBTREES);
}

// Tells the request state and the index where the watched children stand now. Every added node comes through here.
[[gnu::always_inline]] inline void follow(tvk_map_ctx ctx, const WatchedArray &watched, const Node *former,
                                          std::span<Node> now) {
    if (ctx == nullptr || ctx->state == nullptr) {
        return;
    }
    if (!watched.is_at(now.data())) {
        watched.moved(*ctx->state, now.data());
    }
    if (keeps_index(ctx)) {
        children_grown(ctx, former, now);
    }
}

}  // namespace

NewChild::NewChild(tvk_map_ctx ctx, Node &parent) : ctx_(ctx), parent_(parent) {
    const std::span<Node> siblings = children(parent);
    count_ = static_cast<std::int32_t>(siblings.size());
    if (count_ == INT32_MAX) {
        return;
    }
    const Node *former = siblings.data();
    const WatchedArray watched{siblings};
    const std::size_t records = siblings.size() + 1;
    if (!has(parent, TVK_HAS_SUBTREES)) {
        array_ = static_cast<Node *>(kel_named_calloc_(1, sizeof(Node), "TVK MAP add subtree flg", 0));
    } else {
        array_ = static_cast<Node *>(kel_named_realloc(parent.subtrees, records * sizeof(Node)));
        if (array_ != nullptr) {
            parent.subtrees = array_;
        }
    }
    if (array_ != nullptr) {
        follow(ctx, watched, former, {array_, records});
        array_[count_] = Node{};
    }
}

void NewChild::release() {
    free_contents(array_[count_]);
    if (!has(parent_, TVK_HAS_SUBTREES)) {
        kel_named_free(array_);
    }
}

void set_value(tvk_map_ctx ctx, const Node &parent, Node &child, NamedString value) {
    entry_gains(ctx, parent, child.tag);
    if (value == nullptr) {
        set_absent(child, TVK_HAS_DATA);
        return;
    }
    child.data = value.release();
    set_present(child, TVK_HAS_DATA);
}

void replace_value(tvk_map_ctx ctx, const Node &parent, Node &child, NamedString value) {
    if (has(child, TVK_HAS_DATA)) {
        release(child.data);
    }
    set_value(ctx, parent, child, std::move(value));
}

DetachedChildren detach_children(Node &node) {
    const DetachedChildren detached = child_array_of(node);
    node.subtrees = nullptr;
    node.subtree_count = 0;
    set_absent(node, TVK_HAS_SUBTREES);
    return detached;
}

void give_back_children(tvk_map_ctx ctx, Node &node, const DetachedChildren &detached) {
    entry_gains(ctx, node, nullptr);
    release_nodes(ctx, children(node));
    kel_named_free(node.subtrees);
    attach_children(node, detached);
}

DetachedChildren take_children(Node &node) {
    const DetachedChildren taken = child_array_of(node);
    attach_children(node, {nullptr, 0});
    return taken;
}

void adopt_children(tvk_map_ctx ctx, Node &node, const DetachedChildren &children) {
    entry_gains(ctx, node, nullptr);
    attach_children(node, children);
}

void release_children(tvk_map_ctx ctx, const DetachedChildren &children) {
    release_nodes(ctx, child_array(children.array, children.count));
    kel_named_free(children.array);
}

void drop_last_child(tvk_map_ctx ctx, Node &node) {
    const std::span<Node> former = child_array(node.subtrees, node.subtree_count);
    forget_last_child(ctx, former);
    free_contents(former.back());
    const std::span<Node> remaining = former.first(former.size() - 1);
    const WatchedArray watched{remaining};
    // An array that cannot shrink keeps its last record unused.
    if (void *shrunk = kel_named_realloc(node.subtrees, remaining.size_bytes()); shrunk != nullptr) {
        node.subtrees = static_cast<Node *>(shrunk);
    }
    if (!watched.is_at(node.subtrees)) {
        follow(ctx, watched, former.data(), {node.subtrees, remaining.size()});
    }
    node.subtree_count = static_cast<std::int32_t>(remaining.size());
    set_present(node, TVK_HAS_SUBTREES);
}

void drop_all_children(tvk_map_ctx ctx, Node &node) {
    forget_index(ctx);
    for (Node &child : children(node)) {
        free_contents(child);
        reset(child);
    }
    node.subtree_count = 0;
}

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_remove_last_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *node) {
    if (node == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                           "qerrno tvk_map_datatree_remove_last_subtree(tvk_map_ctx, struct qidl_tvk_datatree *)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    // The count alone decides; the presence bit does not matter.
    if (node->subtrees == nullptr || node->subtree_count < 2) {
        return TVK_OK;
    }
    drop_last_child(ctx, *node);
    return TVK_OK;
}
