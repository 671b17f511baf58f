// Allocates blocks of the named heap for trees that the framework builds.
#pragma once

#include <cstddef>
#include <new>

#include "kel_memory.h"
#include "tvk_string.h"

namespace tvk::framework {

inline constexpr char kHeapTag[] = "tvk-map tool";

// Returns a copy of text, which is not null. The caller frees it with kel_named_free. Throws std::bad_alloc.
inline char *copy_text(const char *text) {
    char *copy = tvk_strdup(text, kHeapTag);
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    return copy;
}

// Returns count records of zeros. The caller frees them with kel_named_free. Throws std::bad_alloc.
template <typename T>
T *zeroed_array(std::size_t count) {
    void *block = kel_named_calloc_(count, sizeof(T), kHeapTag, 0);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return static_cast<T *>(block);
}

}  // namespace tvk::framework
