/*
 * The framework's records of a request and its sessions, and the session table.
 *
 * The records belong to the framework, which creates them with a request; the library reads the fields named
 * here and nothing else. A framework may add fields behind them.
 */
#ifndef TVK_SESSION_H
#define TVK_SESSION_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Request types that the library knows. A get and a get-config are the read requests. Types 1, 8 and 15 are the
 * add requests, treated alike; the others are the framework's own.
 */
#define TVK_REQUEST_GET 0u
#define TVK_REQUEST_EDIT_CONFIG 1u /* the type of an edit in the desk tool */
#define TVK_REQUEST_ADD_8 8u
#define TVK_REQUEST_GET_CONFIG 10u
#define TVK_REQUEST_ADD_15 15u

/* Bits of tvk_request::presence. */
#define TVK_REQUEST_HAS_SESSION_ID 0x02u
#define TVK_REQUEST_HAS_WITH_DEFAULTS 0x10u

/* The decoded request. */
struct tvk_request {
    uint32_t type; /* TVK_REQUEST_* */
    uint32_t session_id;
    uint8_t with_defaults_mode;
    uint32_t error_option; /* passed through, never interpreted */
    uint8_t presence;
};

/* The framework context: owner of the session table, with the log handles of its own. */
struct tvk_framework_context {
    void *log_filter;
    void *err_log_handle;
    void *trc_log_handle;
    void *trace_handle;
    uint32_t trace_enabled;
    uint32_t agent_type; /* 0 is the NETCONF agent */
};
typedef struct tvk_framework_context *tvk_framework_ctx;

/* The framework request context. */
typedef struct tvk_request_context {
    tvk_framework_ctx tvk_ctx;
    struct tvk_request *request;
} tvk_request_ctx;

/* Connections to the system database: pointer-sized handles, passed through. */
typedef void *varn_conn_hdl;

struct varn_connection_table_a {
    varn_conn_hdl a1;
    varn_conn_hdl a2;
};

struct varn_connection_table_b {
    varn_conn_hdl b1;
    varn_conn_hdl reserved;
    varn_conn_hdl b2;
};

struct varn_backend {
    struct varn_connection_table_a *connections;
};

typedef struct me_backend_session_context {
    struct varn_backend *backend;
    struct varn_connection_table_b *connections;
} me_backend_session_ctx_t;

struct me_session {
    me_backend_session_ctx_t **backend_sessions; /* the first one is the request's */
};

struct tvk_session {
    struct me_session *me_session;
};

/*
 * Returns the session of that id in the table of the framework context; null when there is none. Each request calls it
 * on its own thread. A platform layer whose sessions come and go meanwhile guards its table, as the default one does.
 * The session itself must not go while a request has it.
 */
struct tvk_session *tvk_session_find(tvk_framework_ctx tvk_ctx, uint32_t session_id);

#ifdef __cplusplus
}
#endif

#endif
