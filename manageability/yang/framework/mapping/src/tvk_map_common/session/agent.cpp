// The agent that sent a request, and its wish for defaults.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_session.h"

using namespace tvk;

tvk_agent_type_e tvk_map_get_agent_type(tvk_map_ctx ctx) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource, "tvk_agent_type_e tvk_map_get_agent_type(tvk_map_ctx)");
    if (ctx->req_ctx == nullptr || ctx->req_ctx->tvk_ctx == nullptr) {
        TVK_ERR(ctx, "Invalid arguments passed for agent type check");
        return TVK_AGENT_OTHER;
    }
    return static_cast<tvk_agent_type_e>(ctx->req_ctx->tvk_ctx->agent_type);
}

int tvk_map_is_with_defaults_enabled(tvk_map_ctx ctx) {
    TVK_ASSERT_CONTEXT(ctx, kCommonSource, "int tvk_map_is_with_defaults_enabled(tvk_map_ctx)");
    if (!has_request(ctx)) {
        TVK_ERR(ctx, "Invalid arguments passed for with-defaults check");
        return 0;
    }
    if (tvk_map_get_agent_type(ctx) != TVK_AGENT_NETCONF) {
        TVK_ERR(ctx, "with-defaults only supported for netconf agent");
        return 0;
    }
    const struct tvk_request &request = *ctx->state->request;
    return (request.presence & TVK_REQUEST_HAS_WITH_DEFAULTS) != 0 ? request.with_defaults_mode : 0;
}
