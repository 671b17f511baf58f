/*
 * The named allocator.
 *
 * There is one heap. A block from any of these operations, from tvk_strdup (tvk_string.h) or from
 * tvk_gpb_alloc (qidl_tvk_datatree.h) may be released with kel_named_free or with tvk_gpb_free. A name (the
 * "tag") is a short constant text that tells the purpose of a block; it is for accounting only and may be dropped.
 * An implementation keeps the pointer, not a copy, so a tag must outlive the block.
 *
 * Nothing here logs. Calls on different blocks may come from different threads.
 */
#ifndef KEL_MEMORY_H
#define KEL_MEMORY_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Allocates count * size zeroed bytes under tag. The last argument is reserved and given as 0.
 * Returns null when memory runs out or the product does not fit a size_t.
 */
void *kel_named_calloc_(size_t count, size_t size, const char *tag, uint32_t reserved);

/*
 * Resizes block to size bytes, and moves it if it must. The contents up to the smaller of both sizes are kept, new
 * bytes are unspecified. A null block allocates. The block keeps its tag.
 * Returns the block's address, or null on failure; the old block then stays as it was.
 *
 * Child arrays grow through this call by one record at a time, so growing must stay cheap: spare room behind a
 * block is used without moving it, and the room that is reserved grows in proportion to the block.
 */
void *kel_named_realloc(void *block, size_t size);

/* Releases block. Null does nothing. */
void kel_named_free(void *block);

#ifdef __cplusplus
}
#endif

#endif
