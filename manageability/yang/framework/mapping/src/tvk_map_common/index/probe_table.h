// An open-addressing table of small slots that carry their hash. No slot is ever removed. Slots of equal hash are met
// in the order of their insertion, which growing keeps.
#ifndef TVK_MAP_INDEX_PROBE_TABLE_H
#define TVK_MAP_INDEX_PROBE_TABLE_H

#include <cstddef>
#include <cstdint>

#include "tvk_map_common/internal/owned.h"

namespace tvk {

// Slot is a plain record, empty when zeroed, with the members hash and is_empty().
template <typename Slot>
class ProbeTable {
public:
    std::size_t size() const { return size_; }

    // first returns the first slot of a hash, next the one behind a slot. Both return null at the end.
    Slot *first(std::uint32_t hash) const { return capacity_ == 0 ? nullptr : from(hash & mask(), hash); }
    Slot *next(const Slot &slot) const { return from(behind(slot), slot.hash); }

    // Returns false when there is no memory; the table then stays as it was.
    bool insert(const Slot &slot) {
        if (size_ >= capacity_ / 2 && !grow()) {
            return false;
        }
        place(slot);
        ++size_;
        return true;
    }

    void clear() {
        slots_.reset();
        capacity_ = 0;
        size_ = 0;
    }

private:
    static constexpr std::size_t kFirstCapacity = 32;

    std::size_t mask() const { return capacity_ - 1; }
    std::size_t behind(const Slot &slot) const { return (static_cast<std::size_t>(&slot - slots_.get()) + 1) & mask(); }

    Slot *from(std::size_t at, std::uint32_t hash) const {
        for (; !slots_.get()[at].is_empty(); at = (at + 1) & mask()) {
            if (slots_.get()[at].hash == hash) {
                return slots_.get() + at;
            }
        }
        return nullptr;
    }

    void place(const Slot &slot) {
        std::size_t at = slot.hash & mask();
        while (!slots_.get()[at].is_empty()) {
            at = (at + 1) & mask();
        }
        slots_.get()[at] = slot;
    }

    bool grow() {
        const std::size_t old_capacity = capacity_;
        const std::size_t capacity = old_capacity == 0 ? kFirstCapacity : old_capacity * 2;
        NamedBlock<Slot> old{static_cast<Slot *>(kel_named_calloc_(capacity, sizeof(Slot), "TVK MAP index", 0))};
        if (old == nullptr) {
            return false;
        }
        old.swap(slots_);
        capacity_ = capacity;
        // A run of slots may wrap around the end. It keeps its order when the walk begins at an empty slot.
        std::size_t start = 0;
        while (start < old_capacity && !old.get()[start].is_empty()) {
            ++start;
        }
        for (std::size_t i = 0; i < old_capacity; ++i) {
            if (const Slot &slot = old.get()[(start + i) & (old_capacity - 1)]; !slot.is_empty()) {
                place(slot);
            }
        }
        return true;
    }

    NamedBlock<Slot> slots_;
    std::size_t capacity_ = 0;  // a power of two, or 0
    std::size_t size_ = 0;
};

}  // namespace tvk

#endif
