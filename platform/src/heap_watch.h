// The allocator reports here to accounting and injected failure. While both are off it tests heap_watched, and calls
// none of these.
#ifndef TVK_PLATFORM_HEAP_WATCH_H
#define TVK_PLATFORM_HEAP_WATCH_H

#include <atomic>
#include <cstddef>

#pragma GCC visibility push(hidden)
namespace tvk {

inline constinit std::atomic<bool> heap_watched{false};

struct BlockNote {
    std::size_t size = 0;
    const char *tag = nullptr;
    bool known = false;
};

// Counts an allocation under tag (null for none), and tells whether it is to fail.
bool allocation_must_fail(const char *tag) noexcept;

// A block that cannot be recorded for want of memory stays unknown.
void note_block(const void *block, std::size_t size, const char *tag) noexcept;
void forget_block(const void *block) noexcept;
BlockNote find_block(const void *block) noexcept;

}  // namespace tvk
#pragma GCC visibility pop

#endif
