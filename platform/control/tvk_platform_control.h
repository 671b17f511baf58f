/*
 * Switches of the default platform layer, for tools and tests.
 *
 * These are no part of the platform contract (platform/include): a platform layer of an integrator needs none of them,
 * and the library calls none of them. All switches are off when the process starts and cost nothing then. They are
 * process-wide and are set from one thread. The session table alone may be changed from any.
 */
#ifndef TVK_PLATFORM_CONTROL_H
#define TVK_PLATFORM_CONTROL_H

#include <stddef.h>
#include <stdint.h>

#include "tvk_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Receives one message, without a line end, and the user pointer that was set with the sink. It is the exact text: some
 * messages of the library have line breaks of their own, and text of clients that they quote may hold any character.
 * On standard error, where messages go without a sink, each is one line: control characters (C0, DEL, C1) and
 * backslashes are escaped, as \n or \x1b, so that no client can write a line of its own.
 */
typedef void (*tvk_platform_sink_fp)(void *user, const char *line);

/*
 * Turns the debug log on (enabled non-zero) up to level, or off. With a null sink the messages go to
 * standard error. The sink is borrowed until it is replaced.
 */
void tvk_platform_set_debug_log(int enabled, uint32_t level, tvk_platform_sink_fp sink, void *user);

/* Sets the sink of trace lines, as for the debug log. The mapping context switches the trace itself on and off. */
void tvk_platform_set_trace(tvk_platform_sink_fp sink, void *user);

/* Makes the next call of ret_nc_tvk_trace_index_incr return index. */
void tvk_platform_set_trace_index(uint32_t index);

/* Sets the answer of platform_get_router_type; it is 0 at first. */
void tvk_platform_set_router_type(uint32_t router_type);

/*
 * Puts session (borrowed) into the table of tvk_ctx under session_id, replacing a former one; null takes it out.
 *
 * Returns
 * - 1: the table is changed.
 * - 0: there is no memory.
 */
int tvk_platform_set_session(tvk_framework_ctx tvk_ctx, uint32_t session_id, struct tvk_session *session);

/*
 * Turns the accounting of the named heap on or off. While it is on, every block handed out is recorded until it is
 * released. The record is empty after either.
 */
void tvk_platform_set_accounting(int enabled);

/*
 * Returns the number of blocks handed out since accounting went on and not yet released; with a tag (compared as text)
 * only its own.
 */
size_t tvk_platform_live_blocks(const char *tag);
/* Returns the bytes asked for in the blocks that tvk_platform_live_blocks counts. */
size_t tvk_platform_live_bytes(const char *tag);
/* Calls visit with every live block: its address, size and tag (null for a block of the codec). */
void tvk_platform_visit_live_blocks(void (*visit)(void *user, const void *block, size_t size, const char *tag),
                                    void *user);

/*
 * Makes the nth allocation from now on fail (1 is the next one; 0 turns the switch off); with from_there_on non-zero
 * every later one as well. A call that grows a block counts as one allocation.
 */
void tvk_platform_fail_allocation(uint64_t nth, int from_there_on);
/* Makes every allocation under tag fail, beside those of tvk_platform_fail_allocation; null turns it off. */
void tvk_platform_fail_tag(const char *tag);
/*
 * Returns the number of allocations asked for since the last call of tvk_platform_fail_allocation. They are counted
 * only while that switch or accounting is on.
 */
uint64_t tvk_platform_allocation_count(void);

#ifdef __cplusplus
}
#endif

#endif
