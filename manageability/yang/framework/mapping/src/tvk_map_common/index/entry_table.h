// The entries of one list by the values of their keys.
#ifndef TVK_MAP_INDEX_ENTRY_TABLE_H
#define TVK_MAP_INDEX_ENTRY_TABLE_H

#include <span>

#include "tvk_map_common/index/growing_table.h"
#include "tvk_map_common/index/probe_table.h"
#include "tvk_map_common/internal/node.h"

namespace tvk {

struct KeyText {
    const char *name;
    const char *value;
};

// Knows the children in front of a frontier. Behind it stands the first entry that cannot be told by its keys: one that
// has them more than once, say. What is not known is left to the scan. An entry that lacks a key is not found by it;
// when it is given one, that is said.
//
// Entries whose keys hash alike are linked in their order, so that many of the same key cost no more than others.
class EntryTable {
public:
    // Entries of that tag, or of any when it is null. False when there is no memory.
    bool set_up(const char *tag, std::span<const KeyText> keys);
    bool is_for(const char *tag, std::span<const KeyText> keys) const;

    // Moves the frontier over what has come since the last time, and looks again at what was forgotten.
    void take_in(std::span<const Node> children);
    std::size_t frontier() const { return frontier_; }
    // False once an entry was seen that was not appended as an instance of its own.
    bool all_numbered() const { return all_numbered_; }

    // The entries whose keys have these values, in order, or others of equal hash: their places, which are positions
    // counted from 1, and 0 at the end.
    std::int32_t first(std::span<const KeyText> keys) const;
    std::int32_t next(std::int32_t place) const { return link(place).next; }

    // Whether a leaf of that tag is one of the keys.
    bool reads(const char *tag) const;
    // The entry may have other keys by the next search, which reads them then.
    void forget(std::size_t position);
    // The child in front of the frontier goes.
    void drop_last();
    // Starts anew.
    void clear();

private:
    // The entries of one hash. Those that had it once may all be gone.
    struct Chain {
        std::uint32_t hash;
        std::int32_t first;  // kGone: none is left
        std::int32_t last;

        bool is_empty() const { return first == 0; }
    };
    // Where a child in front of the frontier stands in its chain.
    struct Link {
        std::uint32_t hash;
        std::int32_t previous;  // kGone: in none
        std::int32_t next;
    };
    enum class Keys { kTold, kNone, kUntold };

    static constexpr std::int32_t kGone = -1;

    Link &link(std::int32_t place) const { return links_.get()[place - 1]; }
    Keys read(const Node &child, std::uint32_t &hash);
    bool take_in(const Node &child);
    bool read_forgotten(std::span<const Node> children);
    bool read_again(const Node &child, std::int32_t place);
    bool put_in(std::int32_t place, std::uint32_t hash);
    void take_out(std::int32_t place);

    NamedString names_;  // the tag, empty for any, and the key names, each terminated
    std::size_t key_count_ = 0;
    bool any_tag_ = false;
    bool all_numbered_ = true;
    ProbeTable<Chain> chains_;
    GrowingTable<Link> links_;
    GrowingTable<std::int32_t> forgotten_;
    std::size_t frontier_ = 0;
};

}  // namespace tvk

#endif
