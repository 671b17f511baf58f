/*
 * Bounded string operations and the copy of a string on the named heap.
 *
 * Sizes are in bytes and include the terminator.
 */
#ifndef TVK_STRING_H
#define TVK_STRING_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Returns a copy of text on the named heap under tag (see kel_memory.h); null for a null text or without memory. */
char *tvk_strdup(const char *text, const char *tag);

/*
 * Copies source into the destination of size bytes. The caller's name is for diagnostics. It never truncates: on
 * failure a usable destination is empty. Source and destination do not overlap.
 *
 * Returns
 * - 0: the source is copied.
 * - any other: source or destination is null, the size is 0, or the source does not fit.
 */
int tvk_strcpy_s(const char *caller, char *destination, size_t size, const char *source);

/*
 * Appends source to the string in the destination of size bytes. The caller's name is for diagnostics. It never
 * truncates: on failure the destination is as it was.
 *
 * Returns
 * - 0: the source is appended.
 * - any other: source or destination is null, the destination holds no terminator within size, or the result does not
 *   fit.
 */
int tvk_strcat_s(const char *caller, char *destination, size_t size, const char *source);

/*
 * Copies at most count characters of source and a terminator, as the operation of that name in ISO C Annex K does, for
 * C libraries without it. On failure a usable destination is empty.
 *
 * Returns
 * - 0: the characters are copied.
 * - any other: source or destination is null, the size is 0, or the characters do not fit.
 */
int strncpy_s(char *destination, size_t size, const char *source, size_t count);

/*
 * Appends source, as the operation of that name in ISO C Annex K does. On failure a usable destination is empty.
 *
 * Returns
 * - 0: the source is appended.
 * - any other: source or destination is null, the destination holds no terminator within size, or the result does not
 *   fit.
 */
int strcat_s(char *destination, size_t size, const char *source);

#ifdef __cplusplus
}
#endif

#endif
