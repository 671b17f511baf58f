// The keys of a list entry: their scan and check, the handling of a key leaf, and the keys that a read lacks.
#include "tvk_map_process_request/list_keys.h"

#include "tvk_map_common/internal/log.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"

namespace tvk {

namespace {

const tmap_key_entry *find_key(const tmap_node_list_info &info, const Node &child) {
    for (int i = 0; info.keys != nullptr && i < info.key_count; ++i) {
        if (same_text(child.tag, info.keys[i].key_tag)) {
            return &info.keys[i];
        }
    }
    return nullptr;
}

}  // namespace

qerrno scan_keys(const ListEntry &entry, KeyCounts &counts, SeenChildren &seen) {
    const bool compares = is_add_request(entry.ctx);
    for (Node &child : children(entry.node)) {
        const tmap_key_entry *key = find_key(entry.info, child);
        if (key == nullptr) {
            seen.other = true;
            continue;
        }
        if (compares) {
            const qerrno status =
                tvk_map_check_oc_leafref(entry.ctx, key->leafref_path, key->leafref_target, child.tag, &entry.node);
            if (status != TVK_OK) {
                return status;
            }
        }
        ++counts.present;
        seen.key = true;
        mark_key(child);
        if (has(child, TVK_HAS_DATA)) {
            ++counts.valued;
        } else {
            seen.empty_key = true;
        }
    }
    return TVK_OK;
}

qerrno judge_keys(const ListEntry &entry, const KeyCounts &counts) {
    const auto all_or_none = [&](std::uint8_t count) { return count == 0 || count == entry.info.key_count; };
    const bool needs_values = is_add_request(entry.ctx);
    if (all_or_none(counts.present) && all_or_none(counts.valued) && !(needs_values && counts.valued == 0)) {
        return TVK_OK;
    }
    TVK_ERR_AS(kListParse, entry.ctx, "List key node error.");
    set_error_node_tag(entry.ctx, "keytag");
    tvk_oc_error_path(entry.ctx);
    return TVK_ERR_LIST_KEY;
}

qerrno handle_key_leaf(const ListEntry &entry, const tmap_child_entry &handler, Node &node, std::size_t position,
                       SeenChildren &seen) {
    const Node &leaf = children(node)[position];
    if (is_add_request(entry.ctx) && !has(leaf, TVK_HAS_DATA)) {
        TVK_ERR_AS(kListParse, entry.ctx, "Empty list key specified.");
        set_error_node_tag(entry.ctx, leaf.tag);
        tvk_oc_error_path(entry.ctx);
        return TVK_ERR_LIST_KEY;
    }
    if (is_delete(leaf)) {
        TVK_ERR_AS(kListParse, entry.ctx, "The key node should not have delete operation.");
        tvk_oc_error_path(entry.ctx);
        return TVK_ERR_KEY_OPERATION;
    }
    const qerrno status = call(handler.handler, entry.ctx, leaf, entry.target);
    // The leaf is found again by its position, because the handler may have made the array move.
    if (position < children(node).size()) {
        Node &key = children(node)[position];
        mark_key(key);
        seen.key = seen.key || has(key, TVK_HAS_DATA);
    }
    return status;
}

qerrno add_missing_keys(const ListEntry &entry, const SeenChildren &seen) {
    if (!is_read_request(entry.ctx) || is_propagating(entry.ctx) || !seen.other || seen.key) {
        return TVK_OK;
    }
    qerrno status = TVK_OK;
    for (int i = 0; entry.info.keys != nullptr && i < entry.info.key_count; ++i) {
        Node *added = nullptr;
        status = tvk_map_datatree_add_path_flagged(entry.ctx, &entry.node, entry.info.keys[i].key_tag, entry.node.ns,
                                                   nullptr, nullptr, &added, 0, TVK_ADD_RELATIVE | TVK_ADD_UNFILTERED);
        if (added != nullptr) {
            mark_key(*added);
        }
    }
    return status;
}

}  // namespace tvk
