/* The sender of the request, and the way to the system database on its behalf. Nothing here changes state. */
#ifndef TVK_MAP_SESSION_H
#define TVK_MAP_SESSION_H

#include <stdint.h>

#include "tvk_map_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Agents that deliver requests. Numbers beyond NETCONF are the framework's own. */
typedef enum { TVK_AGENT_NETCONF = 0, TVK_AGENT_OTHER = 1, TVK_AGENT_LAST = 0x7fffffff } tvk_agent_type_e;

/*
 * With-defaults modes (RFC 6243) as the desk tool's framework numbers them; another framework may number them
 * otherwise. 0 cannot be told from a request that asks for none.
 */
enum tvk_with_defaults_mode {
    TVK_WITH_DEFAULTS_NONE = 0,
    TVK_WITH_DEFAULTS_REPORT_ALL = 1,
    TVK_WITH_DEFAULTS_REPORT_ALL_TAGGED = 2,
    TVK_WITH_DEFAULTS_TRIM = 3,
    TVK_WITH_DEFAULTS_EXPLICIT = 4
};

/* Kinds of connection that varn_backend_get_varn_conn chooses among. */
#define VARN_CONN_A_0 0u     /* tables of kind A: handle 2, with alternate_a handle 1 */
#define VARN_CONN_A_1 1u     /* the same */
#define VARN_CONN_B 2u       /* tables of kind B: handle 1, with alternate_b handle 2 */
#define VARN_CONN_A_FIRST 3u /* handle 1 of table A, whatever the selectors */

/*
 * Finds the backend session of a request through the framework's session table and stores it; it stays the
 * framework's. A null request context, or one without a framework context, stops the process with an assertion.
 * Messages go to the sinks of the framework context.
 *
 * Returns
 * - 0: backend_session is the first backend session.
 * - TVK_ERR_INVALID: there is no request, out pointer or session id, or no session of that id.
 * - TVK_ERR_NOT_FOUND: the session has no backend sessions.
 */
TVK_MAP_API qerrno tvk_map_get_backend_session(tvk_request_ctx *req_ctx, me_backend_session_ctx_t **backend_session);

/*
 * Returns a connection of a backend session, by kind (VARN_CONN_*) and selectors. Null for a null session, one without
 * backend record or the kind's connection table, and any other kind. The handle stays the framework's.
 */
TVK_MAP_API varn_conn_hdl varn_backend_get_varn_conn(const me_backend_session_ctx_t *backend_session, uint32_t kind,
                                                     int32_t alternate_b, int32_t alternate_a);

/*
 * Returns the connection of the request's backend session, chosen as varn_backend_get_varn_conn does; null without one.
 * The context's request context is as for tvk_map_get_backend_session.
 */
TVK_MAP_API varn_conn_hdl tvk_map_get_varn_conn_hdl(tvk_map_ctx ctx, uint32_t kind, int32_t alternate_b,
                                                    int32_t alternate_a);

/* Returns the agent that delivered the request; TVK_AGENT_OTHER when there is no framework context to tell it. */
TVK_MAP_API tvk_agent_type_e tvk_map_get_agent_type(tvk_map_ctx ctx);

/*
 * Returns the with-defaults mode that the client asked for, in the framework's numbering; 0 when with-defaults does not
 * apply: nothing was asked for, the agent is not NETCONF, or there is no request. A mode numbered 0 cannot be told
 * from none.
 */
TVK_MAP_API int tvk_map_is_with_defaults_enabled(tvk_map_ctx ctx);

#ifdef __cplusplus
}
#endif

#endif
