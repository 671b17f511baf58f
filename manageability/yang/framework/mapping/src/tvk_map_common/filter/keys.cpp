// The key leaves of a filter's list entry, and the comparison with those of a response entry.
#include "tvk_map_common/internal/node.h"
#include "tvk_map_filter.h"

using namespace tvk;

uint32_t tvk_map_datatree_get_keys(const struct qidl_tvk_datatree *node, struct tvk_map_key_info *keys) {
    if (node == nullptr || keys == nullptr) {
        return 0;
    }
    *keys = {};
    std::uint32_t valued = 0;
    std::uint32_t position = 0;
    for (const Node &child : children(*node)) {
        if (keys->key_count == TVK_MAP_MAX_FILTER_KEYS) {
            break;
        }
        if (is_key(child)) {
            const std::uint32_t has_value = has(child, TVK_HAS_DATA) ? 1 : 0;
            keys->key_index[keys->key_count] = position;
            keys->key_has_value[keys->key_count] = has_value;
            ++keys->key_count;
            valued += has_value;
        }
        ++position;
    }
    return valued;
}

namespace tvk {

namespace {

bool satisfies(const Node &child, const Node &key) {
    const bool any_value = !has(key, TVK_HAS_DATA);
    return any_value || (has(child, TVK_HAS_DATA) && same_text(child.data, key.data));
}

bool has_key(const Node &target, const Node &key) {
    for (const Node &child : children(target)) {
        if (child.tag == nullptr) {
            return false;
        }
        if (same_text(child.tag, key.tag) && satisfies(child, key)) {
            return true;
        }
    }
    return false;
}

}  // namespace

}  // namespace tvk

uint32_t tvk_map_datatree_compare_keys(const struct qidl_tvk_datatree *filter_entry,
                                       const struct tvk_map_key_info *keys, const struct qidl_tvk_datatree *target) {
    if (filter_entry == nullptr || keys == nullptr || target == nullptr) {
        return 0;
    }
    const std::span<const Node> leading = children(*filter_entry);
    for (std::uint32_t i = 0; i < keys->key_count && i < TVK_MAP_MAX_FILTER_KEYS; ++i) {
        if (keys->key_has_value[i] != 1) {
            continue;
        }
        // The ith child is compared and not the one at key_index: key leaves come first in a filter's entry.
        if (i >= leading.size() || !has_key(*target, leading[i])) {
            return 0;
        }
    }
    return 1;
}
