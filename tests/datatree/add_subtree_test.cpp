#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "allocation_failures.h"
#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_datatree.h"
#include "tvk_platform_control.h"

using namespace tvk::test;

namespace {

constexpr char kNs[] = "urn:n";

Node b(const std::string &data = "old") {
    return leaf("b", data, kNs);
}

class AddSubtree : public MappingTest {
protected:
    qerrno add(const Tree &parent, const char *data, int append = 0, int flags = 0,
               const qidl_tvk_datatree *as = nullptr) {
        return tvk_map_datatree_add_subtree_flagged(ctx, parent.get(), "b", kNs, data, as, &out, append, flags);
    }
    qidl_tvk_datatree *out = nullptr;
};

TEST_F(AddSubtree, MakesAndLogsANewNodeStepByStep) {
    Tree parent = root();
    Tree as = node("t").op(TVK_OPERATION_CREATE).kind(TVK_NODE_KIND_KA).insert(TVK_INSERT_BEFORE, {{"id", "7"}});
    EXPECT_STATUS(TVK_OK, add(parent, "1", 1, TVK_ADD_MARK_TREE_TRAVERSE, as.get()));
    char array[64];
    std::snprintf(array, sizeof array, "TRC: Setting updated subtree array (%p).", static_cast<void *>(out));
    const Lines made = {"TRC: Allocating a new subtree array.",
                        "TRC: Setting tag name 'b'.",
                        "TRC: Setting node data '1'.",
                        "TRC: Setting operation '2'.",
                        "TRC: Setting insert",
                        "TRC: Setting operation '3'.",
                        "TRC: Setting tree tarverse '5'.",
                        "TRC: Setting subtree_index '1'.",
                        array};
    EXPECT_EQ(made, logs());
    clear_logs();
    state->build_flags = TVK_BUILD_FILTERED;
    EXPECT_STATUS(TVK_OK, add(parent, nullptr, 7));
    EXPECT_EQ("TRC: Expanding subtree array.", logs().at(0));
    EXPECT_EQ(1u, state->added_node_count) << "the first child of a parent is not counted";
    const Node first = b("1").op(TVK_OPERATION_CREATE).kind(5).index(1).insert(TVK_INSERT_BEFORE, {{"id", "7"}});
    EXPECT_TREE(root()(first, node("b", kNs).index(2)), parent);
}

TEST_F(AddSubtree, FindsTheChildThatIsThere) {
    const Node removed = b().op(TVK_OPERATION_REMOVE), other = b().ns("urn:o");
    constexpr int kTag = TVK_ADD_MATCH_TAG_ONLY, kOnPath = TVK_ADD_TEMPLATE_ON_PATH;
    const struct {
        const char *why;
        std::vector<Node> before;
        int flags;
        bool with_template;
        int found;  // -1: a new one is added
        bool takes_data;
    } rows[] = {
        {"the first of its tag and namespace", {leaf("a", "old", kNs), other, b(), b()}, 0, false, 2, true},
        {"or of its tag", {other, b()}, kTag, false, 0, true},
        {"without a namespace not even then", {node("b").data("old")}, kTag, false, -1, true},
        {"the presence bit of the tag counts", {b().without(TVK_HAS_TAG)}, 0, false, -1, true},
        {"instances give way to a plain one", {b().index(1), b().index(2), b(), b()}, 0, false, 2, true},
        {"else the last instance, with its data", {b().index(1), b().index(2)}, 0, false, 1, false},
        {"with a template the first", {b().index(1), b()}, 0, true, 0, true},
        {"but not on a path", {b().index(1), b().index(2)}, kOnPath, true, 1, false},
        {"a removed one is gone", {b().op(TVK_OPERATION_REMOVE).without(TVK_HAS_OPERATION)}, kOnPath, false, -1, true},
        {"but in a replace only", {removed, b()}, 0, false, 0, true},
    };
    Tree as = node("t").kind(TVK_NODE_KIND_KA);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        Tree parent = root().children(row.before);
        EXPECT_STATUS(TVK_OK, add(parent, "new", 0, row.flags, row.with_template ? as.get() : nullptr));
        std::vector<Node> after = row.before;
        const std::size_t at = row.found < 0 ? after.size() : static_cast<std::size_t>(row.found);
        if (row.takes_data) {
            after.resize(std::max(at + 1, after.size()), b());
            after[at].data("new");
        }
        EXPECT_TREE(root().children(after), parent);
        EXPECT_EQ(&parent->subtrees[at], out);
    }
}

