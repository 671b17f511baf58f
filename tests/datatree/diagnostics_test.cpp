#include <gtest/gtest.h>

#include <cstdio>

#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_diagnostics.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"
#include "tvk_platform_control.h"

using namespace tvk::test;

namespace {

class Diagnostics : public MappingTest {};
using DiagnosticsDeathTest = Diagnostics;

TEST_F(Diagnostics, NullArgumentsAreRefusedBeforeAnyEffect) {
    Tree tree = root();
    qidl_tvk_datatree *const t = tree.get(), *out = nullptr;
    const qidl_tvk_datatree *at = nullptr;
    char x[] = "x";
    const auto refused = [this](const char *why, qerrno status) {
        SCOPED_TRACE(why);
        EXPECT_STATUS(TVK_ERR_INVALID, status);
        EXPECT_EQ("ERR: NULL argument(s) passed!", logs().back()) << "no \"End\" after it";
        clear_logs();
    };
    refused("add subtree", tvk_map_datatree_add_subtree(ctx, t, "x", nullptr, "x", nullptr, &out, 0));
    refused("add path", tvk_map_datatree_add_path(ctx, nullptr, "x", "x", "x", nullptr, &out, 0));
    refused("move", tvk_map_add_subtrees_from_source_to_target(ctx, nullptr, t));
    refused("last", tvk_map_datatree_get_last_subtree(ctx, t, "x", nullptr));
    refused("lists", tvk_map_search_or_add_list(ctx, t, &at, x, nullptr, x, x));
    EXPECT_TREE(root(), tree);
}

TEST_F(DiagnosticsDeathTest, ANullContextStopsTheProcess) {
    EXPECT_DEATH(tvk_map_validate_replace_subtree(nullptr, nullptr),
                 R"(manageability/yang/framework/mapping/src/tvk_map_common:[0-9]+: qerrno )"
                 R"(tvk_map_validate_replace_subtree\(tvk_map_ctx, const struct qidl_tvk_datatree \*, int, int\): )"
                 R"(Assertion `NULL != ctx' failed)");
}

TEST_F(Diagnostics, TraceAndDebugLogAreIndependent) {
    Tree tree = root();
    const std::string tag(400, 't');
    const auto add = [&] { tvk_map_datatree_add_subtree(ctx, tree.get(), tag.c_str(), "n", "1", nullptr, nullptr, 1); };
    add();
    EXPECT_EQ(Lines{}, traces());
    EXPECT_EQ("TRC: Setting tag name '" + tag + "'.", logs().at(1)) << "the debug log is not cut";

    clear_logs();
    tvk_platform_set_debug_log(0, 0, nullptr, nullptr);
    mapping.context.trace_enabled = 1;
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_validate_replace_subtree(ctx, nullptr));
    add();
    mapping.context.trace_enabled = 0;
    add();
    EXPECT_EQ(Lines{}, logs());
    ASSERT_EQ(6u, traces().size());
    EXPECT_EQ(7u, ret_nc_tvk_trace_index_incr()) << "only traced lines take an index";
    char context[32];
    std::snprintf(context, sizeof context, " ctx=%p,", static_cast<void *>(ctx));
    const std::string first = traces()[0], start = "#1: ERR: tvk_map_validate_replace_subtree:";
    EXPECT_TRUE(first.starts_with(start) && first[start.size()] > '0') << first;  // and the line
    EXPECT_TRUE(first.ends_with(std::string(context) + "NULL argument(s) passed!")) << first;
    EXPECT_EQ("#3: TRC: ", traces()[2].substr(0, 9));
    EXPECT_EQ(249u, traces()[2].size());
}

}  // namespace
