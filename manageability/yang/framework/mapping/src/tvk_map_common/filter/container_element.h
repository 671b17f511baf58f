// One step of the container phase: a source node, the target node that stands in its place, and what becomes of the
// target.
//
// The order of the calls is the phase's: every source child is checked; where all passed, the children that the source
// does not name are dropped; then what is left decides on the target itself.
#ifndef TVK_MAP_FILTER_CONTAINER_ELEMENT_H
#define TVK_MAP_FILTER_CONTAINER_ELEMENT_H

#include "tvk_map_common/internal/node.h"
#include "tvk_map_filter.h"

namespace tvk {

// The source's children by what they ask for.
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
    const Node *key = nullptr;  // the target's key leaf that settled a key match, either way
};

class ContainerElement {
public:
    // Takes over the entry of the element's level.
    ContainerElement(tvk_map_ctx ctx, const tvk_map_dfs_elem &element, tvk_map_cnt_hier_stack_t *levels);

    // Whether nothing has to be worked out for the element: its target is then marked, if at all.
    static bool passes_over(const tvk_map_dfs_elem &element);

    CheckedChild check(const Node &child);

    // When every key compared was met at once, the target and all above it stay.
    void keep_for_matched_keys();

    // Puts what the checks counted where the walks up the table look for it.
    void store_key_counts();

    // Marks target children, or pushes them with the source child that descends into them; false abandons the element.
    bool drop_unnamed(kel_queue *stack);

    bool is_all_dropped() const;

    // Drops the target with all of its children, and the parents of which nothing is left then.
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
