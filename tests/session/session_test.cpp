#include "tvk_map_session.h"

#include "context.h"
#include "status.h"
#include "tvk_platform_control.h"

namespace tvk::test {
namespace {

class SessionTest : public MappingTest {
protected:
    static constexpr std::uint32_t kId = 7;

    SessionTest() {
        request.session_id = kId;
        request.presence = TVK_REQUEST_HAS_SESSION_ID;
        tvk_platform_set_session(&mapping.framework, kId, &session);
        clear_logs();
    }
    ~SessionTest() override { tvk_platform_set_session(&mapping.framework, kId, nullptr); }

    int handles[4] = {};
    varn_connection_table_a table_a{&handles[0], &handles[1]};
    varn_connection_table_b table_b{&handles[2], nullptr, &handles[3]};
    varn_backend backend{&table_a};
    me_backend_session_ctx_t backend_session{&backend, &table_b};
    me_backend_session_ctx_t *backend_sessions[1] = {&backend_session};
    me_session client{backend_sessions};
    tvk_session session{&client};
};

TEST_F(SessionTest, ChoosesAConnectionByKindAndSelector) {
    const struct {
        std::uint32_t kind;
        int alternate_b, alternate_a;
        int *handle;
    } kCases[] = {
        {0, 0, 0, &handles[1]}, {0, 1, 0, &handles[1]}, {1, 0, 0, &handles[1]}, {0, 0, 1, &handles[0]},
        {1, 0, 5, &handles[0]}, {2, 0, 1, &handles[2]}, {2, 1, 0, &handles[3]}, {3, 0, 0, &handles[0]},
        {3, 1, 1, &handles[0]}, {4, 0, 0, nullptr},
    };
    for (const auto &test : kCases) {
        SCOPED_TRACE(test.kind);
        EXPECT_EQ(test.handle,
                  varn_backend_get_varn_conn(&backend_session, test.kind, test.alternate_b, test.alternate_a));
        EXPECT_EQ(test.handle, tvk_map_get_varn_conn_hdl(ctx, test.kind, test.alternate_b, test.alternate_a));
    }
    EXPECT_EQ(nullptr, varn_backend_get_varn_conn(nullptr, 0, 0, 0));
    backend_session.backend = nullptr;  // every kind goes by the backend record
    EXPECT_EQ(nullptr, tvk_map_get_varn_conn_hdl(ctx, 2, 0, 0));
    backend_sessions[0] = nullptr;
    EXPECT_EQ(nullptr, tvk_map_get_varn_conn_hdl(ctx, 0, 0, 0));
}

TEST_F(SessionTest, SaysWhyThereIsNoBackendSession) {
    const auto expect = [this](qerrno status, const Lines &between) {
        me_backend_session_ctx_t *found = nullptr;
        clear_logs();
        EXPECT_STATUS(status, tvk_map_get_backend_session(&mapping.req_ctx, &found));
        EXPECT_EQ(status == TVK_OK ? &backend_session : nullptr, found);
        Lines lines{"TRC: Entering tvk_map_get_backend_session"};
        lines.insert(lines.end(), between.begin(), between.end());
        lines.push_back("TRC: Exiting tvk_map_get_backend_session");
        EXPECT_EQ(lines, logs());
    };
    expect(TVK_OK, {"TRC: This request belongs to session '7'"});
    client.backend_sessions = nullptr;
    expect(TVK_ERR_NOT_FOUND,
           {"TRC: This request belongs to session '7'", "ERR: NULL me_session or backend_sessions!"});
    request.session_id = 8;
    expect(TVK_ERR_INVALID, {"ERR: Session with id=8 not found!"});
    request.presence = 0;
    expect(TVK_ERR_INVALID, {"ERR: Missing session id in request!"});
    mapping.req_ctx.request = nullptr;
    expect(TVK_ERR_INVALID, {"ERR: NULL argument(s) passed!"});
    mapping.req_ctx.tvk_ctx = nullptr;
    EXPECT_DEATH(tvk_map_get_backend_session(&mapping.req_ctx, nullptr), "NULL != req_ctx->tvk_ctx");
}

TEST_F(SessionTest, TellsTheAgentAndTheWithDefaultsMode) {
    request.with_defaults_mode = TVK_WITH_DEFAULTS_TRIM;
    EXPECT_EQ(0, tvk_map_is_with_defaults_enabled(ctx)) << "not asked for";
    request.presence |= TVK_REQUEST_HAS_WITH_DEFAULTS;
    EXPECT_EQ(TVK_WITH_DEFAULTS_TRIM, tvk_map_is_with_defaults_enabled(ctx));
    EXPECT_EQ(Lines{}, logs());

    mapping.framework.agent_type = 5;
    EXPECT_EQ(5, tvk_map_get_agent_type(ctx));
    EXPECT_EQ(0, tvk_map_is_with_defaults_enabled(ctx));
    EXPECT_EQ(Lines{"ERR: with-defaults only supported for netconf agent"}, logs());

    clear_logs();
    mapping.context.req_ctx = nullptr;
    EXPECT_EQ(TVK_AGENT_OTHER, tvk_map_get_agent_type(ctx));
    EXPECT_EQ(Lines{"ERR: Invalid arguments passed for agent type check"}, logs());

    clear_logs();
    state->request = nullptr;
    EXPECT_EQ(0, tvk_map_is_with_defaults_enabled(ctx));
    EXPECT_EQ(Lines{"ERR: Invalid arguments passed for with-defaults check"}, logs());
}

}  // namespace
}  // namespace tvk::test
