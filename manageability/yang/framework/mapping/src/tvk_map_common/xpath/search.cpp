// The search along the steps of an xpath.
#include "tvk_map_common/xpath/search.h"

#include <algorithm>
#include <cstring>

#include "tvk_map_common/index/candidates.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/xpath/key_groups.h"

namespace tvk {

namespace {

// A name cut from a path, with a terminator of its own.
class Name {
public:
    // Every step fits: none is longer than the path that it stands in.
    explicit Name(std::string_view name) {
        std::memcpy(text_, name.data(), name.size());
        text_[name.size()] = '\0';
    }
    const char *get() const { return text_; }

private:
    char text_[TVK_MAP_MAX_PATH];
};

// Finds the first child of this name. Returns TVK_ERR_NOT_FOUND when a child without a tag comes first, and
// TVK_ERR_NOT_PRESENT when there is no such child.
qerrno find_child(tvk_map_ctx ctx, Node &node, const char *name, Node *&found) {
    Node *child = first_of_tag(ctx, node, name);
    if (child == nullptr) {
        return TVK_ERR_NOT_PRESENT;
    }
    if (child->tag == nullptr) {
        return TVK_ERR_NOT_FOUND;
    }
    found = child;
    return TVK_OK;
}

// The children of the entry are searched without an index, because making one could push out that of the list.
qerrno compare_keys(Node &entry, const KeyGroups &keys) {
    for (const KeyGroup &key : keys.all()) {
        Node *leaf = nullptr;
        if (const qerrno status = find_child(nullptr, entry, key.name, leaf); status != TVK_OK) {
            return status;
        }
        // The value counts as it stands, whatever its presence bit says.
        if (!same_text(leaf->data, key.value)) {
            return TVK_ERR_NOT_PRESENT;
        }
    }
    return TVK_OK;
}

// Returns whether the entry is deleted or removed, whatever the presence bit of the operation says.
bool is_going(const Node &entry) {
    return entry.operation == TVK_OPERATION_DELETE || entry.operation == TVK_OPERATION_REMOVE;
}

qerrno find_entry(tvk_map_ctx ctx, Node &node, std::string_view step, bool adding, Node *&found) {
    KeyGroups keys;
    if (!tvk_map_get_key_value_info(step, keys)) {
        return TVK_ERR_INVALID;
    }
    KeyText texts[TVK_MAP_XPATH_MAX_KEYS];
    std::ranges::transform(keys.all(), texts, [](const KeyGroup &key) { return KeyText{key.name, key.value}; });
    const Name name{list_name(step)};
    EntryCandidates<Node> entries{ctx, node, name.get(), {texts, keys.count}};
    while (Node *entry = entries.next()) {
        if (entry->tag == nullptr) {
            return TVK_ERR_NOT_FOUND;
        }
        // The keys are compared before the name, because they tell apart more entries.
        const qerrno status = compare_keys(*entry, keys);
        if (status != TVK_ERR_NOT_PRESENT && std::strcmp(entry->tag, name.get()) == 0 &&
            !(adding && is_going(*entry))) {
            found = entry;
            return status;
        }
    }
    return TVK_ERR_NOT_PRESENT;
}

qerrno find_step(tvk_map_ctx ctx, Node &node, const Steps &steps, const tvk_map_node_operation &record, Node *&found) {
    const bool adding = record.op == TVK_XPATH_ADD;
    if (steps.is_keyed()) {
        return find_entry(ctx, node, steps.text(), adding, found);
    }
    const bool wants_new_instance = adding && record.kind == TVK_XPATH_LEAF_INSTANCE && steps.is_last();
    // A child without a tag counts as none here.
    const bool is_there = find_child(ctx, node, Name{steps.text()}.get(), found) == TVK_OK;
    return is_there && !wants_new_instance ? TVK_OK : TVK_ERR_NOT_PRESENT;
}

}  // namespace

qerrno tvk_map_search_subtree_node(XpathSearch &search) {
    tvk_map_node_operation &record = *search.record;
    const char *path = record.xpath[0] == '/' ? record.xpath + 1 : record.xpath;
    Node *node = record.root;
    Steps steps{path};
    if (steps.at_end()) {
        record.result = nullptr;  // an empty path names no node and gives no place to add to
        return TVK_ERR_INVALID;
    }
    qerrno status = TVK_OK;
    for (; status == TVK_OK && !steps.at_end(); steps.advance()) {
        search.stop_offset = static_cast<std::uint16_t>(steps.offset());
        Node *found = nullptr;
        status = find_step(search.ctx, *node, steps, record, found);
        if (status == TVK_OK) {
            search.parent = node;
            node = found;
        }
    }
    record.result = status == TVK_OK || record.op == TVK_XPATH_ADD ? node : nullptr;
    return status;
}

}  // namespace tvk
