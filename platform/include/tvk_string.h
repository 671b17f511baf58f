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

/* Copies text to the named heap under tag (see kel_memory.h). A null text, or no memory, gives null. */
char *tvk_strdup(const char *text, const char *tag);

/*
 * Copies source into the destination of size bytes. The caller's name is for diagnostics. Never truncates: a
 * source that does not fit leaves an empty destination. Returns 0, or non-zero when a pointer is null, the size
 * is 0 or the source does not fit. Source and destination do not overlap.
 */
int tvk_strcpy_s(const char *caller, char *destination, size_t size, const char *source);

/*
 * Appends source to the string in the destination of size bytes. Never truncates: what does not fit leaves the
 * destination as it was. Returns 0, or non-zero when a pointer is null, the destination holds no terminator
 * within size, or the result does not fit.
 */
int tvk_strcat_s(const char *caller, char *destination, size_t size, const char *source);

/*
 * The two operations of ISO C Annex K that the library calls, for C libraries without them. A failing call
 * leaves an empty string in a usable destination and returns non-zero.
 * strncpy_s copies at most count characters of source and a terminator; strcat_s appends.
 */
int strncpy_s(char *destination, size_t size, const char *source, size_t count);
int strcat_s(char *destination, size_t size, const char *source);

#ifdef __cplusplus
}
#endif

#endif
