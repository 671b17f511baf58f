#include "tree.h"

#include <new>

#include "kel_memory.h"
#include "tvk_string.h"

namespace tvk::test {

namespace {

template <class Item>
Item *checked(Item *block) {
    return block != nullptr ? block : throw std::bad_alloc();
}

template <class Item>
Item *records(std::size_t count) {
    return static_cast<Item *>(checked(kel_named_calloc_(count, sizeof(Item), "test tree", 0)));
}

char *copy_of(const Text &text) {
    return text ? checked(tvk_strdup(text->c_str(), "test tree")) : nullptr;
}

qidl_tvk_name_value *copy_of(const Pairs &pairs) {
    auto *copies = pairs.empty() ? nullptr : records<qidl_tvk_name_value>(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        copies[i] = {copy_of(pairs[i].first), copy_of(pairs[i].second), nullptr};
    }
    return copies;
}

}  // namespace

Node &Node::type(std::uint32_t node_type) {
    plain_.schema_info.flags = TVK_SCHEMA_INFO_HAS_NODE_TYPE;
    return set(plain_.schema_info.node_type, node_type);
}

Node &Node::attribute(const std::string &name, const std::string &value) {
    attributes_.emplace_back(name, value);
    return with(TVK_HAS_ATTRIBUTES);
}

Node &Node::insert(std::uint32_t position, const Pairs &keys, const Text &value, const Text &keys_str) {
    const int presence =
        TVK_INSERT_HAS_POSITION | (keys.empty() ? 0 : TVK_INSERT_HAS_KEYS) | (value ? TVK_INSERT_HAS_VALUE : 0);
    plain_.edit_insert.position = position;
    plain_.edit_insert.insert_presence = static_cast<std::uint8_t>(presence);
    plain_.edit_insert.keys_presence = keys.empty() ? 0 : 1;
    plain_.edit_insert.value_presence = value ? 1 : 0;
    insert_keys_ = keys;
    insert_value_ = value;
    return set(insert_keys_str_, keys_str, TVK_HAS_EDIT_INSERT);
}

void Node::fill(qidl_tvk_datatree &record, const Text &inherited_ns) const {
    const Text &ns = ns_ || !inherits_ns_ ? ns_ : inherited_ns;
    record = plain_;
    record.tag = copy_of(tag_);
    record.data = copy_of(data_);
    record.ns = copy_of(ns);
    record.data_ns = copy_of(data_ns_);
    record.attributes = copy_of(attributes_);
    record.attribute_count = static_cast<std::int32_t>(attributes_.size());
    record.edit_insert.keys = copy_of(insert_keys_);
    record.edit_insert.key_count = static_cast<std::int32_t>(insert_keys_.size());
    record.edit_insert.keys_str = copy_of(insert_keys_str_);
    record.edit_insert.value = copy_of(insert_value_);
    record.subtrees = children_.empty() ? nullptr : records<qidl_tvk_datatree>(children_.size());
    for (const Node &child : children_) {
        child.fill(record.subtrees[record.subtree_count++], ns);
    }
    const unsigned bits =
        set_bits_ | (tag_ ? TVK_HAS_TAG : 0u) | (ns ? TVK_HAS_NS : 0u) | (children_.empty() ? 0u : TVK_HAS_SUBTREES);
    record.presence = static_cast<std::uint16_t>(bits & ~cleared_bits_);
}

Node node(const Text &tag, const Text &ns) {
    Node description;
    description.tag_ = tag;
    description.ns_ = ns;
    return description;
}

Tree::Tree(const Node &description) : record_(records<qidl_tvk_datatree>(1)) {
    description.fill(*record_, {});
}

void Tree::Release::operator()(qidl_tvk_datatree *record) const {
    qidl_tvk_datatree_free_ext(record, tvk_gpb_free, nullptr, 0);
    kel_named_free(record);
}

}  // namespace tvk::test
