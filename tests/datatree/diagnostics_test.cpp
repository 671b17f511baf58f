#include <gtest/gtest.h>

#include <cstdio>

#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_diagnostics.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"
#include "tvk_map_print.h"
#include "tvk_map_walk.h"
#include "tvk_map_xpath.h"
#include "tvk_platform_control.h"

using namespace tvk::test;

namespace {

class Queries : public MappingTest {};

TEST_F(Queries, TrimsBehindTheFirstOccurrence) {
    Tree entry = node("e");
    qidl_tvk_datatree *at = nullptr;
    const char *path = "a/b/c/b/c/d";
    char trim[] = "b/c";
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_process_list_ctx(ctx, &at, &path));
    EXPECT_STREQ("a/b/c/b/c/d", path) << "no output entry is open";
    state->output_list[0] = {entry.get(), trim, nullptr, 0};
    state->output_list_count = 1;
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_process_list_ctx(ctx, &at, &path));
    EXPECT_EQ(entry.get(), at);
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_datatree_trim_path(ctx, &path, "x"));
    EXPECT_STREQ("/b/c/d", path);
    EXPECT_EQ((Lines{"TRC: original path : 'a/b/c/b/c/d", "TRC: trimmed path /b/c/d", "ERR: original path : '/b/c/d",
                     "ERR: trimmed path /b/c/d"}),
              logs());
    state->output_list[0] = {};
}

class Print : public MappingTest {
protected:
    const Node entry = node("a", "urn:a").op(TVK_OPERATION_CREATE).insert(TVK_INSERT_FIRST);
    const Node match = leaf("b", "1").op(TVK_OPERATION_MERGE).attribute("x", "y").attribute("z", "");
    const Tree tree = root().without(TVK_HAS_SUBTREES)(
        Node(entry)(Node(match).kind(TVK_NODE_KIND_KA),
                    leaf("c", "2").op(9).insert(TVK_INSERT_BEFORE, {{"k", "v"}, {"l", "w"}})),
        node("d").op(TVK_OPERATION_REMOVE).insert(TVK_INSERT_AFTER, {}, "v"),
        leaf("e", "3").kind(TVK_NODE_KIND_DN).without(TVK_HAS_NODE_KIND | TVK_HAS_DATA),
        node("f").insert(4).kind(TVK_NODE_KIND_TREE_TRAVERSE));
};

std::string printed(const Tree &tree, std::uint32_t depth, int namespace_mode) {
    ::testing::internal::CaptureStdout();
    EXPECT_STATUS(TVK_OK, tvk_map_print_subtrees(tree.get(), depth, namespace_mode));
    return ::testing::internal::GetCapturedStdout();
}

TEST_F(Print, ListsWhatIsSetWithBlanksAsTheyAre) {
    EXPECT_EQ(
        "    a (create) (insert=first)\n"
        "        b : 1 (merge) x=y z= (ka)\n"
        "        c : 2 (-) (insert=before) (key) (k=v)(l=w)\n"
        "    d (remove) (insert=after) (value=v)\n"
        "    e (dn)\n"
        "    f (-)\n",
        printed(tree, 1, 0));
    EXPECT_EQ("a (urn:a)\n    b (urn:a) : 1\n    c (urn:a) : 2\nd ((null))\ne ((null))\nf ((null))\n",
              printed(tree, 0, 1));
}

TEST_F(Print, TracesTheSamePiecesButForTheBlankOfAnOperation) {
    const auto traced = [this](const Tree &top) {
        clear_logs();
        std::string text = tvk_map_trace_subtrees(ctx, top.get(), 0, 0) == TVK_OK ? "" : "failed ";
        for (const std::string &line : logs()) {
            text += line.substr(line.starts_with("TRC: ") ? 5 : 0);
        }
        return text;
    };
    EXPECT_EQ("HN: (null)a(create) (insert=first)\n    b : 1(merge) x=y z= (ka)\n", traced(tree).substr(0, 64));
    EXPECT_EQ("failed HN: fERR: Tag name is not available! (=====)", traced(node("f")(node({}))));
}

TEST_F(Print, ListsAnyDepth) {
    const Tree deep = root();
    std::string path, expected;
    for (int level = 0; level < 100; ++level) {
        path += "n/";
        expected += std::string(4 * static_cast<std::size_t>(level), ' ') + "n\n";
    }
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_path(ctx, deep.get(), path.c_str(), "n", nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(expected, printed(deep, 0, 0));
}

TEST_F(Print, InsertInformationIsBounded) {
    const std::string fits(TVK_MAP_INSERT_TEXT - 1, 'x');
    const Pairs keys = {{fits, fits + "x"}, {"2", ""}, {"3", ""}, {"4", ""}, {"5", ""}, {"6", ""}};
    Tree bounded = node("e").insert(TVK_INSERT_AFTER, keys, "value", fits + "x");
    tvk_map_insert_info info{};
    EXPECT_STATUS(TVK_OK, tvk_datatree_get_insert_attribute_info(bounded.get(), &info));
    EXPECT_EQ(std::pair(3u, 5), std::pair(info.position, info.key_count));
    EXPECT_EQ(fits, std::string(info.keys[0].name) + info.keys[0].value + info.keys_str + info.value);
}

class Diagnostics : public MappingTest {};
using DiagnosticsDeathTest = Diagnostics;

TEST_F(Diagnostics, OperationsOfANodeAreThoseWithTheirBit) {
    for (const std::uint32_t operation : {TVK_OPERATION_REPLACE, TVK_OPERATION_DELETE, TVK_OPERATION_REMOVE}) {
        const Tree marked = node("n").op(operation), unmarked = node("n").op(operation).without(TVK_HAS_OPERATION);
        EXPECT_EQ(operation == TVK_OPERATION_REPLACE, tvk_map_is_request_replace(marked.get()) == 1);
        EXPECT_EQ(operation != TVK_OPERATION_REPLACE, tvk_map_is_request_delete(marked.get()) == 1);
        EXPECT_EQ(0, tvk_map_is_request_replace(unmarked.get()) + tvk_map_is_request_delete(unmarked.get()));
    }
}

TEST_F(Diagnostics, TheFrameworksPrinterIsAskedWhenItIsOn) {
    const Tree tree = node("a")(leaf("b", "1"));
    EXPECT_STATUS(TVK_OK, tvk_gpb_datatree_trace_internal(&ctx->log_filter, tree.get(), "tree", 1, 1, 0));
    const Lines printed = logs();
    for (const std::uint32_t enabled : {0u, 1u}) {
        clear_logs();
        mapping.context.print_enabled = enabled;
        EXPECT_STATUS(TVK_OK, tvk_map_print_datatree_internal(ctx, tree.get(), "tree", 1, 1, 0));
        EXPECT_EQ(enabled != 0 ? printed : Lines{}, logs());
    }
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
