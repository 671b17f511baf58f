#include "walk_test.h"

namespace tvk::test {

namespace {

constexpr tmap_child_entry kEntries[] = {{"config", handler<"config">, TMAP_CHILD_PROPAGATE},
                                         {"state", handler<"state">, 0}};
constexpr tmap_node_cont_info kTop{container_handler<"top">, handler<"other">, kEntries, 2, nullptr, kForeign};

constexpr char kUnsupported[] = "ERR: Unsupported tag is specified in the request.";

Node top() {
    return node("top", "urn:top");
}
Node top(std::uint32_t operation) {
    return top().op(operation);
}

class ContainerTest : public WalkTest {
protected:
    qerrno parse(Tree &tree) { return WalkTest::parse(ctx, tree, kTop); }
};

TEST_F(ContainerTest, HandsEachChildToItsHandler) {
    Tree tree = top()(node("state"), leaf("mtu", "9000"), node("config").ns(kForeign));
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(each({"top(top N=3)", "state(state)", "other(mtu = 9000)", "config(config)"}, " at /top"), calls);
    const std::string compared = "ERR: FOOBAR: tag:";
    EXPECT_EQ((Lines{"TRC: Start", compared + "state, ctag:config", compared + "state, ctag:state",
                     compared + "mtu, ctag:config", compared + "mtu, ctag:state", compared + "config, ctag:config",
                     "TRC: End"}),
              logs());
    expect_walk_is_over(*state);
}

TEST_F(ContainerTest, RefusesWhatItCannotWalk) {
    const struct {
        std::uint32_t type;
        Node tree;
        qerrno status;
        std::size_t calls;
        const char *complaint = "", *error_tag = nullptr;
    } kCases[] = {
        {1, top()(node({}), node("a")), TVK_ERR_NOT_FOUND, 1, "ERR: Tag name is not available!"},
        {1, top()(node("a", kForeign), node("b")), TVK_ERR_NAMESPACE, 1, kUnsupported, "a"},
        {0, top()(node("a", kForeign), node("b")), TVK_OK, 2, kUnsupported},
        {1, top(TVK_OPERATION_DELETE).without(TVK_HAS_OPERATION)(node("a")), TVK_OK, 2},
        {1, top()(node("a")).without(TVK_HAS_SUBTREES), TVK_OK, 1},
    };
    for (const auto &test : kCases) {
        const MappingContext own(test.type);
        Tree tree = test.tree;
        SCOPED_TRACE(std::to_string(test.type) + " " + show(tree));
        EXPECT_STATUS(test.status, WalkTest::parse(own.ctx, tree, kTop));
        EXPECT_EQ(test.calls, calls.size());
        EXPECT_EQ(test.complaint, joined(complaints()));
        EXPECT_STREQ(test.error_tag, own.state->error_node_tag);
        EXPECT_STREQ(test.error_tag != nullptr ? "ns1:top/" : nullptr, own.state->error_xpath);
        expect_walk_is_over(*own.state);
    }
    Tree deleted = top(TVK_OPERATION_REMOVE)(node("a")), lost = top().with(TVK_HAS_SUBTREES);
    EXPECT_STATUS(TVK_ERR_INVALID, parse(deleted));
    EXPECT_EQ("TRC: Delete request with subtree present", logs().at(1));
    lost->subtree_count = 2;
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, parse(lost));
    EXPECT_EQ((Lines{"TRC: Start", "ERR: Failed to get subtrees!", "TRC: End"}), logs());
}

TEST_F(ContainerTest, AcceptsADeleteWithContentBelowAPropagationOrKeys) {
    Tree tree = top(TVK_OPERATION_DELETE)(node("state"));
    state->list_key_state = 2;
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(each({"top(top <delete> N=1)", "state(state)"}, " at /top keys=2"), calls);
    state->list_key_state = 0;
    state->delete_walk_active = 1;  // no level of its own then
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(each({"top(top <delete> N=1)", "state(state)"}, " propagating"), calls);
    EXPECT_EQ(1u, state->delete_walk_active);
}

TEST_F(ContainerTest, PropagatesAChildlessDeleteOrRead) {
    const struct {
        std::uint32_t type;
        Node tree;
        Lines propagated;
    } kCases[] = {
        {1, top(TVK_OPERATION_DELETE), {"config(top <remove>)", "other(top <delete>)"}},
        {1, top(TVK_OPERATION_REMOVE), {"config(top <remove>)", "other(top <remove>)"}},
        {1, top(TVK_OPERATION_CREATE), {}},
        {0, top(), {"config(top)", "other(top)"}},
        {10, top(), {"config(top)", "state(top)", "other(top)"}},
    };
    answer("config", TVK_ERR_UNSUPPORTED);  // does not count here
    answer("other", TVK_ERR_UNSUPPORTED);
    for (const qerrno status : {TVK_OK, TVK_ERR_NO_MEMORY}) {
        answer("top", status);  // propagation runs all the same
        for (const auto &test : kCases) {
            const MappingContext own(test.type);
            Tree tree = test.tree;
            EXPECT_STATUS(status, WalkTest::parse(own.ctx, tree, kTop));
            EXPECT_EQ(each(test.propagated, " at /top propagating"), Lines(calls.begin() + 1, calls.end()));
            EXPECT_TREE(Node(test.tree).type(TVK_NODE_TYPE_CONTAINER), tree);
            expect_walk_is_over(*own.state);
        }
    }
}

const Lines kRemovingPass = each({"top(top <remove> N=0) at /top", "config(top <remove>) at /top propagating",
                                  "other(top <remove>) at /top propagating"},
                                 " removing converted");
const Lines kMergingPass =
    each({"top(top <merge> N=2)", "config(config)", "other(mtu = 9000)"}, " at /top merging converted");

TEST_F(ContainerTest, ReplacesInTwoPasses) {
    on("config", [](tvk_map_ctx, qidl_tvk_datatree &node) {
        EXPECT_EQ(nullptr, node.subtrees);  // also where it is the container
        return TVK_OK;
    });
    Tree tree = top(TVK_OPERATION_REPLACE)(node("config"), leaf("mtu", "9000")).without(TVK_HAS_OPERATION);
    const Node merged = top(TVK_OPERATION_MERGE).type(TVK_NODE_TYPE_CONTAINER)(node("config"), leaf("mtu", "9000"));
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(kRemovingPass + kMergingPass, calls);
    EXPECT_TREE(merged, tree);
    expect_walk_is_over(*state);

    answer("top", TVK_ERR_UNSUPPORTED);  // in the first pass: nothing is called in the second
    tree->operation = TVK_OPERATION_REPLACE;
    EXPECT_STATUS(TVK_ERR_UNSUPPORTED, parse(tree));
    EXPECT_EQ(kRemovingPass, calls);
    EXPECT_TREE(merged, tree);
    expect_walk_is_over(*state);
}

TEST_F(ContainerTest, LeavesOutWhatItsHandlerSkips) {
    std::uint32_t skipped_operation = TVK_OPERATION_REMOVE;  // the first pass of a replace
    on("top", [&skipped_operation](tvk_map_ctx, qidl_tvk_datatree &container) {
        return container.operation == skipped_operation ? TVK_SKIP_NODE : TVK_OK;
    });
    Tree replaced = top(TVK_OPERATION_REPLACE)(node("config"), leaf("mtu", "9000"));
    EXPECT_STATUS(TVK_OK, parse(replaced));
    EXPECT_EQ(Lines{kRemovingPass.front()} + kMergingPass, calls);
    expect_walk_is_over(*state);

    skipped_operation = TVK_OPERATION_MERGE;  // the second: the marks of the replace stay
    replaced->operation = TVK_OPERATION_REPLACE;
    EXPECT_STATUS(TVK_OK, parse(replaced));
    EXPECT_EQ(kRemovingPass + Lines{kMergingPass.front()}, calls);
    EXPECT_EQ(2, replaced->subtree_count);
    EXPECT_EQ(TVK_BUILD_REPLACE_MERGING, state->build_flags);
    EXPECT_EQ(1u, state->replace_converted);
    EXPECT_EQ(0, state->hierarchy_depth);
}

TEST_F(ContainerTest, ReadsWholeWhatOnlyComparesValues) {
    request.type = TVK_REQUEST_GET;
    on("other", [this](tvk_map_ctx own, qidl_tvk_datatree &leaf) {
        return tmap_high_leaf_parse(own, &leaf, target.get(), "", 0, handler<"leaf">);
    });
    // A child container that is called for its parent sees no children, though the parent has some.
    on("config", [this](tvk_map_ctx own, qidl_tvk_datatree &container) {
        const tmap_node_cont_info inner{container_handler<"inner">, nullptr, nullptr, 0, nullptr, nullptr};
        return tmap_high_container_parse(own, &container, target.get(), &inner);
    });
    on("top", [](tvk_map_ctx own, qidl_tvk_datatree &) {
        EXPECT_EQ(0x11111110u, own->state->walk_flags) << "what the request keeps";
        own->state->walk_flags = 0;
        return TVK_OK;
    });
    state->walk_flags = UINT32_MAX;  // of a container before this one, and of the request
    Tree compared = top()(leaf("name", "x"));
    EXPECT_STATUS(TVK_OK, parse(compared));
    EXPECT_EQ(each({"top(top N=1)", "other(name = x)", "leaf(name = x)"}, " at /top") +
                  each({"config(top)", "inner(top N=0)", "other(top)", "leaf(top)"}, " at /top propagating"),
              calls);
    EXPECT_EQ(TVK_WALK_CONTENT_MATCH_IN_REQUEST, state->walk_flags);
    answer("top", TVK_OK);
    Tree selected = top()(leaf("name", "x"), node("mtu"));
    EXPECT_STATUS(TVK_OK, parse(selected));
    EXPECT_EQ(5u, calls.size());
    EXPECT_EQ(0x10006u, state->walk_flags);
}

TEST_F(ContainerTest, EndsAtTheFirstFailureAndCopesWithGrowth) {
    Tree tree = top()(node("state"), node("config"), node("a"));
    on("state", [&tree](tvk_map_ctx own, qidl_tvk_datatree &) { return grow(own, *tree); });
    answer("config", TVK_ERR_UNSUPPORTED);
    EXPECT_STATUS(TVK_ERR_UNSUPPORTED, parse(tree));
    EXPECT_EQ(each({"top(top N=3)", "state(state)", "config(config)"}, " at /top"), calls);
    EXPECT_EQ("TRC: End", logs().back());
    expect_walk_is_over(*state);
    answer("config", TVK_OK);
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(1u + 3 + 8, calls.size());
}

TEST_F(WalkTest, MarksLeavesOutsidePropagationAndKeyWork) {
    const struct {
        std::uint32_t type, propagating, keys;
        Node leaf;
        std::uint32_t node_type, walk_flags;
    } kCases[] = {{1, 0, 0, leaf("a", "1"), TVK_NODE_TYPE_SELECTION, 0},
                  {0, 0, 0, leaf("a", "1"), TVK_NODE_TYPE_CONTENT_MATCH, 0x10004},
                  {10, 0, 0, node("a"), TVK_NODE_TYPE_SELECTION, 0x2},
                  {0, 1, 0, leaf("a", "1"), TVK_NODE_TYPE_NONE, 0},
                  {0, 0, 2, node("a"), TVK_NODE_TYPE_NONE, 0}};
    answer("leaf", TVK_ERR_UNSUPPORTED);  // marked whatever it returns
    for (const auto &test : kCases) {
        const MappingContext own(test.type);
        own.state->delete_walk_active = test.propagating;
        own.state->list_key_state = test.keys;
        Tree tree = test.leaf;
        EXPECT_STATUS(TVK_ERR_UNSUPPORTED,
                      tmap_high_leaf_parse(own.ctx, tree.get(), target.get(), "", 0, handler<"leaf">));
        EXPECT_TREE(test.node_type != 0 ? Node(test.leaf).type(test.node_type) : test.leaf, tree);
        EXPECT_EQ(test.walk_flags, own.state->walk_flags);
    }
}

}  // namespace

}  // namespace tvk::test
