#include "tvk_map_common/xpath/search.h"

#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/xpath/key_groups.h"

namespace {

using tvk::Node;

// The first child of that name; TVK_ERR_NOT_FOUND when a child without a tag comes first.
qerrno find_child(Node &node, std::string_view name, Node *&found) {
    for (Node &child : tvk::children(node)) {
        if (child.tag == nullptr) {
            return TVK_ERR_NOT_FOUND;
        }
        if (name == child.tag) {
            found = &child;
            return TVK_OK;
        }
    }
    return TVK_ERR_NOT_PRESENT;
}

qerrno compare_keys(Node &entry, const tvk::KeyGroups &keys) {
    for (const tvk::KeyGroup &key : keys.all()) {
        Node *leaf = nullptr;
        if (const qerrno status = find_child(entry, key.name, leaf); status != TVK_OK) {
            return status;
        }
        if (!tvk::has(*leaf, TVK_HAS_DATA) || !tvk::same_text(leaf->data, key.value)) {
            return TVK_ERR_NOT_PRESENT;
        }
    }
    return TVK_OK;
}

// Whatever the presence bit of the operation says.
bool is_going(const Node &entry) {
    return entry.operation == TVK_OPERATION_DELETE || entry.operation == TVK_OPERATION_REMOVE;
}

qerrno find_entry(Node &node, std::string_view step, bool adding, Node *&found) {
    tvk::KeyGroups keys{};
    if (!tvk::tvk_map_get_key_value_info(step, keys)) {
        return TVK_ERR_INVALID;
    }
    const std::string_view name = tvk::list_name(step);
    for (Node &child : tvk::children(node)) {
        if (child.tag == nullptr) {
            return TVK_ERR_NOT_FOUND;
        }
        if (name != child.tag || (adding && is_going(child))) {
            continue;
        }
        if (const qerrno status = compare_keys(child, keys); status != TVK_ERR_NOT_PRESENT) {
            found = &child;
            return status;
        }
    }
    return TVK_ERR_NOT_PRESENT;
}

qerrno find_step(Node &node, const tvk::Steps &steps, const tvk_map_node_operation &record, Node *&found) {
    const bool adding = record.op == TVK_XPATH_ADD;
    if (steps.is_keyed()) {
        return find_entry(node, steps.text(), adding, found);
    }
    const bool wants_new_instance = adding && record.kind == TVK_XPATH_LEAF_INSTANCE && steps.is_last();
    // A child without a tag is no different from none here.
    const bool is_there = find_child(node, steps.text(), found) == TVK_OK;
    return is_there && !wants_new_instance ? TVK_OK : TVK_ERR_NOT_PRESENT;
}

}  // namespace

qerrno tvk::tvk_map_search_subtree_node(XpathSearch &search) {
    tvk_map_node_operation &record = *search.record;
    const char *path = record.xpath[0] == '/' ? record.xpath + 1 : record.xpath;
    Node *node = record.root;
    tvk::Steps steps{path};
    qerrno status = steps.at_end() ? TVK_ERR_INVALID : TVK_OK;
    for (; status == TVK_OK && !steps.at_end(); steps.advance()) {
        search.stop_offset = static_cast<std::uint16_t>(steps.offset());
        Node *found = nullptr;
        status = find_step(*node, steps, record, found);
        if (status == TVK_OK) {
            node = found;
        }
    }
    record.result = status == TVK_OK || record.op == TVK_XPATH_ADD ? node : nullptr;
    return status;
}
