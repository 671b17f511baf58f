// The heap of the minimal platform: one array of fixed size. Addresses are aligned for any type; they are null when the
// array has no room. Calls may come from several threads.
#ifndef MINIMAL_PLATFORM_ARENA_H
#define MINIMAL_PLATFORM_ARENA_H

#include <cstddef>

#pragma GCC visibility push(hidden)
namespace minimal_platform {

void *allocate(std::size_t size);

// Makes room for size bytes in or behind block, or moves it. A block that is moved gets half as much again, so that
// growing it step by step moves it a few times only. On failure block stays as it was.
void *resize(void *block, std::size_t size);

// An address that is not of this heap ends the process.
void release(void *block);

}  // namespace minimal_platform
#pragma GCC visibility pop

#endif
