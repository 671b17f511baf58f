/*
 * The debug log and the trace facility.
 *
 * Every message of the library is offered to both, independently. The library formats only for a sink that is
 * on: it asks tvk_debug_should_log before a debug-log line and looks at the context's trace switch before a
 * trace line.
 *
 * Messages quote names and values of requests as they are, line breaks and control characters included; a few bodies
 * have line breaks of their own. A layer that writes lines escapes them, or a client can forge a line.
 */
#ifndef TVK_DIAGNOSTICS_H
#define TVK_DIAGNOSTICS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define TVK_LOG_LEVEL_ERR 0u
#define TVK_LOG_LEVEL_TRC 3u

/*
 * Asks whether the debug log wants messages of level (0 ERR, 3 TRC) under the filter handle at log_filter.
 *
 * Returns
 * - 0: it does not.
 * - any other: it does.
 */
int tvk_debug_should_log(void *const *log_filter, uint32_t level);

/*
 * Writes one debug-log line: format with its arguments, as printf would, to the log of handle. The five
 * reserved arguments are given as 0. site_word is a static word of the place in the code that logs, set to
 * 0xffffffff before the program starts; the debug log may cache its filtering decision there, the library
 * neither reads nor writes it. A line of any length is written whole.
 */
#if defined(__GNUC__)
__attribute__((cold, format(printf, 8, 9)))
#endif
void _kel_dt_log_filter_adv(void *handle, uint32_t reserved_1, uint32_t reserved_2, uint32_t reserved_3,
                            uint32_t reserved_4, uint32_t reserved_5, uint32_t *site_word, const char *format, ...);

/* Returns the next index of the counter that all trace lines share. The first is 1. */
uint32_t ret_nc_tvk_trace_index_incr(void);

/* Appends line, a terminated text of at most 249 characters, to the trace of handle. */
void _lstrace(void *handle, uint64_t attributes, const char *line);

#ifdef __cplusplus
}
#endif

#endif
