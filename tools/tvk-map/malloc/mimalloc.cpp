// Replaces the operators new of mimalloc, which end the process when there is no memory. These throw std::bad_alloc.
#include <unistd.h>

#include <cstdlib>
#include <new>

#include "report.h"

namespace {

// mimalloc takes memory in pieces of 32 MB. Without room for the first one not even an exception can be thrown, so this
// runs before all other initialisation of the program.
[[gnu::constructor(101)]] void require_memory() {
    void *volatile block = std::malloc(1);
    if (block == nullptr) {
        constexpr char kMessage[] = "tvk-map: out of memory\n";
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage, sizeof kMessage - 1);
        _exit(tvk::tool::kExitUsage);
    }
    std::free(block);
}

}  // namespace

void *operator new(std::size_t size) {
    void *block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    return std::malloc(size != 0 ? size : 1);
}
void *operator new[](std::size_t size) {
    return operator new(size);
}
void *operator new[](std::size_t size, const std::nothrow_t &nothrow) noexcept {
    return operator new(size, nothrow);
}

void operator delete(void *block) noexcept {
    std::free(block);
}
void operator delete(void *block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void *block, const std::nothrow_t &) noexcept {
    std::free(block);
}
void operator delete[](void *block) noexcept {
    std::free(block);
}
void operator delete[](void *block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void *block, const std::nothrow_t &) noexcept {
    std::free(block);
}
