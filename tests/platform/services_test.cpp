#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "context.h"
#include "kel_queue.h"
#include "platform_info.h"
#include "tree.h"
#include "tvk_diagnostics.h"
#include "tvk_platform_control.h"

using namespace tvk::test;

namespace {

class Services : public HeapTest {};

TEST(Queue, TakesTheElementThatWasPutBackLast) {
    struct Element {
        void *link;
        int value;
    };
    Element elements[] = {{nullptr, 0}, {nullptr, 1}, {nullptr, 2}};
    kel_queue queue{};
    ASSERT_EQ(1u, kel_queue_init(&queue, 1));
    EXPECT_EQ(1, kel_queue_empty(&queue));
    EXPECT_EQ(nullptr, kel_queue_dequeue(&queue));
    for (int round = 0; round < 2; ++round) {  // an emptied queue is as good as a new one
        for (Element &element : elements) {
            kel_queue_requeue(&queue, &element);
        }
        EXPECT_EQ(3u, queue.count) << "the capacity is no limit";
        for (int i = 2; i >= 0; --i) {
            EXPECT_EQ(0, kel_queue_empty(&queue));
            EXPECT_EQ(&elements[i], kel_queue_dequeue(&queue));
            EXPECT_EQ(i, elements[i].value);
        }
        EXPECT_EQ(nullptr, kel_queue_dequeue(&queue));
        EXPECT_EQ(nullptr, queue.tail);
    }
    kel_queue_requeue(&queue, nullptr);
    kel_queue_requeue(nullptr, &elements[0]);
    EXPECT_EQ(1, kel_queue_empty(&queue));
    EXPECT_EQ(0u, kel_queue_init(nullptr, 1));
}

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

TEST(Diagnostics, CountsAndKeepsTraceLines) {
    LogCapture capture;
    EXPECT_EQ(1u, ret_nc_tvk_trace_index_incr());
    tvk_platform_set_trace_index(UINT32_MAX);
    EXPECT_EQ(UINT32_MAX, ret_nc_tvk_trace_index_incr());
    EXPECT_EQ(0u, ret_nc_tvk_trace_index_incr());
    _lstrace(nullptr, 0, "#1: one");
    _lstrace(nullptr, 0, "#2: two");
    EXPECT_EQ((Lines{"#1: one", "#2: two"}), capture.traces());
    EXPECT_EQ(Lines{}, capture.logs());
}

TEST_F(Services, DumpsTreesToTheDebugLog) {
    LogCapture capture;
    Tree tree = node("top", "urn:a")(node("list")(leaf("name", "x").key().op(TVK_OPERATION_DELETE)), node({}));
    void *filter = nullptr;
    EXPECT_EQ(TVK_OK, tvk_gpb_datatree_trace_internal(&filter, tree.get(), "reply", 0, 0, 0));
    EXPECT_EQ((Lines{"reply: top (urn:a)", "reply:     list (urn:a)", "reply:         name (urn:a) : x (delete) (key)",
                     "reply:     (no tag) (urn:a)"}),
              capture.logs());
    capture.clear();
    EXPECT_EQ(TVK_OK, tvk_gpb_datatree_trace_internal(&filter, tree.get(), nullptr, 1, 1, 0));
    EXPECT_EQ((Lines{"    top (urn:a)"}), capture.logs()) << "one level, indented by one";
    capture.clear();
    tvk_platform_set_debug_log(0, 0, nullptr, nullptr);
    EXPECT_EQ(TVK_OK, tvk_gpb_datatree_trace_internal(&filter, tree.get(), "reply", 0, 0, 0));
    EXPECT_EQ(TVK_OK, tvk_gpb_datatree_trace_internal(&filter, nullptr, "reply", 0, 0, 0));
    EXPECT_EQ(Lines{}, capture.logs());
}

TEST(Sessions, AreFoundByContextAndId) {
    tvk_framework_context contexts[2]{};
    tvk_session first{};
    tvk_session second{};
    EXPECT_EQ(1, tvk_platform_set_session(&contexts[0], 7, &first));
    EXPECT_EQ(1, tvk_platform_set_session(&contexts[1], 7, &second));
    EXPECT_EQ(&first, tvk_session_find(&contexts[0], 7));
    EXPECT_EQ(&second, tvk_session_find(&contexts[1], 7));
    EXPECT_EQ(nullptr, tvk_session_find(&contexts[0], 8));
    EXPECT_EQ(1, tvk_platform_set_session(&contexts[0], 7, &second));
    EXPECT_EQ(&second, tvk_session_find(&contexts[0], 7)) << "replaced";
    for (tvk_framework_context &context : contexts) {
        EXPECT_EQ(1, tvk_platform_set_session(&context, 7, nullptr));
        EXPECT_EQ(nullptr, tvk_session_find(&context, 7));
    }
}

TEST(PlatformInfo, AnswersTheRouterTypeThatWasSet) {
    EXPECT_EQ(0u, platform_get_router_type());
    tvk_platform_set_router_type(18);
    EXPECT_EQ(18u, platform_get_router_type());
    tvk_platform_set_router_type(0);
}

}  // namespace
