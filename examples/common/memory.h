// The memory of a mapping, behind ctx->mapping_data. It holds the entries that a read is answering, and the places of
// entries in long native lists.
#ifndef EXAMPLES_COMMON_MEMORY_H
#define EXAMPLES_COMMON_MEMORY_H

#include <cstddef>

#include "tree.h"

namespace mapping {

// A part of a text of a node. There is none when begin is null.
struct Text {
    const char *begin;
    std::size_t length;
};
// Returns the whole of text, which may be null.
Text all_of(const char *text);
// Tells whether two texts are there and equal.
bool same(Text a, Text b);

// Returns the text that an entry is found by. It must not read anything that changes while the list stands.
using TextOf = Text (*)(const Node &entry);

// Iterates over entries of a list, in its order: over all of them, or those with a text.
class Entries {
public:
    Entries() = default;
    explicit Entries(Nodes list) : list_(list) {}

    // Sets found to the entries of list whose text_of is wanted, which must outlive found. The entries of a long list
    // are grouped when they are first looked for; entries that the list gets later join their groups. list_id tells the
    // list from others. In an edit, where arrays move, it is no address of a node. Returns TVK_OK or TVK_ERR_NO_MEMORY.
    static qerrno find(tvk_map_ctx ctx, const void *list_id, Nodes list, TextOf text_of, Text wanted, Entries &found);

    // Returns the next entry, or null at the end.
    const Node *next();

private:
    Nodes list_;
    const struct Groups *groups_ = nullptr;
    TextOf text_of_ = nullptr;
    Text wanted_{nullptr, 0};
    uint32_t at_ = 0;
};

// Forgets the groups of a list, whose entries are no longer what they were.
void forget_entries(tvk_map_ctx ctx, const void *list_id);

// The entry of one level of lists that is being answered: its native node and key, and all instances of its list.
struct AnsweredLevel {
    const Node *native;
    const char *key;
    const struct Instances *instances;
};

// The memory itself.
struct Memory {
    static constexpr int kLevels = 4;
    static constexpr std::size_t kChains = 256;

    AnsweredLevel levels[kLevels];
    // The first failure of an answer, which fails the read. A propagation ignores what handlers return, so the response
    // would be sent with half of an entry, or with an identity of no module.
    qerrno failure;
    bool entry_is_new;               // the entry that was entered last was not there before
    struct Groups *chains[kChains];  // the grouped lists, by their ids
};

// Returns the memory, which is open.
inline Memory &memory_of(tvk_map_ctx ctx) {
    return *static_cast<Memory *>(ctx->mapping_data);
}

// Makes the memory, unless it is there, and clears all that belongs to one walk. The grouped lists stay. Returns TVK_OK
// or TVK_ERR_NO_MEMORY.
qerrno open_memory(tvk_map_ctx ctx);

// Records the first failure of an answer, which fails the read, and returns status.
qerrno note_failure(tvk_map_ctx ctx, qerrno status);

// Releases the memory. It is the hook tvk_map_module::release_data.
void release_memory(void *memory);

}  // namespace mapping

#endif
