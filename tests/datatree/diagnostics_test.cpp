#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

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
    std::uint32_t count = 0;
    char x[] = "x/y";
    const std::function<qerrno()> calls[] = {
        [&] { return tvk_map_datatree_add_subtree(ctx, nullptr, x, x, x, nullptr, &out, 0); },
        [&] { return tvk_map_datatree_add_subtree(ctx, t, x, nullptr, x, nullptr, &out, 0); },
        [&] { return tvk_map_datatree_add_path(ctx, nullptr, x, x, x, nullptr, &out, 0); },
        [&] { return tvk_map_datatree_add_path(ctx, t, x, nullptr, x, nullptr, &out, 0); },
        [&] { return tvk_map_datatree_add_path_common(ctx, t, x, nullptr, x, nullptr, &out, 0); },
        [&] { return tvk_map_datatree_add_subtree_with_data(ctx, t, nullptr, 0); },
        [&] { return tvk_map_add_subtrees_from_source_to_target(ctx, nullptr, t); },
        [&] { return tvk_map_validate_replace_subtree(ctx, nullptr); },
        [&] { return tvk_map_datatree_get_last_subtree(ctx, t, x, nullptr); },
        [&] { return tvk_map_datatree_get_subtree_num(ctx, nullptr, x, &count); },
        [&] { return tvk_map_datatree_remove_last_subtree(ctx, nullptr); },
        [&] { return tvk_map_search_or_add_list(ctx, t, &at, x, nullptr, x, x); },
        [&] { return tvk_map_search_list(ctx, t, nullptr, x, x, x, x); },
        [&] { return tvk_map_get_list(ctx, &at, x, x); },
        [&] { return tvk_map_get_subtree_from_key(ctx, t, nullptr, x, t); },
        [&] { return tvk_map_copy_trim_path_list_ctx(ctx, nullptr); },
    };
    for (const auto &call : calls) {
        SCOPED_TRACE(&call - calls);
        clear_logs();
        EXPECT_STATUS(TVK_ERR_INVALID, call());
        EXPECT_EQ("ERR: NULL argument(s) passed!", logs().back()) << "no \"End\" after it";
    }
    EXPECT_TREE(root(), tree);
}

TEST_F(DiagnosticsDeathTest, ANullContextStopsTheProcess) {
    const char *path = "a";
    EXPECT_DEATH(tvk_map_validate_replace_subtree(nullptr, nullptr),
                 R"(manageability/yang/framework/mapping/src/tvk_map_common:[0-9]+: qerrno )"
                 R"(tvk_map_validate_replace_subtree\(tvk_map_ctx, const struct qidl_tvk_datatree \*, int, int\): )"
                 R"(Assertion `NULL != ctx' failed)");
    EXPECT_DEATH(tvk_map_copy_trim_path_list_ctx(nullptr, path), "copy_trim_path_list_ctx.*NULL != ctx");
    EXPECT_DEATH(tvk_map_datatree_trim_path(nullptr, &path, "a"), "trim_path.*NULL != ctx");
}

TEST_F(Diagnostics, TraceAndDebugLogAreIndependent) {
    Tree tree = root();
    const std::string tag(400, 't');
    const auto add = [&] {
        EXPECT_STATUS(TVK_OK,
                      tvk_map_datatree_add_subtree(ctx, tree.get(), tag.c_str(), "n", "1", nullptr, nullptr, 1));
    };
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
    unsigned line = 0;
    void *context = nullptr;
    char rest[64] = "";
    std::sscanf(traces()[0].c_str(), "#1: ERR: tvk_map_validate_replace_subtree:%u ctx=%p,%63[^\n]", &line, &context,
                rest);
    EXPECT_GT(line, 0u);
    EXPECT_EQ(std::pair(static_cast<void *>(ctx), std::string("NULL argument(s) passed!")),
              std::pair(context, std::string(rest)));
    EXPECT_EQ("#3: TRC: ", traces()[2].substr(0, 9));
    EXPECT_EQ(249u, traces()[2].size());
}

TEST_F(Diagnostics, AccessorsReadPresenceBits) {
    Tree key = leaf("k", "1"), hidden = leaf("k", "1").without(TVK_HAS_DATA).op(TVK_OPERATION_REMOVE);
    EXPECT_STATUS(TVK_OK, tvk_map_get_tree_from_key_data(ctx, key.get(), "k", "1"));
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_get_tree_from_key_data(ctx, key.get(), "k", "2"));
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_get_tree_from_key_data(ctx, hidden.get(), "k", "1"));
    EXPECT_EQ(1, tvk_map_is_request_delete(hidden.get()));
    hidden->presence = 0;
    EXPECT_EQ(0, tvk_map_is_request_delete(hidden.get()));
    tvk_map_datatree_set_operation(hidden.get(), TVK_OPERATION_REPLACE);
    EXPECT_EQ(1, tvk_map_is_request_replace(hidden.get()));
    char path[] = "a/b//c/";
    char *last = nullptr;
    EXPECT_STATUS(TVK_OK, tvk_map_get_last_token_from_path(ctx, path, &last));
    EXPECT_STREQ("c", last);
    EXPECT_EQ(1, tvk_map_trim_strcmpbeg("  abc", " \tab"));
    EXPECT_EQ(0, tvk_map_trim_strcmpbeg("  abc", "b"));
}

}  // namespace
