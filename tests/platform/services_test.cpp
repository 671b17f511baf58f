#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "context.h"
#include "tree.h"
#include "tvk_diagnostics.h"
#include "tvk_platform_control.h"
#include "tvk_session.h"

using namespace tvk::test;

namespace {

class Services : public HeapTest {};

TEST(Diagnostics, WritesLinesOfAnyLengthWhole) {
    const LogCapture capture;
    Lines expected;
    std::uint32_t site_word = UINT32_MAX;
    for (const std::size_t length : {0u, 1u, 400u, 504u, 505u, 506u, 507u, 10'000u}) {
        const std::string body(length, 'x');
        _kel_dt_log_filter_adv(nullptr, 0, 0, 0, 0, 0, &site_word, "%s|%d\n", body.c_str(), 12345);
        expected.push_back(body + "|12345\n");
    }
    EXPECT_EQ(expected, capture.raw_logs());
    EXPECT_EQ(UINT32_MAX, site_word);
}

TEST(Diagnostics, LogsUpToTheLevelAndToStandardErrorUnlessToldOtherwise) {
    void *filter = nullptr;
    EXPECT_EQ(0, tvk_debug_should_log(&filter, TVK_LOG_LEVEL_ERR)) << "off until asked for";
    tvk_platform_set_debug_log(1, TVK_LOG_LEVEL_ERR, nullptr, nullptr);
    EXPECT_NE(0, tvk_debug_should_log(&filter, TVK_LOG_LEVEL_ERR));
    EXPECT_EQ(0, tvk_debug_should_log(&filter, TVK_LOG_LEVEL_TRC));

    std::uint32_t site_word = UINT32_MAX;
    testing::internal::CaptureStderr();
    _kel_dt_log_filter_adv(nullptr, 0, 0, 0, 0, 0, &site_word, "%s", "logged");
    _lstrace(nullptr, 0, "traced");
    tvk_platform_set_debug_log(0, TVK_LOG_LEVEL_TRC, nullptr, nullptr);
    _kel_dt_log_filter_adv(nullptr, 0, 0, 0, 0, 0, &site_word, "%s", "off again");
    EXPECT_EQ("logged\ntraced\n", testing::internal::GetCapturedStderr());
}

TEST(Diagnostics, WritesEachMessageOnOneLine) {
    const std::string text = "a\nERR: forged\r\t\\ \x1b[2J\x7f \xC2\x9B \xC3\xA4\xC2\xA0\n",
                      printed = "a\\nERR: forged\\r\\t\\\\ \\x1b[2J\\x7f \\xc2\\x9b \xC3\xA4\xC2\xA0\\n\n";
    std::uint32_t site_word = UINT32_MAX;
    testing::internal::CaptureStderr();
    tvk_platform_set_debug_log(1, TVK_LOG_LEVEL_ERR, nullptr, nullptr);
    _kel_dt_log_filter_adv(nullptr, 0, 0, 0, 0, 0, &site_word, "%s", text.c_str());
    _lstrace(nullptr, 0, text.c_str());
    tvk_platform_set_debug_log(0, TVK_LOG_LEVEL_TRC, nullptr, nullptr);
    EXPECT_EQ(printed + printed, testing::internal::GetCapturedStderr());
    const LogCapture capture;
    _kel_dt_log_filter_adv(nullptr, 0, 0, 0, 0, 0, &site_word, "%s", text.c_str());
    EXPECT_EQ(Lines{text}, capture.raw_logs()) << "a sink of one's own gets it as it is";
}

TEST(Diagnostics, CountsTraceLinesAndWrapsAround) {
    tvk_platform_set_trace_index(UINT32_MAX);
    EXPECT_EQ(UINT32_MAX, ret_nc_tvk_trace_index_incr());
    EXPECT_EQ(0u, ret_nc_tvk_trace_index_incr());
}

// Each thread opens and closes sessions of its own in the one table.
TEST_F(Services, SessionsAreFoundWhileOthersComeAndGo) {
    constexpr std::uint32_t kThreads = 4, kSessions = 64, kRounds = 500;
    tvk_framework_context framework{};
    tvk_session session{};
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (std::uint32_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::uint32_t i = 0; i < kRounds * kSessions; ++i) {
                const std::uint32_t id = i % kSessions * kThreads + thread;
                tvk_session *const expected = i / kSessions % 2 == 0 ? &session : nullptr;
                tvk_platform_set_session(&framework, id, expected);
                wrong += tvk_session_find(&framework, id) != expected ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(0, wrong);
    tvk_session other{};
    for (tvk_session *set : {&session, &other, static_cast<tvk_session *>(nullptr)}) {  // the last one set counts
        tvk_platform_set_session(&framework, 1, set);
        EXPECT_EQ(set, tvk_session_find(&framework, 1));
    }
}

TEST_F(Services, DumpsTreesToTheDebugLog) {
    LogCapture capture;
    Tree tree = node("top", "urn:a")(node("list")(leaf("name", "x").key().op(TVK_OPERATION_DELETE)), node({}));
    void *filter = nullptr;
    EXPECT_EQ(TVK_OK, tvk_gpb_datatree_trace_internal(&filter, tree.get(), "reply", 0, 0, 0));
    EXPECT_EQ(TVK_OK, tvk_gpb_datatree_trace_internal(&filter, tree.get(), nullptr, 1, 1, 0));
    EXPECT_EQ(TVK_OK, tvk_gpb_datatree_trace_internal(&filter, nullptr, "reply", 0, 0, 0));
    EXPECT_EQ((Lines{"reply: top (urn:a)", "reply:     list (urn:a)", "reply:         name (urn:a) : x (delete) (key)",
                     "reply:     (no tag) (urn:a)", "    top (urn:a)"}),
              capture.logs())
        << "the second: one level, indented by one";
}

}  // namespace
