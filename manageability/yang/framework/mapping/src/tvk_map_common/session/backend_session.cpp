// The backend session of a request, and its connections.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_session.h"

namespace tvk {

namespace {

constexpr char kPrototype[] = "qerrno tvk_map_get_backend_session(tvk_request_ctx *, me_backend_session_ctx_t **)";

constexpr char kOperation[] = "tvk_map_get_backend_session";

qerrno find_backend_session(const tvk_request_ctx &req_ctx, me_backend_session_ctx_t **backend_session) {
    const tvk_framework_ctx tvk_ctx = req_ctx.tvk_ctx;
    if (req_ctx.request == nullptr || backend_session == nullptr) {
        TVK_ERR_AS(kOperation, tvk_ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if ((req_ctx.request->presence & TVK_REQUEST_HAS_SESSION_ID) == 0) {
        TVK_ERR_AS(kOperation, tvk_ctx, "Missing session id in request!");
        return TVK_ERR_INVALID;
    }
    const auto session_id = static_cast<int>(req_ctx.request->session_id);
    const struct tvk_session *session = tvk_session_find(tvk_ctx, req_ctx.request->session_id);
    if (session == nullptr) {
        TVK_ERR_AS(kOperation, tvk_ctx, "Session with id=%d not found!", session_id);
        return TVK_ERR_INVALID;
    }
    TVK_TRC_AS(kOperation, tvk_ctx, "This request belongs to session '%d'", session_id);
    if (session->me_session == nullptr || session->me_session->backend_sessions == nullptr) {
        TVK_ERR_AS(kOperation, tvk_ctx, "NULL me_session or backend_sessions!");
        return TVK_ERR_NOT_FOUND;
    }
    *backend_session = session->me_session->backend_sessions[0];
    return TVK_OK;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_get_backend_session(tvk_request_ctx *req_ctx, me_backend_session_ctx_t **backend_session) {
    TVK_ASSERT(req_ctx != nullptr && req_ctx->tvk_ctx != nullptr, "NULL != req_ctx->tvk_ctx", kCommonSource,
               kPrototype);
    TVK_TRC(req_ctx->tvk_ctx, "Entering %s", __func__);
    const qerrno status = find_backend_session(*req_ctx, backend_session);
    TVK_TRC(req_ctx->tvk_ctx, "Exiting %s", __func__);
    return status;
}

varn_conn_hdl varn_backend_get_varn_conn(const me_backend_session_ctx_t *backend_session, uint32_t kind,
                                         int32_t alternate_b, int32_t alternate_a) {
    if (backend_session == nullptr || backend_session->backend == nullptr) {
        return nullptr;
    }
    const struct varn_connection_table_a *a = backend_session->backend->connections;
    const struct varn_connection_table_b *b = backend_session->connections;
    switch (kind) {
        case VARN_CONN_A_0:
        case VARN_CONN_A_1:
            return a == nullptr ? nullptr : alternate_a == 0 ? a->a2 : a->a1;
        case VARN_CONN_B:
            return b == nullptr ? nullptr : alternate_b == 0 ? b->b1 : b->b2;
        case VARN_CONN_A_FIRST:
            return a == nullptr ? nullptr : a->a1;
        default:
            return nullptr;
    }
}

varn_conn_hdl tvk_map_get_varn_conn_hdl(tvk_map_ctx ctx, uint32_t kind, int32_t alternate_b, int32_t alternate_a) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                       "varn_conn_hdl tvk_map_get_varn_conn_hdl(tvk_map_ctx, uint32_t, int32_t, int32_t)");
    me_backend_session_ctx_t *backend_session = nullptr;
    if (tvk_map_get_backend_session(ctx->req_ctx, &backend_session) != TVK_OK) {
        return nullptr;
    }
    return varn_backend_get_varn_conn(backend_session, kind, alternate_b, alternate_a);
}
