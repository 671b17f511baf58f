// Makes the nodes that an edit adds.
#include "loose_node.h"

#include <new>

#include "framework/heap.h"

namespace tvk::framework {

LooseNode copy_of(const Node &node) {
    LooseNode copy;
    copy_tree(node, *copy);
    return copy;
}

LooseNode bare_copy(const Node &node) {
    Node shown = node;
    shown.subtrees = nullptr;
    shown.subtree_count = 0;
    shown.edit_insert = {};
    shown.operation = 0;
    set_absent(shown, TVK_HAS_SUBTREES | TVK_HAS_OPERATION | TVK_HAS_EDIT_INSERT | TVK_HAS_NODE_KIND);
    return copy_of(shown);
}

LooseNode anchor_of(const Node &node) {
    LooseNode like = bare_copy(node);
    const qidl_tvk_edit_insert &insert = node.edit_insert;
    if (insert.value != nullptr && insert.value_presence != 0) {
        kel_named_free(like->data);
        like->data = nullptr;
        like->data = copy_text(insert.value);
        set_present(*like, TVK_HAS_DATA);
    }
    for (int32_t i = 0; i < insert.key_count && insert.keys != nullptr; ++i) {
        LooseNode key;
        key->tag = copy_text(insert.keys[i].name != nullptr ? insert.keys[i].name : "");
        key->data = copy_text(insert.keys[i].value != nullptr ? insert.keys[i].value : "");
        key->presence = TVK_HAS_TAG | TVK_HAS_DATA;
        append_child(*like, std::move(key));
    }
    return like;
}

void append_child(Node &parent, LooseNode child) {
    Node &place = append_child(parent);
    place = child.take();
}

void take_value(Node &node, const Node &other) {
    constexpr uint16_t kValue = TVK_HAS_DATA | TVK_HAS_DATA_NS;
    LooseNode value = bare_copy(other);
    std::swap(node.data, value->data);
    std::swap(node.data_ns, value->data_ns);
    set_absent(node, kValue);
    set_present(node, static_cast<uint16_t>(other.presence & kValue));
}

void give_insert(Node &node, const qidl_tvk_edit_insert &insert) {
    if (qidl_tvk_edit_ins_duplicate(&node.edit_insert, &insert, tvk_gpb_alloc, nullptr) != TVK_OK) {
        throw std::bad_alloc();
    }
    set_present(node, TVK_HAS_EDIT_INSERT);
}

}  // namespace tvk::framework
