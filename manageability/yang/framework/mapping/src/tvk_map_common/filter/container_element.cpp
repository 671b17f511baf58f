// The checks and verdicts of one step of the container phase.
#include "tvk_map_common/filter/container_element.h"

#include "tvk_map_common/filter/filter_node.h"

namespace tvk {

namespace {

bool descends(const Node &source_child) {
    return is_of_type(source_child, TVK_NODE_TYPE_CONTAINER) || is_of_type(source_child, TVK_NODE_TYPE_LIST);
}

// Returns whether the node has a count of children but no children to visit.
bool is_broken(const Node &node) {
    return claimed_children(node) != 0 && children(node).empty();
}

}  // namespace

bool ContainerElement::passes_over(const tvk_map_dfs_elem &element) {
    if (element.node == nullptr || element.pair.node == nullptr) {
        return true;
    }
    const Node &source = *element.node;
    Node &target = *element.pair.node;
    if (claimed_children(source) == 0) {
        set_verdict(target, TVK_NODE_KIND_KA);
        return true;
    }
    if (keeps_all(target) || is_broken(source) || is_broken(target)) {
        return true;
    }
    return element.level == 2 && same_text(source.tag, "bgp");
}

ContainerElement::ContainerElement(tvk_map_ctx ctx, const tvk_map_dfs_elem &element, tvk_map_cnt_hier_stack_t *levels)
    : ctx_(ctx),
      source_(*element.node),
      target_(*element.pair.node),
      level_(element.level),
      levels_(levels),
      entry_(levels[element.level]) {
    entry_ = {};
    entry_.node = &target_;
    entry_.lvl = static_cast<std::int32_t>(level_);
    entry_.tp = static_cast<std::int32_t>(tvk_map_get_node_type(&source_));
    entry_.ch = claimed_children(target_);
    counts_.total = claimed_children(source_);
    if (level_ <= 2) {
        set_node_type(source_, TVK_NODE_TYPE_CONTAINER);
    }
    if (level_ == 1) {
        counts_.containment = counts_.total;
    }
}

CheckedChild ContainerElement::check(const Node &child) {
    switch (tvk_map_get_node_type(&child)) {
        case TVK_NODE_TYPE_NONE:
            counts_.key += is_key(child) ? 1 : 0;
            return {Check::kPassed};
        case TVK_NODE_TYPE_SELECTION:
        case TVK_NODE_TYPE_SELECTION_ALT:
            return check_selection(child);
        case TVK_NODE_TYPE_CONTAINER:
        case TVK_NODE_TYPE_LIST:
            ++counts_.containment;
            return {Check::kPassed};
        case TVK_NODE_TYPE_CONTENT_MATCH:
            return {check_content(child)};
        default:
            return {Check::kPassed};
    }
}

CheckedChild ContainerElement::check_selection(const Node &child) {
    const bool has_value = has(child, TVK_HAS_DATA);
    if (has_value && is_key(child)) {
        return check_key(child);
    }
    if (is_key(child)) {
        ++counts_.key_selection;
    } else if (!has_value || is_of_type(child, TVK_NODE_TYPE_SELECTION_ALT)) {
        ++counts_.selection;
    }
    return {Check::kPassed};
}

// Returns the first target child with the name and value of child, and the last one before it with the name but another
// value.
ContainerElement::Values ContainerElement::find_values(const Node &child) const {
    Values values{nullptr, nullptr};
    for (Node &candidate : children(target_)) {
        if (!same_text(candidate.tag, child.tag) || !has(candidate, TVK_HAS_DATA)) {
            continue;
        }
        if (same_text(candidate.data, child.data)) {
            values.equal = &candidate;
            break;
        }
        values.differing = &candidate;
    }
    return values;
}

CheckedChild ContainerElement::check_key(const Node &child) {
    if (child.tag == nullptr) {
        return {Check::kAbandoned};
    }
    if (children(target_).empty()) {
        return {Check::kKeyFailed};
    }
    ++counts_.key_match;
    const Values values = find_values(child);
    key_differed_ = key_differed_ || values.differing != nullptr;
    if (values.equal != nullptr) {
        set_verdict(*values.equal, TVK_NODE_KIND_KA);
        ++matched_keys_;
        return {Check::kPassed, values.equal};
    }
    if (values.differing == nullptr) {
        return {Check::kKeyFailed};
    }
    if (keeps_all(*values.differing)) {
        return {Check::kPassed};
    }
    set_verdict(*values.differing, TVK_NODE_KIND_NONE);
    return {Check::kKeyFailed, values.differing};
}

Check ContainerElement::check_content(const Node &child) {
    if (child.tag == nullptr) {
        return Check::kAbandoned;
    }
    if (children(target_).empty()) {
        return Check::kContentFailed;
    }
    ++counts_.content_match;
    const Values values = find_values(child);
    if (values.equal != nullptr) {
        return Check::kPassed;
    }
    if (values.differing == nullptr) {
        return Check::kContentFailed;
    }
    if (is_kept(*values.differing)) {
        return Check::kPassed;
    }
    set_verdict(*values.differing, TVK_NODE_KIND_NONE);
    return Check::kContentFailed;
}

void ContainerElement::keep_for_matched_keys() {
    if (matched_keys_ > 0 && !key_differed_) {
        entry_.kch += matched_keys_;
        tvk_map_mark_visit_parent_mark_kc(ctx_, levels_, level_);
    }
}

void ContainerElement::store_key_counts() {
    entry_.kn = counts_.key;
    entry_.ksn = counts_.key_selection;
    entry_.kmn = counts_.key_match;
}

bool ContainerElement::is_all_matched() const {
    return counts_.key_match == counts_.total || (counts_.containment == 0 && counts_.content_match > 0);
}

// Pushes a pair of children. A pair too deep for the level table is not visited, and so not kept.
void ContainerElement::descend(kel_queue *stack, Node &source_child, Node &target_child) const {
    if (level_ + 1 < TVK_MAP_MAX_FILTER_LEVELS) {
        tvk_map_dfs_con_stack_push(ctx_, stack, &source_child, &target_child, level_ + 1, 0, 0);
    }
}

// Descends into a target child that a selecting source names, or keeps it as a node, even one that was kept whole for
// its key. Returns whether source_child names it.
bool ContainerElement::keep_selected(kel_queue *stack, Node &source_child, Node &target_child) const {
    if (!same_text(source_child.tag, target_child.tag)) {
        return false;
    }
    if (descends(source_child)) {
        descend(stack, source_child, target_child);
    } else {
        set_verdict(target_child, TVK_NODE_KIND_KN);
    }
    return true;
}

bool ContainerElement::keep_contained(kel_queue *stack, Node &source_child, Node &target_child) const {
    if (counts_.containment == 0 || !same_text(source_child.tag, target_child.tag)) {
        return false;
    }
    if (is_key(source_child)) {
        keep_node(target_child);
    } else {
        descend(stack, source_child, target_child);
    }
    return true;
}

bool ContainerElement::drop_unnamed(kel_queue *stack) {
    for (Node &target_child : children(target_)) {
        if (target_child.tag == nullptr) {
            return false;
        }
        bool named = false;
        for (Node &source_child : children(source_)) {
            if (source_child.tag == nullptr) {
                return false;
            }
            if (!selects() && is_all_matched()) {
                set_verdict(target_, TVK_NODE_KIND_KA);
                return false;
            }
            const bool names = selects() ? keep_selected(stack, source_child, target_child)
                                         : keep_contained(stack, source_child, target_child);
            named = named || names;
        }
        if (!named && !is_kept(target_child)) {
            set_verdict(target_child, TVK_NODE_KIND_NONE);
            ++dropped_;
        }
    }
    return true;
}

bool ContainerElement::is_all_dropped() const {
    return dropped_ >= entry_.ch - counts_.key;
}

void ContainerElement::drop_upwards() {
    entry_.dch = entry_.ch;
    tvk_map_mark_visit_parent(ctx_, levels_, level_);
}

}  // namespace tvk
