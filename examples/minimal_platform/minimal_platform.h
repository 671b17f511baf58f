/* The minimal platform's own operation for frameworks, beside the platform contract. */
#ifndef MINIMAL_PLATFORM_H
#define MINIMAL_PLATFORM_H

#include <stdint.h>

#include "tvk_session.h"

#ifdef __cplusplus
extern "C" {
#endif

#define MINIMAL_PLATFORM_SESSIONS 16

/*
 * Puts session (borrowed) into the table of tvk_ctx under session_id, replacing a former one; null takes it out. No
 * request may look sessions up meanwhile.
 *
 * Returns
 * - 1: the table is changed.
 * - 0: the table, of MINIMAL_PLATFORM_SESSIONS for all contexts, is full.
 */
int minimal_platform_set_session(tvk_framework_ctx tvk_ctx, uint32_t session_id, struct tvk_session *session);

#ifdef __cplusplus
}
#endif

#endif
