// The deep copy of a tree, in one pass, without recursion and without memory of its own.
//
// A record whose children are still to be copied waits in a list that is linked through the framework words of the
// copy; they get their value when it is taken out. At every moment the copy is a tree that can be released.
#include <bit>
#include <cstdint>
#include <cstring>

#include "qidl_tvk_datatree.h"

namespace {

using Record = qidl_tvk_datatree;

struct Allocator {
    tvk_gpb_alloc_fp allocate;
    void *arg;

    template <class Item>
    Item *array(std::int32_t count) const {
        return static_cast<Item *>(allocate(static_cast<std::size_t>(count) * sizeof(Item), arg));
    }
};

class PendingList {
public:
    void push(Record &copy, const Record &source) {
        copy.framework_words[0] = std::bit_cast<std::uint64_t>(&source);
        copy.framework_words[1] = std::bit_cast<std::uint64_t>(first_);
        first_ = &copy;
    }

    const Record *pop(Record **copy) {
        if (first_ == nullptr) {
            return nullptr;
        }
        *copy = first_;
        const auto *source = std::bit_cast<const Record *>(first_->framework_words[0]);
        first_ = std::bit_cast<Record *>(first_->framework_words[1]);
        std::memcpy((*copy)->framework_words, source->framework_words, sizeof source->framework_words);
        return source;
    }

private:
    Record *first_ = nullptr;
};

bool copy_text(char *&copy, const char *source, const Allocator &allocator) {
    if (source == nullptr) {
        return true;
    }
    const std::size_t size = std::strlen(source) + 1;
    copy = static_cast<char *>(allocator.allocate(size, allocator.arg));
    if (copy == nullptr) {
        return false;
    }
    std::memcpy(copy, source, size);
    return true;
}

// The count follows the entries that are there, so that a part of the copy can be released.
bool copy_pairs(qidl_tvk_name_value *&copy, std::int32_t &copy_count, const qidl_tvk_name_value *source,
                std::int32_t count, const Allocator &allocator) {
    if (source == nullptr || count <= 0) {
        return true;
    }
    copy_count = 0;
    copy = allocator.array<qidl_tvk_name_value>(count);
    if (copy == nullptr) {
        return false;
    }
    while (copy_count < count) {
        qidl_tvk_name_value &pair = copy[copy_count];
        const qidl_tvk_name_value &from = source[copy_count];
        pair = {nullptr, nullptr, from.framework};
        ++copy_count;
        if (!copy_text(pair.name, from.name, allocator) || !copy_text(pair.value, from.value, allocator)) {
            return false;
        }
    }
    return true;
}

bool copy_insert(qidl_tvk_edit_insert &copy, const qidl_tvk_edit_insert &source, const Allocator &allocator) {
    copy = source;
    copy.keys = nullptr;
    copy.keys_str = nullptr;
    copy.value = nullptr;
    return copy_pairs(copy.keys, copy.key_count, source.keys, source.key_count, allocator) &&
           copy_text(copy.keys_str, source.keys_str, allocator) && copy_text(copy.value, source.value, allocator);
}

// Everything but the children. Attributes without a count are a link to another record: the link is copied. The insert
// record comes first, as its strings stand in the copy until then.
bool copy_record(Record &copy, const Record &source, const Allocator &allocator) {
    copy = source;
    copy.tag = nullptr;
    copy.data = nullptr;
    copy.ns = nullptr;
    copy.data_ns = nullptr;
    copy.subtrees = nullptr;
    if (source.attribute_count > 0) {
        copy.attributes = nullptr;
    }
    return copy_insert(copy.edit_insert, source.edit_insert, allocator) && copy_text(copy.tag, source.tag, allocator) &&
           copy_text(copy.data, source.data, allocator) && copy_text(copy.ns, source.ns, allocator) &&
           copy_text(copy.data_ns, source.data_ns, allocator) &&
           copy_pairs(copy.attributes, copy.attribute_count, source.attributes, source.attribute_count, allocator);
}

bool copy_children(Record &copy, const Record &source, const Allocator &allocator, PendingList &pending) {
    copy.subtree_count = 0;
    copy.subtrees = allocator.array<Record>(source.subtree_count);
    if (copy.subtrees == nullptr) {
        return false;
    }
    while (copy.subtree_count < source.subtree_count) {
        Record &child = copy.subtrees[copy.subtree_count];
        const Record &from = source.subtrees[copy.subtree_count];
        ++copy.subtree_count;
        if (!copy_record(child, from, allocator)) {
            return false;
        }
        if (from.subtrees != nullptr && from.subtree_count > 0) {
            pending.push(child, from);
        }
    }
    return true;
}

bool copy_tree(Record &copy, const Record &source, const Allocator &allocator) {
    if (!copy_record(copy, source, allocator)) {
        return false;
    }
    PendingList pending;
    if (source.subtrees != nullptr && source.subtree_count > 0) {
        pending.push(copy, source);
    }
    Record *parent = nullptr;
    bool complete = true;
    while (const Record *from = pending.pop(&parent)) {  // also after a failure, for the framework words
        complete = complete && copy_children(*parent, *from, allocator, pending);
    }
    return complete;
}

}  // namespace

qerrno qidl_tvk_datatree_duplicate(struct qidl_tvk_datatree *destination, const struct qidl_tvk_datatree *source,
                                   tvk_gpb_alloc_fp allocate, void *arg) {
    if (destination == nullptr || source == nullptr || allocate == nullptr) {
        return TVK_ERR_INVALID;
    }
    return copy_tree(*destination, *source, {allocate, arg}) ? TVK_OK : TVK_ERR_NO_MEMORY;
}

qerrno qidl_tvk_edit_ins_duplicate(struct qidl_tvk_edit_insert *destination, const struct qidl_tvk_edit_insert *source,
                                   tvk_gpb_alloc_fp allocate, void *arg) {
    if (destination == nullptr || source == nullptr || allocate == nullptr) {
        return TVK_ERR_INVALID;
    }
    return copy_insert(*destination, *source, {allocate, arg}) ? TVK_OK : TVK_ERR_NO_MEMORY;
}
