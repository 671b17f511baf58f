// Keeping the pointers to nodes in the request state valid when a child array moves.
#ifndef TVK_MAP_STATE_HELD_NODES_H
#define TVK_MAP_STATE_HELD_NODES_H

#include <cstddef>
#include <cstdint>

#include "tvk_map_common/internal/node.h"
#include "tvk_map_types.h"

namespace tvk {

// Remembers where a child array stood before it grew or shrank.
class WatchedArray {
public:
    explicit WatchedArray(std::span<const Node> children)
        : begin_(reinterpret_cast<std::uintptr_t>(children.data())), size_(children.size_bytes()) {}

    bool is_at(const Node *array) const { return reinterpret_cast<std::uintptr_t>(array) == begin_; }

    // Redirects the pointers that the state holds into the array to its new place.
    void moved(tvk_map_request_state &state, Node *to) const {
        follow(state.pending_list_node, to);
        follow(state.xpath_attachment, to);
        for (std::size_t i = 0; i < state.output_list_count; ++i) {
            follow(state.output_list[i].list_node, to);
        }
    }

private:
    void follow(Node *&child, Node *to) const {
        const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(child) - begin_;
        if (offset < size_) {
            child = to + offset / sizeof(Node);
        }
    }

    std::uintptr_t begin_;
    std::size_t size_;
};

}  // namespace tvk

#endif
