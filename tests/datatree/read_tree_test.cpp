#include <gtest/gtest.h>

#include "allocation_failures.h"
#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_datatree.h"
#include "tvk_map_print.h"

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

TEST_F(Queries, FindsOrDropsTheLastChild) {
    constexpr char kBgp[] = "http://openconfig.net/yang/bgp";
    Tree tree = root()(node("a", kBgp)(node("b"), leaf("c", "1"), leaf("d", "2")));
    qidl_tvk_datatree *last = nullptr;
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_get_last_subtree(ctx, tree.get(), "a", &last));
    EXPECT_EQ(find(tree, "a/d"), last);
    EXPECT_STREQ(nullptr, state->error_xpath);
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_datatree_get_last_subtree(ctx, tree.get(), "a/b/x", &last));
    EXPECT_STREQ("", state->error_xpath);
    for (int i = 0; i < 3; ++i) {  // needs no context; the last one stays
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_remove_last_subtree(nullptr, find(tree, "a")));
    }
    EXPECT_TREE(root()(node("a", kBgp)(node("b")(node("x")))), tree);
}

TEST_F(Queries, CountsChildrenAtAPath) {
    const std::string last_node = "TRC: Checking subtrees of a last node ";
    const struct {
        const char *path;
        qerrno status;
        std::uint32_t count;
        std::string last_log;
    } rows[] = {{"anything", TVK_OK, 1, last_node + "'anything'"},
                {"/r//a/", TVK_OK, 3, last_node + "'a'"},
                {"r/missing", TVK_OK, 1, last_node + "'missing'"},
                {"r/a/leaf/below/it", TVK_OK, 0, "TRC: Checking subtrees of node 'leaf'"},
                {"r/missing/x", TVK_ERR_NOT_FOUND, 99, "ERR: Can't find 'missing' in the datatree!"},
                {"r/a/behind", TVK_ERR_NOT_FOUND, 99, "ERR: Invalid datatree passed!"},
                {"/", TVK_OK, 99, "TRC: Searching subtrees of path '/'"}};
    Tree tree = node("r")(node("a")(node("leaf"), node("x").without(TVK_HAS_TAG), node("behind")));
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path);
        clear_logs();
        std::uint32_t count = 99;
        EXPECT_STATUS(row.status, tvk_map_datatree_get_subtree_num(ctx, tree.get(), row.path, &count));
        EXPECT_EQ(row.count, count);
        EXPECT_EQ(row.last_log, logs().at(logs().size() - 2));
    }
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
    for_each_allocation_failure([this](AllocationFailure &failure) {
        ::testing::internal::CaptureStdout();
        const qerrno status = failure.during([this] { return tvk_map_print_subtrees(tree.get(), 0, 0); });
        EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
        EXPECT_EQ(failure.is_injected(), !::testing::internal::GetCapturedStdout().ends_with("f (-)\n"));
    });
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

TEST_F(Print, InsertInformationIsBounded) {
    const std::string fits(TVK_MAP_INSERT_TEXT - 1, 'x');
    const Pairs keys = {{fits, fits + "x"}, {"2", ""}, {"3", ""}, {"4", ""}, {"5", ""}, {"6", ""}};
    Tree bounded = node("e").insert(TVK_INSERT_AFTER, keys, "value", fits + "x");
    tvk_map_insert_info info{};
    EXPECT_STATUS(TVK_OK, tvk_datatree_get_insert_attribute_info(bounded.get(), &info));
    EXPECT_EQ(std::pair(3u, 5), std::pair(info.position, info.key_count));
    EXPECT_EQ(fits, std::string(info.keys[0].name) + info.keys[0].value + info.keys_str + info.value);
}

}  // namespace
