// The deep copy of a tree, in one pass in document order, without recursion and without memory of its own.
//
// The records from the root down to the one whose children are being copied are linked through the framework words of
// the copy; they get their value when all children are there. At every moment the copy is a tree that can be released.
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

// The records whose children are being copied, innermost first. The child count of the copy tells how far it has come.
class Ancestors {
public:
    void push(Record &copy, const Record &source) {
        copy.framework_words[0] = std::bit_cast<std::uint64_t>(source_);
        copy.framework_words[1] = std::bit_cast<std::uint64_t>(copy_);
        copy_ = &copy;
        source_ = &source;
    }

    void pop() {
        Record &done = *copy_;
        const Record &from = *source_;
        source_ = std::bit_cast<const Record *>(done.framework_words[0]);
        copy_ = std::bit_cast<Record *>(done.framework_words[1]);
        std::memcpy(done.framework_words, from.framework_words, sizeof from.framework_words);
    }

    bool empty() const { return copy_ == nullptr; }
    Record &copy() const { return *copy_; }
    const Record &source() const { return *source_; }

private:
    Record *copy_ = nullptr;
    const Record *source_ = nullptr;
};

bool copy_some_text(char *&copy, const char *source, const Allocator &allocator) {
    const std::size_t size = std::strlen(source) + 1;
    copy = static_cast<char *>(allocator.allocate(size, allocator.arg));
    if (copy == nullptr) {
        return false;
    }
    std::memcpy(copy, source, size);
    return true;
}

// Half of the texts of a record are not set, and those cost no call.
inline bool copy_text(char *&copy, const char *source, const Allocator &allocator) {
    return source == nullptr || copy_some_text(copy, source, allocator);
}

// The count follows the entries that are there, so that a part of the copy can be released.
bool copy_some_pairs(qidl_tvk_name_value *&copy, std::int32_t &copy_count, const qidl_tvk_name_value *source,
                     std::int32_t count, const Allocator &allocator) {
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

// Hardly any record has pairs, so the test for none costs no call.
inline bool copy_pairs(qidl_tvk_name_value *&copy, std::int32_t &copy_count, const qidl_tvk_name_value *source,
                       std::int32_t count, const Allocator &allocator) {
    return source == nullptr || count <= 0 || copy_some_pairs(copy, copy_count, source, count, allocator);
}

// Gives the copy blocks of its own: its pointers are still those of the source.
bool own_insert(qidl_tvk_edit_insert &copy, const qidl_tvk_edit_insert &source, const Allocator &allocator) {
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
    return own_insert(copy.edit_insert, source.edit_insert, allocator) && copy_text(copy.tag, source.tag, allocator) &&
           copy_text(copy.data, source.data, allocator) && copy_text(copy.ns, source.ns, allocator) &&
           copy_text(copy.data_ns, source.data_ns, allocator) &&
           copy_pairs(copy.attributes, copy.attribute_count, source.attributes, source.attribute_count, allocator);
}

bool start_children(Record &copy, const Record &source, const Allocator &allocator, Ancestors &ancestors) {
    if (source.subtrees == nullptr || source.subtree_count <= 0) {
        return true;
    }
    copy.subtree_count = 0;
    copy.subtrees = allocator.array<Record>(source.subtree_count);
    if (copy.subtrees == nullptr) {
        return false;
    }
    ancestors.push(copy, source);
    return true;
}

bool copy_next_child(const Allocator &allocator, Ancestors &ancestors) {
    Record &parent = ancestors.copy();
    const Record &from = ancestors.source().subtrees[parent.subtree_count];
    Record &child = parent.subtrees[parent.subtree_count];
    ++parent.subtree_count;
    return copy_record(child, from, allocator) && start_children(child, from, allocator, ancestors);
}

bool copy_tree(Record &copy, const Record &source, const Allocator &allocator) {
    Ancestors ancestors;
    bool complete = copy_record(copy, source, allocator) && start_children(copy, source, allocator, ancestors);
    while (!ancestors.empty()) {  // after a failure the ancestors still get their framework words back
        if (complete && ancestors.copy().subtree_count < ancestors.source().subtree_count) {
            complete = copy_next_child(allocator, ancestors);
        } else {
            ancestors.pop();
        }
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
    *destination = *source;
    return own_insert(*destination, *source, {allocate, arg}) ? TVK_OK : TVK_ERR_NO_MEMORY;
}
