// What a mapping remembers during a request, behind ctx->mapping_data: what a read is answering, and where the entries
// of long native lists are.
#ifndef EXAMPLES_COMMON_MEMORY_H
#define EXAMPLES_COMMON_MEMORY_H

#include <cstddef>

#include "tree.h"

namespace mapping {

// A part of a text of a node; none when begin is null.
struct Text {
    const char *begin;
    std::size_t length;
};
Text all_of(const char *text);
bool same(Text a, Text b);

// What the entries of a list are grouped by. It reads nothing of an entry that changes while the list stands.
using TextOf = Text (*)(const Node &entry);

// Some entries of a list, in its order: all of them, or those that have a text.
class Entries {
public:
    Entries() = default;
    explicit Entries(Nodes list) : list_(list) {}

    // The entries of list whose text_of is wanted. Those of a long list are grouped when they are first looked for, and
    // entries that the list has got since then are added to their groups. wanted must outlive found. list_id tells the
    // list from others; in an edit, where arrays move, it is no address of its nodes. Returns TVK_ERR_NO_MEMORY, or 0.
    static qerrno find(tvk_map_ctx ctx, const void *list_id, Nodes list, TextOf text_of, Text wanted, Entries &found);

    const Node *next();  // null at the end

private:
    Nodes list_;
    const struct Groups *groups_ = nullptr;
    TextOf text_of_ = nullptr;
    Text wanted_{nullptr, 0};
    uint32_t at_ = 0;
};

// The entries of the list are no longer what they were.
void forget_entries(tvk_map_ctx ctx, const void *list_id);

// One level of what is being answered: an entry's native node and key, and all entries that its list is answered with.
struct AnsweredLevel {
    const Node *native;
    const char *key;
    const struct Instances *instances;
};

struct Memory {
    static constexpr int kLevels = 4;
    static constexpr std::size_t kChains = 256;

    AnsweredLevel levels[kLevels];
    // The first failure of an answer. A propagation ignores what handlers return, and the response would be sent with
    // half of an entry, or an identity of no module.
    qerrno failure;
    bool entry_is_new;              // the last entry that was entered was not there before
    struct Groups *chains[kChains]; /* of grouped lists, by their ids */
};

inline Memory &memory_of(tvk_map_ctx ctx) {
    return *static_cast<Memory *>(ctx->mapping_data);
}

// Makes the memory, unless it is there, and clears what belongs to one walk. Where lists are stays.
qerrno open_memory(tvk_map_ctx ctx);

// Records the first failure of an answer, which fails the read, and returns status.
qerrno note_failure(tvk_map_ctx ctx, qerrno status);

// tvk_map_module::release_data
void release_memory(void *memory);

}  // namespace mapping

#endif
