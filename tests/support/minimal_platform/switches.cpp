// The switches of the default platform layer in front of the minimal one, which has none: the heap's operations are
// found here first, as they stand in the program, and hand on to the layer. The ledger, the log and the trace are those
// of the default layer, compiled in beside this.
#include <dlfcn.h>

#include <cstdint>
#include <cstring>

#include "heap_watch.h"
#include "kel_memory.h"
#include "minimal_platform.h"
#include "qidl_tvk_datatree.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"

using namespace tvk;

namespace {

// The operation of the layer behind.
template <class Operation>
Operation *behind(Operation *, const char *name) {
    return reinterpret_cast<Operation *>(dlsym(RTLD_NEXT, name));
}
#define TVK_BEHIND(operation) behind(&operation, #operation)

template <class Obtain>
void *obtain_noted(std::size_t size, const char *tag, Obtain obtain) {
    void *block = allocation_must_fail(tag) ? nullptr : obtain();
    if (block != nullptr) {
        note_block(block, size, tag);
    }
    return block;
}

}  // namespace

void *kel_named_calloc_(size_t count, size_t size, const char *tag, uint32_t reserved) {
    static const auto calloc_behind = TVK_BEHIND(kel_named_calloc_);
    return obtain_noted(count * size, tag, [=] { return calloc_behind(count, size, tag, reserved); });
}

void *kel_named_realloc(void *block, size_t size) {
    static const auto realloc_behind = TVK_BEHIND(kel_named_realloc);
    if (block == nullptr) {
        return obtain_noted(size, nullptr, [=] { return realloc_behind(nullptr, size); });
    }
    const BlockNote note = find_block(block);
    if ((!note.known || size > note.size) && allocation_must_fail(note.tag)) {
        return nullptr;
    }
    void *resized = realloc_behind(block, size);
    if (note.known && resized != nullptr) {
        forget_block(block);
        note_block(resized, size, note.tag);
    }
    return resized;
}

void kel_named_free(void *block) {
    static const auto free_behind = TVK_BEHIND(kel_named_free);
    forget_block(block);
    free_behind(block);
}

void *tvk_gpb_alloc(size_t size, void *arg) {
    static const auto alloc_behind = TVK_BEHIND(tvk_gpb_alloc);
    return obtain_noted(size, nullptr, [=] { return alloc_behind(size, arg); });
}

void tvk_gpb_free(void *block, void *arg) {
    static const auto free_behind = TVK_BEHIND(tvk_gpb_free);
    forget_block(block);
    free_behind(block, arg);
}

char *tvk_strdup(const char *text, const char *tag) {
    static const auto strdup_behind = TVK_BEHIND(tvk_strdup);
    if (text == nullptr) {
        return strdup_behind(nullptr, tag);
    }
    const std::size_t size = std::strlen(text) + 1;
    return static_cast<char *>(obtain_noted(size, tag, [=] { return strdup_behind(text, tag); }));
}

int tvk_platform_set_session(tvk_framework_ctx tvk_ctx, uint32_t session_id, struct tvk_session *session) {
    return minimal_platform_set_session(tvk_ctx, session_id, session);
}
