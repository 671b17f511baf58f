#include "tvk_map_common/index/entry_table.h"

#include "tvk_map_common/index/text_hash.h"

namespace {

using tvk::Node;

// The only child of that tag, when it is a leaf with a value; null otherwise.
const Node *only_leaf(const Node &entry, const char *tag) {
    const Node *leaf = nullptr;
    for (const Node &child : tvk::children(entry)) {
        if (child.tag == nullptr) {
            return nullptr;
        }
        if (std::strcmp(child.tag, tag) != 0) {
            continue;
        }
        if (leaf != nullptr) {
            return nullptr;
        }
        leaf = &child;
    }
    const bool has_value =
        leaf != nullptr && tvk::has(*leaf, TVK_HAS_TAG) && tvk::has(*leaf, TVK_HAS_DATA) && leaf->data != nullptr;
    return has_value ? leaf : nullptr;
}

const char *behind(const char *text) {
    return text + std::strlen(text) + 1;
}

}  // namespace

bool tvk::EntryTable::set_up(const char *tag, std::span<const KeyText> keys) {
    any_tag_ = tag == nullptr;
    std::size_t size = (any_tag_ ? 0 : std::strlen(tag)) + 1;
    for (const KeyText &key : keys) {
        size += std::strlen(key.name) + 1;
    }
    names_ = allocate_text(size, "TVK MAP index");
    if (names_ == nullptr) {
        return false;
    }
    key_count_ = keys.size();
    char *at = names_.get();
    const auto append = [&at](const char *text) {
        const std::size_t length = std::strlen(text) + 1;
        std::memcpy(at, text, length);
        at += length;
    };
    append(any_tag_ ? "" : tag);
    for (const KeyText &key : keys) {
        append(key.name);
    }
    return true;
}

bool tvk::EntryTable::is_for(const char *tag, std::span<const KeyText> keys) const {
    if (keys.size() != key_count_ || any_tag_ != (tag == nullptr) ||
        (!any_tag_ && std::strcmp(names_.get(), tag) != 0)) {
        return false;
    }
    const char *name = names_.get();
    for (const KeyText &key : keys) {
        name = behind(name);
        if (std::strcmp(name, key.name) != 0) {
            return false;
        }
    }
    return true;
}

void tvk::EntryTable::take_in(std::span<const Node> children) {
    while (frontier_ < children.size() && take_in(children[frontier_], frontier_)) {
        ++frontier_;
    }
}

bool tvk::EntryTable::take_in(const Node &child, std::size_t position) {
    // A child without a tag ends some searches.
    if (child.tag == nullptr) {
        return false;
    }
    if (!any_tag_ && std::strcmp(child.tag, names_.get()) != 0) {
        return true;
    }
    all_numbered_ = all_numbered_ && child.subtree_index != 0;
    std::uint32_t hash = 0;
    const char *name = names_.get();
    for (std::size_t i = 0; i < key_count_; ++i) {
        name = behind(name);
        const Node *leaf = only_leaf(child, name);
        if (leaf == nullptr) {
            return false;
        }
        hash = hash_text(leaf->data, hash);
    }
    return slots_.insert({hash, static_cast<std::int32_t>(position) + 1});
}

const tvk::EntrySlot *tvk::EntryTable::first(std::span<const KeyText> keys) const {
    std::uint32_t hash = 0;
    for (const KeyText &key : keys) {
        hash = hash_text(key.value, hash);
    }
    return slots_.first(hash);
}

bool tvk::EntryTable::reads(const char *tag) const {
    const char *name = names_.get();
    for (std::size_t i = 0; i < key_count_; ++i) {
        name = behind(name);
        if (std::strcmp(name, tag) == 0) {
            return true;
        }
    }
    return false;
}

void tvk::EntryTable::clear() {
    slots_.clear();
    frontier_ = 0;
    all_numbered_ = true;
}
