// The steps and scopes that the container, the list and the leaf parse share.
#ifndef TVK_MAP_PROCESS_REQUEST_REQUEST_WALK_H
#define TVK_MAP_PROCESS_REQUEST_REQUEST_WALK_H

#include <span>

#include "tvk_map_common/datatree/children.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_walk.h"

namespace tvk {

// Returns the table entry with the tag of child, or null. Every comparison is logged.
const tmap_child_entry *find_child_handler(tvk_map_ctx ctx, std::span<const tmap_child_entry> entries,
                                           const Node &child);

// Refuses the arguments of a parse and records the error path when it lacks its nodes; returns TVK_ERR_INVALID.
[[gnu::cold]] qerrno refuse_arguments(const char *operation, tvk_map_ctx ctx, bool lacks_nodes);
// Refuses a node that claims to have children but has no array of them; returns TVK_ERR_NOT_FOUND.
[[gnu::cold]] qerrno refuse_lost_children(const char *operation, tvk_map_ctx ctx);

// Makes the checks that every parse begins with: first node and target, then the table or handler of the parse.
// operation is the parse's name for messages.
inline qerrno check_arguments(const char *operation, tvk_map_ctx ctx, const Node *node, const Node *target,
                              const void *instruction) {
    const bool lacks_nodes = node == nullptr || target == nullptr;
    return lacks_nodes || instruction == nullptr ? refuse_arguments(operation, ctx, lacks_nodes) : TVK_OK;
}

inline qerrno check_children(const char *operation, tvk_map_ctx ctx, const Node &node) {
    return lost_children(node) ? refuse_lost_children(operation, ctx) : TVK_OK;
}

// Handles a child that no table entry claims. A child in unsupported_ns is left out of a read, and ends any other
// request.
qerrno handle_unclaimed_child(tvk_map_ctx ctx, const Node &child, Node &target, const char *unsupported_ns,
                              tmap_node_process_fp child_handler);

// Calls a handler. One that mapping code left out does nothing.
inline qerrno call(tmap_node_process_fp handler, tvk_map_ctx ctx, const Node &node, Node &target) {
    return handler != nullptr ? handler(ctx, &node, &target) : TVK_OK;
}

inline std::span<const tmap_child_entry> entries(const tmap_child_entry *array, std::uint16_t count) {
    return array != nullptr ? std::span{array, count} : std::span<const tmap_child_entry>{};
}

// Returns whether a child takes part: every child in a get-config, else only those with TMAP_CHILD_PROPAGATE.
inline bool takes_part_in_propagation(tvk_map_ctx ctx, const tmap_child_entry &entry) {
    return is_get_config(ctx) || (entry.flags & TMAP_CHILD_PROPAGATE) != 0;
}

// Clears the walk flags that the leaves of siblings have set, for a container or list that is entered in a read. The
// mask keeps TVK_WALK_CONTENT_MATCH_IN_REQUEST, the mark of the whole request, and is wider than that one bit on
// purpose.
inline void clear_walk_flags(tvk_map_ctx ctx) {
    constexpr std::uint32_t kKept = 0x11111110;
    if (ctx->state != nullptr) {
        ctx->state->walk_flags &= kKept;
    }
}

inline void set_build_flags(tvk_map_ctx ctx, std::uint32_t set, std::uint32_t cleared) {
    if (ctx->state != nullptr) {
        ctx->state->build_flags = (ctx->state->build_flags | set) & ~cleared;
    }
}

inline void begin_replace(tvk_map_ctx ctx) {
    set_build_flags(ctx, TVK_BUILD_REPLACE_REMOVING, 0);
    if (ctx->state != nullptr) {
        ctx->state->replace_converted = 1;
    }
}

inline void end_replace(tvk_map_ctx ctx) {
    set_build_flags(ctx, 0, TVK_BUILD_REPLACE_REMOVING | TVK_BUILD_REPLACE_MERGING);
    if (ctx->state != nullptr) {
        ctx->state->replace_converted = 0;
    }
}

// While the scope lives, the walk runs on behalf of a node above. A scope inside another one changes nothing.
class PropagationScope {
public:
    explicit PropagationScope(tvk_map_ctx ctx) : state_(is_propagating(ctx) ? nullptr : ctx->state) {
        if (state_ != nullptr) {
            state_->delete_walk_active = 1;
        }
    }
    ~PropagationScope() {
        if (state_ != nullptr) {
            state_->delete_walk_active = 0;
        }
    }
    PropagationScope(const PropagationScope &) = delete;
    PropagationScope &operator=(const PropagationScope &) = delete;

private:
    tvk_map_request_state *state_;
};

// While the scope lives, list_key_state has the value given. An inactive scope changes nothing.
class KeyStateScope {
public:
    KeyStateScope(tvk_map_ctx ctx, bool active, std::uint32_t value) : state_(active ? ctx->state : nullptr) {
        if (state_ != nullptr) {
            former_ = state_->list_key_state;
            state_->list_key_state = value;
        }
    }
    ~KeyStateScope() {
        if (state_ != nullptr) {
            state_->list_key_state = former_;
        }
    }
    KeyStateScope(const KeyStateScope &) = delete;
    KeyStateScope &operator=(const KeyStateScope &) = delete;

private:
    tvk_map_request_state *state_;
    std::uint32_t former_ = 0;
};

}  // namespace tvk

#endif
