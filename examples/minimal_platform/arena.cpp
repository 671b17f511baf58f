// The array is cut into blocks, one behind the other without gaps. Each begins with a header that knows the size of
// the block and of the one in front, so that a released block is merged with what is free beside it. Free blocks are
// also in a list, whose links stand where a block in use has its contents.
#include "arena.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace minimal_platform {

namespace {

#ifdef MINIMAL_PLATFORM_ARENA_BYTES
constexpr std::size_t kArenaBytes = MINIMAL_PLATFORM_ARENA_BYTES;
#else
constexpr std::size_t kArenaBytes = std::size_t{64} * 1024 * 1024;
#endif
constexpr std::size_t kAlignment = alignof(std::max_align_t);

struct alignas(kAlignment) Block {
    std::uint32_t size;         // with this header
    std::uint32_t size_before;  // size of the block in front; 0 for the first
    bool is_free;
};

struct FreeBlock : Block {
    FreeBlock *next;
    FreeBlock *previous;
};

static_assert(kArenaBytes % kAlignment == 0 && kArenaBytes <= UINT32_MAX);

alignas(kAlignment) unsigned char arena[kArenaBytes];
constinit std::mutex arena_mutex;
FreeBlock *first_free = nullptr;

template <class Header = Block>
Header *at(Block *block, std::ptrdiff_t distance) {
    return reinterpret_cast<Header *>(reinterpret_cast<unsigned char *>(block) + distance);
}

Block *behind(Block *block) {
    return at(block, block->size);
}

void set_size(Block *block, std::size_t size) {
    block->size = static_cast<std::uint32_t>(size);
    behind(block)->size_before = block->size;
}

void put_into_list(Block *block) {
    block->is_free = true;
    auto *added = static_cast<FreeBlock *>(block);
    added->previous = nullptr;
    added->next = first_free;
    if (first_free != nullptr) {
        first_free->previous = added;
    }
    first_free = added;
}

void take_out_of_list(Block *block) {
    auto *taken = static_cast<FreeBlock *>(block);
    (taken->previous != nullptr ? taken->previous->next : first_free) = taken->next;
    if (taken->next != nullptr) {
        taken->next->previous = taken->previous;
    }
    taken->is_free = false;
}

// The last header is a block in use without contents, so that every other block has one behind it.
void set_up_once() {
    auto *first = reinterpret_cast<Block *>(arena);
    if (first->size == 0) {
        *at(first, kArenaBytes - sizeof(Block)) = {sizeof(Block), 0, false};
        set_size(first, kArenaBytes - sizeof(Block));
        put_into_list(first);
    }
}

// The size of the block for so many bytes of contents; 0 when there can be none.
std::size_t block_size(std::size_t bytes) {
    if (bytes >= kArenaBytes) {
        return 0;
    }
    const std::size_t size = sizeof(Block) + bytes + kAlignment - 1;
    return std::max(size - size % kAlignment, sizeof(FreeBlock));
}

void merge_with_free_behind(Block *block) {
    Block *next = behind(block);
    if (next->is_free) {
        take_out_of_list(next);
        set_size(block, std::size_t{block->size} + next->size);
    }
}

void free_block(Block *block) {
    merge_with_free_behind(block);
    Block *before = at(block, -std::ptrdiff_t{block->size_before});
    if (before != block && before->is_free) {
        set_size(before, std::size_t{before->size} + block->size);
    } else {
        put_into_list(block);
    }
}

// Cuts a block in use down to size. The rest becomes a free block, if it is large enough for one.
void cut(Block *block, std::size_t size) {
    if (block->size - size < sizeof(FreeBlock)) {
        return;
    }
    Block *rest = at(block, static_cast<std::ptrdiff_t>(size));
    *rest = {0, 0, false};
    set_size(rest, block->size - size);
    set_size(block, size);
    free_block(rest);
}

void *obtain(std::size_t bytes) {
    const std::size_t size = block_size(bytes);
    FreeBlock *found = size != 0 ? first_free : nullptr;
    while (found != nullptr && found->size < size) {
        found = found->next;
    }
    if (found == nullptr) {
        return nullptr;
    }
    take_out_of_list(found);
    cut(found, size);
    return at<void>(found, sizeof(Block));
}

std::size_t with_room_to_grow(std::size_t bytes) {
    return bytes < kArenaBytes ? bytes + bytes / 2 : bytes;
}

Block *block_of(void *contents) {
    const auto offset = reinterpret_cast<std::uintptr_t>(contents) - reinterpret_cast<std::uintptr_t>(arena);
    if (offset < sizeof(Block) || offset >= kArenaBytes || offset % kAlignment != 0) {
        std::abort();
    }
    return reinterpret_cast<Block *>(arena + offset) - 1;
}

bool grow_in_place(Block *block, std::size_t bytes) {
    const std::size_t size = block_size(bytes);
    const Block *next = behind(block);
    if (size == 0 || !next->is_free || std::size_t{block->size} + next->size < size) {
        return false;
    }
    merge_with_free_behind(block);
    const std::size_t wanted = block_size(with_room_to_grow(bytes));
    cut(block, std::clamp<std::size_t>(wanted, size, block->size));
    return true;
}

void *move(Block *block, std::size_t bytes) {
    void *moved = obtain(with_room_to_grow(bytes));
    if (moved == nullptr) {
        moved = obtain(bytes);
    }
    if (moved != nullptr) {
        std::memcpy(moved, block + 1, block->size - sizeof(Block));
        free_block(block);
    }
    return moved;
}

}  // namespace

void *allocate(std::size_t size) {
    const std::lock_guard lock(arena_mutex);
    set_up_once();
    return obtain(size);
}

void *resize(void *contents, std::size_t size) {
    const std::lock_guard lock(arena_mutex);
    Block *block = block_of(contents);
    const std::size_t room = block->size - sizeof(Block);
    if (size > room) {
        return grow_in_place(block, size) ? contents : move(block, size);
    }
    if (size < room / 2) {
        cut(block, block_size(size));
    }
    return contents;
}

void release(void *contents) {
    const std::lock_guard lock(arena_mutex);
    free_block(block_of(contents));
}

}  // namespace minimal_platform
