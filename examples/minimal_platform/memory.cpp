// The named allocator, the codec's two functions and the copy of a string, all on one heap. Tags are dropped.
#include <cstring>

#include "arena.h"
#include "kel_memory.h"
#include "qidl_tvk_datatree.h"
#include "tvk_string.h"

void *kel_named_calloc_(size_t count, size_t size, const char *, uint32_t) {
    size_t total = 0;
    if (__builtin_mul_overflow(count, size, &total)) {
        return nullptr;
    }
    void *block = minimal_platform::allocate(total);
    return block != nullptr ? std::memset(block, 0, total) : nullptr;
}

void *kel_named_realloc(void *block, size_t size) {
    return block != nullptr ? minimal_platform::resize(block, size) : minimal_platform::allocate(size);
}

void kel_named_free(void *block) {
    if (block != nullptr) {
        minimal_platform::release(block);
    }
}

void *tvk_gpb_alloc(size_t size, void *) {
    return minimal_platform::allocate(size);
}

void tvk_gpb_free(void *block, void *) {
    if (block != nullptr) {
        minimal_platform::release(block);
    }
}

char *tvk_strdup(const char *text, const char *) {
    if (text == nullptr) {
        return nullptr;
    }
    const size_t size = std::strlen(text) + 1;
    void *copy = minimal_platform::allocate(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}
