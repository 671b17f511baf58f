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

// The table knows the children in front of a frontier. The frontier stops at the first entry that its keys cannot tell,
// one that has a key twice for instance, and the caller scans from there. An entry that lacks a key is not in the
// table; forget tells the table when the entry gains one.
//
// Entries whose keys hash alike are linked in order, so that many entries of the same key cost no more than others.
class EntryTable {
public:
    // Prepares the table for entries of this tag, or of any tag when it is null. Returns false when there is no memory.
    bool set_up(const char *tag, std::span<const KeyText> keys);
    bool is_for(const char *tag, std::span<const KeyText> keys) const;

    // Reads the forgotten entries again and moves the frontier over the children that are new since the last time.
    void take_in(std::span<const Node> children);
    std::size_t frontier() const { return frontier_; }
    // Returns false once an entry was seen that was not appended as an instance of its own.
    bool all_numbered() const { return all_numbered_; }

    // These return, in order, the places of the entries whose keys have these values. Other entries of equal hash are
    // among them. A place is a position counted from 1, and 0 is the end.
    std::int32_t first(std::span<const KeyText> keys) const;
    std::int32_t next(std::int32_t place) const { return link(place).next; }

    // Returns whether a leaf of this tag is one of the keys.
    bool reads(const char *tag) const;
    // Makes the next search read the keys of this entry again.
    void forget(std::size_t position);
    // Removes the last child in front of the frontier.
    void drop_last();
    // Forgets all entries.
    void clear();

private:
    // The entries of one hash. A chain stays when all of them are gone.
    struct Chain {
        std::uint32_t hash;
        std::int32_t first;  // kGone when no entry is left
        std::int32_t last;

        bool is_empty() const { return first == 0; }
    };
    // The hash of a child in front of the frontier, and its neighbours in the chain of that hash.
    struct Link {
        std::uint32_t hash;
        std::int32_t previous;  // kGone when the child is in no chain
        std::int32_t next;
    };
    // kNone: the child is another node or lacks a key. kUntold: the table cannot tell the child and ends before it.
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
