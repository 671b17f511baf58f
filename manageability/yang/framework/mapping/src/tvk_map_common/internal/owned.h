// Guards for blocks of the named heap, and functions for the strings that records own.
#ifndef TVK_MAP_INTERNAL_OWNED_H
#define TVK_MAP_INTERNAL_OWNED_H

#include <memory>

#include "kel_memory.h"
#include "qidl_tvk_datatree.h"
#include "tvk_string.h"

namespace tvk {

struct NamedFree {
    void operator()(void *block) const { kel_named_free(block); }
};

template <typename T>
using NamedBlock = std::unique_ptr<T, NamedFree>;
using NamedString = NamedBlock<char>;

inline NamedString copy_text(const char *text, const char *tag) {
    return NamedString{tvk_strdup(text, tag)};
}

inline NamedString allocate_text(std::size_t size, const char *tag) {
    return NamedString{static_cast<char *>(kel_named_calloc_(1, size, tag, 0))};
}

inline void release(char *&text) {
    kel_named_free(text);
    text = nullptr;
}

// Puts text into an owned slot and releases the old text. The caller passes a copy, because its source may be part of
// the old text.
inline void replace(char *&slot, NamedString text) {
    kel_named_free(slot);
    slot = text.release();
}

// Releases what a record owns. The record itself stays.
inline void free_contents(struct qidl_tvk_datatree &node) {
    qidl_tvk_datatree_free_ext(&node, tvk_gpb_free, nullptr, 0);
}

}  // namespace tvk

#endif
