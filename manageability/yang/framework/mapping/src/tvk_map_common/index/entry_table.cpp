// Filling, correcting and searching the table of list entries.
#include "tvk_map_common/index/entry_table.h"

#include "tvk_map_common/index/text_hash.h"

namespace tvk {

namespace {

// The leaf of one key in an entry. It is null when the key is missing, has no value or is there twice, or when a child
// has no tag.
struct KeyLeaf {
    const Node *leaf = nullptr;
    bool is_missing = false;  // the entry has no child of the key's tag
};

KeyLeaf find_key_leaf(const Node &entry, const char *tag) {
    const Node *leaf = nullptr;
    for (const Node &child : children(entry)) {
        if (child.tag == nullptr) {
            return {};
        }
        if (std::strcmp(child.tag, tag) != 0) {
            continue;
        }
        if (leaf != nullptr) {
            return {};
        }
        leaf = &child;
    }
    const bool has_value =
        leaf != nullptr && has(*leaf, TVK_HAS_TAG) && has(*leaf, TVK_HAS_DATA) && leaf->data != nullptr;
    return {has_value ? leaf : nullptr, leaf == nullptr};
}

const char *behind(const char *text) {
    return text + std::strlen(text) + 1;
}

}  // namespace

bool EntryTable::set_up(const char *tag, std::span<const KeyText> keys) {
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

bool EntryTable::is_for(const char *tag, std::span<const KeyText> keys) const {
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

void EntryTable::take_in(std::span<const Node> children) {
    if (!read_forgotten(children)) {
        clear();
    }
    while (frontier_ < children.size() && take_in(children[frontier_])) {
        ++frontier_;
    }
}

bool EntryTable::take_in(const Node &child) {
    std::uint32_t hash = 0;
    const Keys keys = read(child, hash);
    if (keys == Keys::kUntold || !links_.append({0, kGone, 0})) {
        return false;
    }
    if (keys == Keys::kTold && !put_in(static_cast<std::int32_t>(links_.size()), hash)) {
        links_.drop_last();
        return false;
    }
    return true;
}

EntryTable::Keys EntryTable::read(const Node &child, std::uint32_t &hash) {
    // A child without a tag ends some searches, so the table ends before it.
    if (child.tag == nullptr) {
        return Keys::kUntold;
    }
    if (!any_tag_ && std::strcmp(child.tag, names_.get()) != 0) {
        return Keys::kNone;
    }
    all_numbered_ = all_numbered_ && child.subtree_index != 0;
    Keys keys = Keys::kTold;
    const char *name = names_.get();
    for (std::size_t i = 0; i < key_count_; ++i) {
        name = behind(name);
        const KeyLeaf key = find_key_leaf(child, name);
        if (key.leaf != nullptr) {
            hash = hash_text(key.leaf->data, hash);
        } else if (key.is_missing) {
            keys = Keys::kNone;
        } else {
            return Keys::kUntold;
        }
    }
    return keys;
}

bool EntryTable::read_forgotten(std::span<const Node> children) {
    for (const std::int32_t place : forgotten_.all()) {
        const auto position = static_cast<std::size_t>(place) - 1;
        if (position < frontier_ && !read_again(children[position], place)) {
            return false;
        }
    }
    forgotten_.clear();
    return true;
}

bool EntryTable::read_again(const Node &child, std::int32_t place) {
    std::uint32_t hash = 0;
    const Keys keys = read(child, hash);
    if (keys == Keys::kUntold) {
        return false;
    }
    if (keys == Keys::kTold && link(place).previous != kGone && link(place).hash == hash) {
        return true;
    }
    take_out(place);
    return keys != Keys::kTold || put_in(place, hash);
}

// Links a place into the chain of its hash. The search for its neighbour begins at the end, where a place belongs most
// often. Returns false when there is no memory.
bool EntryTable::put_in(std::int32_t place, std::uint32_t hash) {
    Chain *chain = chains_.first(hash);
    if (chain == nullptr || chain->first == kGone) {
        if (chain == nullptr && !chains_.insert({hash, place, place})) {
            return false;
        }
        if (chain != nullptr) {
            chain->first = chain->last = place;
        }
        link(place) = {hash, 0, 0};
        return true;
    }
    std::int32_t before = chain->last;
    while (before > place) {
        before = link(before).previous;
    }
    const std::int32_t after = before != 0 ? link(before).next : chain->first;
    link(place) = {hash, before, after};
    (before != 0 ? link(before).next : chain->first) = place;
    (after != 0 ? link(after).previous : chain->last) = place;
    return true;
}

void EntryTable::take_out(std::int32_t place) {
    const Link taken = link(place);
    if (taken.previous == kGone) {
        return;
    }
    link(place).previous = kGone;
    Chain &chain = *chains_.first(taken.hash);
    if (taken.previous == 0 && taken.next == 0) {
        chain.first = kGone;
        return;
    }
    (taken.previous != 0 ? link(taken.previous).next : chain.first) = taken.next;
    (taken.next != 0 ? link(taken.next).previous : chain.last) = taken.previous;
}

std::int32_t EntryTable::first(std::span<const KeyText> keys) const {
    std::uint32_t hash = 0;
    for (const KeyText &key : keys) {
        hash = hash_text(key.value, hash);
    }
    const Chain *chain = chains_.first(hash);
    return chain != nullptr && chain->first != kGone ? chain->first : 0;
}

bool EntryTable::reads(const char *tag) const {
    const char *name = names_.get();
    for (std::size_t i = 0; i < key_count_; ++i) {
        name = behind(name);
        if (std::strcmp(name, tag) == 0) {
            return true;
        }
    }
    return false;
}

// Beyond half of the entries the table is cleared: reading that many one by one is no better than starting anew.
void EntryTable::forget(std::size_t position) {
    if (position >= frontier_) {
        return;
    }
    const auto place = static_cast<std::int32_t>(position) + 1;
    const auto forgotten = forgotten_.all();
    if (!forgotten.empty() && forgotten.back() == place) {
        return;
    }
    if (forgotten.size() > frontier_ / 2 || !forgotten_.append(place)) {
        clear();
    }
}

void EntryTable::drop_last() {
    take_out(static_cast<std::int32_t>(frontier_));
    links_.drop_last();
    --frontier_;
}

void EntryTable::clear() {
    chains_.clear();
    links_.clear();
    forgotten_.clear();
    frontier_ = 0;
    all_numbered_ = true;
}

}  // namespace tvk
