// The entries of one list by the values of their keys.
#ifndef TVK_MAP_INDEX_ENTRY_TABLE_H
#define TVK_MAP_INDEX_ENTRY_TABLE_H

#include <span>

#include "tvk_map_common/index/probe_table.h"
#include "tvk_map_common/internal/node.h"

namespace tvk {

struct KeyText {
    const char *name;
    const char *value;
};

struct EntrySlot {
    std::uint32_t hash;
    std::int32_t place;  // position + 1

    bool is_empty() const { return place == 0; }
    std::size_t position() const { return static_cast<std::size_t>(place) - 1; }
};

// Knows the children in front of a frontier. Behind it stands the first entry that cannot be told by its keys: one
// that has not got them yet, or has them more than once. What is not known is left to the scan.
class EntryTable {
public:
    // Entries of that tag, or of any when it is null. False when there is no memory.
    bool set_up(const char *tag, std::span<const KeyText> keys);
    bool is_for(const char *tag, std::span<const KeyText> keys) const;

    // Moves the frontier over what has come, or been given its keys, since the last time.
    void take_in(std::span<const Node> children);
    std::size_t frontier() const { return frontier_; }
    // False once an entry was seen that was not appended as an instance of its own.
    bool all_numbered() const { return all_numbered_; }

    // The entries whose keys have these values, in order, or others of equal hash.
    const EntrySlot *first(std::span<const KeyText> keys) const;
    const EntrySlot *next(const EntrySlot &slot) const { return slots_.next(slot); }

    // Whether a leaf of that tag is one of the keys.
    bool reads(const char *tag) const;
    // Starts anew.
    void clear();

private:
    bool take_in(const Node &child, std::size_t position);

    NamedString names_;  // the tag, empty for any, and the key names, each terminated
    std::size_t key_count_ = 0;
    bool any_tag_ = false;
    bool all_numbered_ = true;
    ProbeTable<EntrySlot> slots_;
    std::size_t frontier_ = 0;
};

}  // namespace tvk

#endif