TEST_F(AddSubtree, ArgumentsMayStandInTheTreeThatChanges) {
    Tree parent = root()(b("0123").kind(TVK_NODE_KIND_KN));
    EXPECT_STATUS(TVK_OK, add(parent, parent->subtrees->data + 2));
    for (int i = 0; i < 100; ++i) {
        EXPECT_STATUS(TVK_OK, add(parent, parent->subtrees->data, 1, 0, parent->subtrees));
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_subtree_with_data(ctx, parent.get(), parent->subtrees, 1));
    }
    EXPECT_TREE(b("23").kind(TVK_NODE_KIND_KN).index(200), parent->subtrees[199]);
    EXPECT_TREE(b("23").index(201), parent->subtrees[200]);
    EXPECT_EQ(0u, state->added_node_count) << "not counted outside a filtered read";
    for (const int count : {0, 3, -1}) {
        Tree claims_children = root().with(TVK_HAS_SUBTREES);
        claims_children->subtree_count = count;
        EXPECT_STATUS(TVK_OK, add(claims_children, "1"));
        EXPECT_TREE(root()(b("1")), claims_children);
    }
}

TEST_F(AddSubtree, LeavesOutWhatThePlatformExcludes) {
    Tree parent = root();
    const std::pair<std::uint32_t, std::uint32_t> rows[] = {
        {7, TVK_REQUEST_EDIT_CONFIG}, {8, TVK_REQUEST_ADD_8}, {18, TVK_REQUEST_ADD_15}, {18, TVK_REQUEST_GET}};
    for (const auto &[router, type] : rows) {
        SCOPED_TRACE(router);
        MappingContext fresh(type);
        clear_logs();
        tvk_platform_set_router_type(router);
        const bool refused = type != TVK_REQUEST_GET;
        EXPECT_STATUS(refused ? TVK_ERR_UNSUPPORTED : TVK_OK,
                      tvk_map_datatree_add_path(fresh.ctx, parent.get(), "vrrp/id", kNs, "1", nullptr, nullptr, 0));
        EXPECT_EQ("TRC: End", logs().back());
        EXPECT_EQ(refused ? Lines{"ERR: vrrp not supported on this platform"} : Lines{}, errors());
        EXPECT_STREQ(refused ? "vrrp" : nullptr, fresh.state->error_node_tag);
        EXPECT_STREQ(refused ? "" : nullptr, fresh.state->error_xpath);
    }
    EXPECT_TREE(root(), parent);
    tvk_platform_set_router_type(9);
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_subtree(ctx, parent.get(), "vrrp", kNs, "1", nullptr, nullptr, 0));
    EXPECT_TREE(root()(leaf("vrrp", "1", kNs)), parent);
}

TEST_F(AddSubtree, AFailureLeavesTheParentAsItWas) {
    for (const Node &before : {root(), root()(b(), b())}) {
        for_each_allocation_failure([&](AllocationFailure &failure) {
            Tree parent = before;
            const qerrno status = failure.during([&] { return add(parent, "new", 1); });
            EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
            EXPECT_EQ(failure.is_injected(), show(before) == show(parent));
        });
    }
    Tree found = root()(b());
    tvk_platform_fail_tag("TVK MAP add subtree data");
    clear_logs();
    EXPECT_STATUS(TVK_ERR_NO_MEMORY, add(found, "new"));
    EXPECT_EQ(Lines{"ERR: Failed to duplicate data!"}, logs());
    EXPECT_TREE(root()(node("b", kNs)), found);
}

TEST_F(AddSubtree, SharesOrMovesChildren) {
    const Node entry = b()(leaf("k", "1"));
    Tree source = entry, parent = root();
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_subtree_with_data(ctx, parent.get(), source.get(), 0));
    EXPECT_TREE(root()(entry), parent);
    EXPECT_EQ(source->subtrees, parent->subtrees->subtrees);
    source->subtrees = nullptr;

    const Node emptied = b().with(TVK_HAS_SUBTREES);  // says that it has children, and has none
    for_each_allocation_failure([&](AllocationFailure &failure) {
        Tree from = root()(entry, emptied), to = root();
        EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, failure.during([&] {
            return tvk_map_add_subtrees_from_source_to_target(ctx, to.get(), from.get());
        }));
        EXPECT_TREE(root()(emptied, emptied), from);
        std::vector<Node> moved = {b().index(1)(leaf("k", "1")), b().index(2).with(TVK_HAS_SUBTREES)};
        moved.resize(failure.is_injected() ? static_cast<std::size_t>(to->subtree_count) : 2, root());
        EXPECT_TREE(root().children(moved), to);
        EXPECT_EQ(failure.is_injected(), moved.size() < 2);
    });
    Tree family = root()(node("s", kNs)(entry, entry));
    for (qidl_tvk_datatree *top = family.get(); const int child : {1, 0}) {  // up one level, then onto itself
        EXPECT_STATUS(TVK_OK, tvk_map_add_subtrees_from_source_to_target(ctx, top, child != 0 ? top->subtrees : top));
    }
    EXPECT_TREE(b().index(3)(leaf("k", "1")), family->subtrees[2]);
}

}  // namespace
