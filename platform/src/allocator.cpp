// The heap: plain malloc blocks without a header of our own, so that a string from malloc may stand in a tree too.
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "heap_watch.h"
#include "kel_memory.h"
#include "qidl_tvk_datatree.h"
#include "tvk_string.h"

using namespace tvk;

namespace {

#if defined(__has_feature)
#define TVK_HAS_FEATURE(feature) __has_feature(feature)
#else
#define TVK_HAS_FEATURE(feature) 0
#endif

// Blocks up to this size get no room to grow. Under AddressSanitizer that holds for all but very large ones, so that it
// sees accesses behind the end, and pointers into an array that has since grown.
#if defined(__SANITIZE_ADDRESS__) || TVK_HAS_FEATURE(address_sanitizer)
constexpr std::size_t kExactSize = 64 * 1024;
#else
constexpr std::size_t kExactSize = 1024;
#endif

bool is_watched() {
    return heap_watched.load(std::memory_order_relaxed);
}

// A block of no bytes is an address of its own, so that null always means failure.
std::size_t at_least_one(std::size_t size) {
    return std::max<std::size_t>(size, 1);
}

// Not inlined, so that an allocation that nobody watches stays short.
template <class Obtain>
[[gnu::noinline]] void *obtain_noted(std::size_t size, const char *tag, Obtain obtain) {
    if (allocation_must_fail(tag)) {
        return nullptr;
    }
    void *block = obtain();
    if (block != nullptr) {
        note_block(block, size, tag);
    }
    return block;
}

inline void *allocate(std::size_t size, const char *tag) {
    const auto obtain = [size] { return std::malloc(at_least_one(size)); };
    return is_watched() ? obtain_noted(size, tag, obtain) : obtain();
}

// A small block is cleared here: malloc takes it from the blocks that were freed last, calloc does not.
inline void *zeroed(std::size_t size) {
    if (size > kExactSize) {
        return std::calloc(size, 1);
    }
    void *block = std::malloc(at_least_one(size));
    return block != nullptr ? std::memset(block, 0, size) : nullptr;
}

inline void release(void *block) {
    if (is_watched() && block != nullptr) {
        forget_block(block);
    }
    std::free(block);
}

void *grow(void *block, std::size_t size) {
    if (size > kExactSize && size < PTRDIFF_MAX / 2) {
        void *grown = std::realloc(block, size + size / 2);
        if (grown != nullptr) {
            return grown;
        }
    }
    return std::realloc(block, size);
}

void *resize(void *block, std::size_t size) {
    const std::size_t room = malloc_usable_size(block);
    if (size > room) {
        return grow(block, size);
    }
    // Room for a few more records is worth keeping; most of a large block is not.
    if (room > kExactSize && size < room / 2) {
        void *shrunk = std::realloc(block, at_least_one(size));
        return shrunk != nullptr ? shrunk : block;
    }
    return block;
}

// The failure is decided before spare room is looked at. Accounting cannot tell the size in use of a block that it does
// not know, so every resizing of such a block counts as growth.
void *resize_watched(void *block, std::size_t size) {
    const BlockNote note = find_block(block);
    if ((!note.known || size > note.size) && allocation_must_fail(note.tag)) {
        return nullptr;
    }
    forget_block(block);  // before it moves: another thread may get its address as soon as it has
    void *resized = resize(block, size);
    if (note.known && resized != nullptr) {
        note_block(resized, size, note.tag);
    } else if (note.known) {
        note_block(block, note.size, note.tag);
    }
    return resized;
}

}  // namespace

void *kel_named_calloc_(size_t count, size_t size, const char *tag, uint32_t) {
    std::size_t total = 0;
    if (__builtin_mul_overflow(count, size, &total)) {
        return nullptr;
    }
    const auto obtain = [total] { return zeroed(total); };
    return is_watched() ? obtain_noted(total, tag, obtain) : obtain();
}

void *kel_named_realloc(void *block, size_t size) {
    if (block == nullptr) {
        return allocate(size, nullptr);
    }
    return is_watched() ? resize_watched(block, size) : resize(block, size);
}

void kel_named_free(void *block) {
    release(block);
}

void *tvk_gpb_alloc(size_t size, void *) {
    return allocate(size, nullptr);
}

void tvk_gpb_free(void *block, void *) {
    release(block);
}

char *tvk_strdup(const char *text, const char *tag) {
    if (text == nullptr) {
        return nullptr;
    }
    const std::size_t size = std::strlen(text) + 1;
    void *copy = allocate(size, tag);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}
