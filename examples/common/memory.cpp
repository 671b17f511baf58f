// Groups the entries of long lists by their texts.
#include "memory.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "kel_memory.h"

namespace mapping {

namespace {

constexpr char kTag[] = "example mapping";

// Lists up to this length are searched from end to end.
constexpr std::size_t kLongList = 16;

uint32_t hash_of(Text text) {
    uint32_t hash = 2166136261U;
    for (std::size_t i = 0; i < text.length; ++i) {
        hash = (hash ^ static_cast<unsigned char>(text.begin[i])) * 16777619U;
    }
    return hash ^ hash >> 15;
}

}  // namespace

// The entries of one list, in chains by the hashes of their texts. Entries are numbered from 1, so that 0 ends a chain.
struct Groups {
    struct Entry {
        uint32_t hash;
        uint32_t next;
        bool has_text;
    };
    struct Chain {
        uint32_t first;
        uint32_t last;
    };

    const void *list_id;
    TextOf text_of;
    Groups *next;
    Entry *entries;
    uint32_t known;
    uint32_t room;
    Chain *chains;
    uint32_t chain_count;  // a power of two

    void release() {
        kel_named_free(entries);
        kel_named_free(chains);
    }

    void forget() {
        known = 0;
        std::fill_n(chains, chain_count, Chain{});
    }

    uint32_t first(uint32_t hash) const { return chains[hash & (chain_count - 1)].first; }

    void append(uint32_t number) {
        Entry &entry = entries[number - 1];
        entry.next = 0;
        if (!entry.has_text) {
            return;
        }
        Chain &chain = chains[entry.hash & (chain_count - 1)];
        (chain.first == 0 ? chain.first : entries[chain.last - 1].next) = number;
        chain.last = number;
    }

    bool make_room(uint32_t count) {
        if (count <= room) {
            return true;
        }
        const uint32_t wanted = std::max(count, 2 * room);
        auto *grown = static_cast<Entry *>(kel_named_realloc(entries, wanted * sizeof(Entry)));
        if (grown == nullptr) {
            return false;
        }
        entries = grown;
        uint32_t chains_wanted = 1;
        while (chains_wanted < wanted) {
            chains_wanted *= 2;
        }
        auto *fresh = static_cast<Chain *>(kel_named_calloc_(chains_wanted, sizeof(Chain), kTag, 0));
        if (fresh == nullptr) {
            return false;
        }
        kel_named_free(std::exchange(chains, fresh));
        chain_count = chains_wanted;
        room = wanted;
        for (uint32_t number = 1; number <= known; ++number) {
            append(number);
        }
        return true;
    }

    bool take_in(Nodes list) {
        const auto count = static_cast<uint32_t>(list.size());
        if (known > count) {
            forget();  // a list that has shrunk has other entries, though nobody has said so
        }
        if (!make_room(count)) {
            return false;
        }
        while (known < count) {
            const Text text = text_of(list[known]);
            entries[known] = {hash_of(text), 0, text.begin != nullptr};
            append(++known);
        }
        return true;
    }
};

namespace {

Groups *&chain_of(Memory &memory, const void *list_id) {
    return memory.chains[reinterpret_cast<uintptr_t>(list_id) / alignof(std::max_align_t) % Memory::kChains];
}

// Returns the groups of a list, new ones when there are none, or null without memory.
Groups *groups_for(tvk_map_ctx ctx, const void *list_id, TextOf text_of) {
    Groups *&chain = chain_of(memory_of(ctx), list_id);
    for (Groups *groups = chain; groups != nullptr; groups = groups->next) {
        if (groups->list_id == list_id && groups->text_of == text_of) {
            return groups;
        }
    }
    auto *groups = static_cast<Groups *>(kel_named_calloc_(1, sizeof(Groups), kTag, 0));
    if (groups != nullptr) {
        groups->list_id = list_id;
        groups->text_of = text_of;
        groups->next = std::exchange(chain, groups);
    }
    return groups;
}

}  // namespace

Text all_of(const char *text) {
    return {text, text != nullptr ? std::strlen(text) : 0};
}

bool same(Text a, Text b) {
    return a.begin != nullptr && b.begin != nullptr && a.length == b.length &&
           std::memcmp(a.begin, b.begin, a.length) == 0;
}

qerrno Entries::find(tvk_map_ctx ctx, const void *list_id, Nodes list, TextOf text_of, Text wanted, Entries &found) {
    found = Entries(list);
    found.text_of_ = text_of;
    found.wanted_ = wanted;
    if (list.size() <= kLongList) {
        return TVK_OK;
    }
    Groups *groups = groups_for(ctx, list_id, text_of);
    if (groups == nullptr || !groups->take_in(list)) {
        return TVK_ERR_NO_MEMORY;
    }
    found.groups_ = groups;
    found.at_ = groups->first(hash_of(wanted));
    return TVK_OK;
}

const Node *Entries::next() {
    if (groups_ == nullptr) {
        while (at_ < list_.size()) {
            const Node *entry = &list_[at_++];
            if (text_of_ == nullptr || same(text_of_(*entry), wanted_)) {
                return entry;
            }
        }
        return nullptr;
    }
    while (at_ != 0) {
        const Node *entry = &list_[at_ - 1];
        at_ = groups_->entries[at_ - 1].next;
        if (same(text_of_(*entry), wanted_)) {
            return entry;
        }
    }
    return nullptr;
}

void forget_entries(tvk_map_ctx ctx, const void *list_id) {
    for (Groups *groups = chain_of(memory_of(ctx), list_id); groups != nullptr; groups = groups->next) {
        if (groups->list_id == list_id) {
            groups->forget();
        }
    }
}

qerrno open_memory(tvk_map_ctx ctx) {
    if (ctx->mapping_data == nullptr) {
        ctx->mapping_data = kel_named_calloc_(1, sizeof(Memory), kTag, 0);
        if (ctx->mapping_data == nullptr) {
            return TVK_ERR_NO_MEMORY;
        }
    }
    Memory &memory = memory_of(ctx);
    std::fill(std::begin(memory.levels), std::end(memory.levels), AnsweredLevel{});
    memory.failure = TVK_OK;
    memory.entry_is_new = false;
    return TVK_OK;
}

qerrno note_failure(tvk_map_ctx ctx, qerrno status) {
    qerrno &failure = memory_of(ctx).failure;
    if (failure == TVK_OK) {
        failure = status;
    }
    return status;
}

void release_memory(void *memory) {
    for (Groups *groups : static_cast<Memory *>(memory)->chains) {
        while (groups != nullptr) {
            Groups *next = groups->next;
            groups->release();
            kel_named_free(std::exchange(groups, next));
        }
    }
    kel_named_free(memory);
}

}  // namespace mapping
