// The release of a tree, without recursion and without memory of its own: the records to be released carry the list of
// the child arrays that are still to come.
#include <bit>
#include <cstdint>

#include "qidl_tvk_datatree.h"

namespace {

using Record = qidl_tvk_datatree;

// Child arrays still to be released, linked through the framework words of each array's first record.
class PendingArrays {
public:
    void push(Record *records, std::int32_t count) {
        records->framework_words[0] = std::bit_cast<std::uint64_t>(first_);
        records->framework_words[1] = static_cast<std::uint64_t>(count);
        first_ = records;
    }

    Record *pop(std::int32_t *count) {
        Record *records = first_;
        if (records != nullptr) {
            first_ = std::bit_cast<Record *>(records->framework_words[0]);
            *count = static_cast<std::int32_t>(records->framework_words[1]);
        }
        return records;
    }

private:
    Record *first_ = nullptr;
};

class Releaser {
public:
    Releaser(tvk_gpb_free_fp release, void *arg) : release_(release), arg_(arg) {}

    void release_tree(Record &root) {
        release_contents(root);
        std::int32_t count = 0;
        while (Record *records = pending_.pop(&count)) {
            for (std::int32_t i = 0; i < count; ++i) {
                release_contents(records[i]);
            }
            release_(records, arg_);
        }
    }

private:
    void release_contents(Record &record) {
        release_block(record.tag);
        release_block(record.data);
        release_block(record.ns);
        release_block(record.data_ns);
        if (record.attribute_count > 0) {  // without a count the pointer is a link to another record
            release_pairs(record.attributes, record.attribute_count);
        }
        release_pairs(record.edit_insert.keys, record.edit_insert.key_count);
        release_block(record.edit_insert.keys_str);
        release_block(record.edit_insert.value);
        release_children(record);
    }

    template <class Item>
    void release_block(Item *&block) {
        if (block != nullptr) {
            release_(block, arg_);
            block = nullptr;
        }
    }

    void release_pairs(qidl_tvk_name_value *&pairs, std::int32_t &count) {
        if (pairs != nullptr) {
            for (std::int32_t i = 0; i < count; ++i) {
                release_block(pairs[i].name);
                release_block(pairs[i].value);
            }
            release_block(pairs);
        }
        count = 0;
    }

    void release_children(Record &record) {
        if (record.subtrees != nullptr && record.subtree_count > 0) {
            pending_.push(record.subtrees, record.subtree_count);
            record.subtrees = nullptr;
        }
        release_block(record.subtrees);
        record.subtree_count = 0;
    }

    tvk_gpb_free_fp release_;
    void *arg_;
    PendingArrays pending_;
};

}  // namespace

void qidl_tvk_datatree_free_ext(struct qidl_tvk_datatree *record, tvk_gpb_free_fp release, void *arg, uint32_t) {
    if (record != nullptr && release != nullptr) {
        Releaser(release, arg).release_tree(*record);
    }
}
