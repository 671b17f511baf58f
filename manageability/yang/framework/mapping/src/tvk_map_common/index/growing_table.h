// An array of plain records that grows at its end.
#ifndef TVK_MAP_INDEX_GROWING_TABLE_H
#define TVK_MAP_INDEX_GROWING_TABLE_H

#include <cstddef>
#include <span>

#include "tvk_map_common/internal/owned.h"

namespace tvk {

template <typename Record>
class GrowingTable {
public:
    Record *get() const { return records_.get(); }
    std::size_t size() const { return size_; }
    std::span<const Record> all() const { return {records_.get(), size_}; }

    // Returns false when there is no memory; the table then stays as it was.
    bool append(const Record &record) {
        if (size_ == capacity_ && !grow()) {
            return false;
        }
        records_.get()[size_++] = record;
        return true;
    }

    void drop_last() { --size_; }
    void clear() { size_ = 0; }

private:
    static constexpr std::size_t kFirstCapacity = 16;

    bool grow() {
        const std::size_t capacity = capacity_ == 0 ? kFirstCapacity : capacity_ * 2;
        void *block = capacity_ == 0 ? kel_named_calloc_(capacity, sizeof(Record), "TVK MAP index", 0)
                                     : kel_named_realloc(records_.get(), capacity * sizeof(Record));
        if (block == nullptr) {
            return false;
        }
        static_cast<void>(records_.release());
        records_.reset(static_cast<Record *>(block));
        capacity_ = capacity;
        return true;
    }

    NamedBlock<Record> records_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
};

}  // namespace tvk

#endif
