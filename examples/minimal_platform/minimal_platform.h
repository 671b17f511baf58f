/* What a framework tells the minimal platform, beside the platform contract. */
#ifndef MINIMAL_PLATFORM_H
#define MINIMAL_PLATFORM_H

#include <stdint.h>

#include "tvk_session.h"

#ifdef __cplusplus
extern "C" {
#endif

#define MINIMAL_PLATFORM_SESSIONS 16

/*
 * Puts session (borrowed) into the table of tvk_ctx under id, replacing a former one; null takes it out. Not while a
 * request looks sessions up. Returns 1, or 0 when the table, of MINIMAL_PLATFORM_SESSIONS for all contexts, is full.
 */
int minimal_platform_set_session(tvk_framework_ctx tvk_ctx, uint32_t session_id, struct tvk_session *session);

#ifdef __cplusplus
}
#endif

#endif
