// One step of the container phase: a source node, the target node in its place, and the verdict on the target.
//
// The phase makes the calls in this order: it checks every source child; when all have passed, it drops the target
// children that the source does not name; then the rest decides on the target itself.
#ifndef TVK_MAP_FILTER_CONTAINER_ELEMENT_H
#define TVK_MAP_FILTER_CONTAINER_ELEMENT_H

#include "tvk_map_common/internal/node.h"
#include "tvk_map_filter.h"

namespace tvk {

// The numbers of source children, by what they ask for.
struct ChildCounts {
    std::int32_t total = 0;
    std::int32_t containment = 0;
    std::int32_t selection = 0;
    std::int32_t content_match = 0;
    std::int32_t key = 0;
    std::int32_t key_selection = 0;
    std::int32_t key_match = 0;
};

enum class Check { kPassed, kAbandoned, kKeyFailed, kContentFailed };

struct CheckedChild {
    Check result;
    const Node *key = nullptr;  // the key leaf of the target that decided a key match, for or against
};

class ContainerElement {
public:
    // Resets and uses the table entry of the element's level.
    ContainerElement(tvk_map_ctx ctx, const tvk_map_dfs_elem &element, tvk_map_cnt_hier_stack_t *levels);

    // Returns whether the element needs no step. Marks the target of a source without children as kept whole.
    static bool passes_over(const tvk_map_dfs_elem &element);

    CheckedChild check(const Node &child);

    // Keeps the target and all above it when every key compared was met at once, before any other value.
    void keep_for_matched_keys();

    // Stores the counts of the keys where the walks up the table look for them.
    void store_key_counts();

    // Marks the target children, or pushes them with the source child that descends into them. Returns false when the
    // element is abandoned.
    bool drop_unnamed(kel_queue *stack);

    bool is_all_dropped() const;

    // Drops the target with all of its children, and the parents that have nothing left then.
    void drop_upwards();

    const Node &source() const { return source_; }
    Node &target() const { return target_; }
    std::span<Node> source_children() const { return children(source_); }
    const ChildCounts &counts() const { return counts_; }
    std::int32_t target_children() const { return entry_.ch; }
    std::int32_t dropped() const { return dropped_; }

private:
    struct Values {
        Node *equal;
        Node *differing;
    };
    Values find_values(const Node &child) const;
    CheckedChild check_selection(const Node &child);
    CheckedChild check_key(const Node &child);
    Check check_content(const Node &child);

    bool selects() const { return counts_.selection > 0 || counts_.key_selection > 0; }
    bool is_all_matched() const;
    bool keep_selected(kel_queue *stack, Node &source_child, Node &target_child) const;
    bool keep_contained(kel_queue *stack, Node &source_child, Node &target_child) const;
    void descend(kel_queue *stack, Node &source_child, Node &target_child) const;

    tvk_map_ctx ctx_;
    Node &source_;
    Node &target_;
    std::uint32_t level_;
    tvk_map_cnt_hier_stack_t *levels_;
    tvk_map_cnt_hier &entry_;
    ChildCounts counts_;
    std::int32_t matched_keys_ = 0;
    bool key_differed_ = false;
    std::int32_t dropped_ = 0;
};

}  // namespace tvk

#endif
