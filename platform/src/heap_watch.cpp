// The record of live blocks, and the switches that make allocations fail.
#include "heap_watch.h"

#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tvk_platform_control.h"

namespace {

using tvk::BlockNote;

struct Ledger {
    std::mutex mutex;
    bool accounting = false;
    std::unordered_map<const void *, BlockNote> blocks;
    std::uint64_t allocations = 0;
    std::uint64_t failing_from = 0;  // 0: none
    bool from_there_on = false;
    std::optional<std::string> failing_tag;
};

// Never destroyed: blocks may still be released while the process ends.
Ledger &ledger() {
    static Ledger *const the_ledger = new Ledger;
    return *the_ledger;
}

template <class Action>
auto with_ledger(Action action) {
    Ledger &held = ledger();
    const std::lock_guard lock(held.mutex);
    return action(held);
}

template <class Change>
void change_switches(Change change) {
    with_ledger([&](Ledger &held) {
        change(held);
        tvk::heap_watched = held.accounting || held.failing_from != 0 || held.failing_tag.has_value();
    });
}

bool is_of(const BlockNote &note, const char *tag) {
    return tag == nullptr || (note.tag != nullptr && std::strcmp(note.tag, tag) == 0);
}

}  // namespace

namespace tvk {

bool allocation_must_fail(const char *tag) noexcept {
    return with_ledger([tag](Ledger &held) {
        const bool counted = held.failing_from != 0 || held.accounting;
        held.allocations += counted ? 1 : 0;
        const bool by_number = held.failing_from != 0 && (held.from_there_on ? held.allocations >= held.failing_from
                                                                             : held.allocations == held.failing_from);
        return by_number || (tag != nullptr && held.failing_tag == tag);
    });
}

void note_block(const void *block, std::size_t size, const char *tag) noexcept {
    with_ledger([&](Ledger &held) {
        if (!held.accounting) {
            return;
        }
        try {
            held.blocks.insert_or_assign(block, BlockNote{size, tag, true});
        } catch (const std::bad_alloc &) {
        }
    });
}

void forget_block(const void *block) noexcept {
    with_ledger([block](Ledger &held) { held.blocks.erase(block); });
}

BlockNote find_block(const void *block) noexcept {
    return with_ledger([block](Ledger &held) {
        const auto found = held.blocks.find(block);
        return found != held.blocks.end() ? found->second : BlockNote{};
    });
}

}  // namespace tvk

void tvk_platform_set_accounting(int enabled) {
    change_switches([enabled](Ledger &held) {
        held.accounting = enabled != 0;
        held.blocks.clear();
    });
}

size_t tvk_platform_live_blocks(const char *tag) {
    return with_ledger([tag](const Ledger &held) {
        std::size_t count = 0;
        for (const auto &entry : held.blocks) {
            count += is_of(entry.second, tag) ? 1 : 0;
        }
        return count;
    });
}

size_t tvk_platform_live_bytes(const char *tag) {
    return with_ledger([tag](const Ledger &held) {
        std::size_t bytes = 0;
        for (const auto &entry : held.blocks) {
            bytes += is_of(entry.second, tag) ? entry.second.size : 0;
        }
        return bytes;
    });
}

void tvk_platform_visit_live_blocks(void (*visit)(void *user, const void *block, size_t size, const char *tag),
                                    void *user) {
    // The visitor may use the heap, so it gets a copy of the record.
    std::vector<std::pair<const void *, BlockNote>> blocks;
    try {
        with_ledger([&blocks](const Ledger &held) { blocks.assign(held.blocks.begin(), held.blocks.end()); });
    } catch (const std::bad_alloc &) {
        return;
    }
    for (const auto &[block, note] : blocks) {
        visit(user, block, note.size, note.tag);
    }
}

void tvk_platform_fail_allocation(uint64_t nth, int from_there_on) {
    change_switches([=](Ledger &held) {
        held.allocations = 0;
        held.failing_from = nth;
        held.from_there_on = from_there_on != 0;
    });
}

void tvk_platform_fail_tag(const char *tag) {
    change_switches([tag](Ledger &held) {
        held.failing_tag.reset();
        try {
            if (tag != nullptr) {
                held.failing_tag.emplace(tag);
            }
        } catch (const std::bad_alloc &) {
        }
    });
}

uint64_t tvk_platform_allocation_count(void) {
    return with_ledger([](const Ledger &held) { return held.allocations; });
}
