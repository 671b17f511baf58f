// Tests the state of the walk: hierarchy, output list, current list, request schema, instance-tree stack, lookups.

#include "kel_memory.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"
#include "walk_test.h"

namespace tvk::test {

namespace {

class StateTest : public MappingTest {
protected:
    qerrno push(qidl_tvk_datatree *node, std::uint32_t kind = TVK_LEVEL_CONTAINER) {
        return tvk_map_add_to_node_hierarchy(ctx, node, kind);
    }
    qerrno pop(const qidl_tvk_datatree *node = nullptr) { return tvk_map_remove_from_node_hierarchy(ctx, node); }
    qerrno add_output(const char *trim_path, const char *path, std::uint32_t kind) {
        state->pending_trim_path = tvk_strdup(trim_path, "test output");
        state->pending_hierarchy_path = tvk_strdup(path, "test output");
        state->pending_hierarchy_kind = kind;
        return tvk_add_to_output_list_ctx(ctx);
    }
};

TEST_F(StateTest, HierarchyHoldsFiftyLevels) {
    Tree tree = root()(node("a"), node("b").op(TVK_OPERATION_CREATE).without(TVK_HAS_OPERATION));
    qidl_tvk_datatree *a = &tree->subtrees[0], *b = &tree->subtrees[1];
    std::string path;
    for (int level = 0; level < 50; ++level) {
        ASSERT_STATUS(TVK_OK, push(a));
        EXPECT_EQ(path += "/a", state->hierarchy[level].path);
    }
    EXPECT_STATUS(TVK_ERR_NO_MEMORY, push(b, 7));  // no kind of level
    EXPECT_EQ(nullptr, state->create_node);
    EXPECT_STATUS(TVK_ERR_NO_MEMORY, push(b, TVK_LEVEL_LIST));
    while (state->hierarchy_depth > 0) {
        EXPECT_EQ(b, state->create_node);
        EXPECT_STATUS(TVK_OK, pop(a));
    }
    EXPECT_STATUS(TVK_ERR_INVALID, pop(b));
    EXPECT_EQ(nullptr, state->create_node);
    EXPECT_EQ(0u, state->create_operation);
    EXPECT_STATUS(TVK_ERR_INVALID, push(nullptr));
}

TEST_F(StateTest, HierarchyKeepsOfAPathWhatFits) {
    const std::string full(998, 'x'), almost(997, 'y');  // "/" and the terminator beside
    Tree tree = root()(node(full), node(almost), node("a"));
    push(&tree->subtrees[0]);
    EXPECT_STATUS(TVK_OK, push(&tree->subtrees[2]));
    EXPECT_EQ("/" + full, state->hierarchy[1].path);
    const std::string exceeds = "ERR: strcat_s exceeds available space \n";
    EXPECT_EQ((Lines{exceeds, exceeds + " /" + full + " a"}), errors());
    pop();
    pop();
    push(&tree->subtrees[1]);
    EXPECT_STATUS(TVK_OK, push(&tree->subtrees[2]));  // only the separator fits
    EXPECT_EQ("/" + almost + "/", state->hierarchy[1].path);
}

TEST_F(StateTest, OutputListHoldsFiftyEntries) {
    Tree entry = node("entry");
    EXPECT_STATUS(TVK_OK, add_output(nullptr, nullptr, 1));
    EXPECT_STATUS(TVK_OK, add_output("", nullptr, 1));
    kel_named_free(state->pending_trim_path);
    EXPECT_EQ(0, state->output_list_count);
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_remove_from_output_list_ctx(ctx));
    for (int i = 0; i < 50; ++i) {
        state->pending_list_node = entry.get();
        ASSERT_STATUS(TVK_OK, add_output("/trim", "/a", TVK_LEVEL_LIST));
        EXPECT_EQ(nullptr, state->pending_trim_path);
        EXPECT_EQ(nullptr, state->pending_list_node);
    }
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, add_output("/more", "/a", TVK_LEVEL_LIST));
    EXPECT_STREQ("/more", state->pending_trim_path);
    EXPECT_EQ(entry.get(), state->output_list[49].list_node);
}

TEST_F(StateTest, CurrentListKeepsItsSlotsBelowItself) {
    int held = 0;
    const auto update = [&](const char *path, qerrno status, const char *becomes, bool keeps) {
        ctx->current_list_slot_first[1] = ctx->current_list_slot_second[1] = &held;
        ctx->current_list_slot_count = 2;
        tvk_platform_fail_allocation(status == TVK_OK ? 0 : 1, 1);
        EXPECT_STATUS(status, tvk_map_update_current_list_node(ctx, path));
        EXPECT_STREQ(becomes, ctx->current_list_node);
        EXPECT_EQ(keeps ? 2u : 0u, ctx->current_list_slot_count) << path;
        EXPECT_EQ(keeps ? &held : nullptr, ctx->current_list_slot_first[1]);
        EXPECT_EQ(keeps ? &held : nullptr, ctx->current_list_slot_second[1]);
    };
    update("/a/list", TVK_OK, "/a/list", false);
    update("/a/list/x", TVK_OK, "/a/list/x", true);
    update("/a/list", TVK_OK, "/a/list", false);
    update("/a/listx", TVK_ERR_NO_MEMORY, "/a/list", false);
}

TEST_F(StateTest, SchemaGrowsWhereTheWalkIs) {
    Tree tree = root()(node("a", "urn:a"), node("b", "urn:b"), node("c", "c"), node("d", "urn:d"));
    const auto add = [&](int i, std::uint32_t kind) {
        EXPECT_STATUS(TVK_OK, tvk_map_add_node_to_req_tree_schema(ctx, &tree->subtrees[i], kind));
    };
    const auto ascend = [](tvk_map_ctx own) { tvk_map_update_req_tree_schema(own); };
    const auto descended = [](Node node) { return node.with(TVK_HAS_ATTRIBUTES); };
    add(0, TVK_SCHEMA_LEAF);  // the first is descended into whatever its kind
    add(1, TVK_SCHEMA_LEAF);
    add(2, 1);
    ascend(ctx);
    add(2, 1);  // its namespace is its tag: there already, and not descended into
    add(3, TVK_SCHEMA_LEAF);
    add(3, 1);  // found again, and descended into now
    add(1, TVK_SCHEMA_LEAF);
    ascend(ctx);
    ascend(ctx);
    ascend(ctx);  // the root is its own parent
    add(1, 1);
    const Node b = node("b", "urn:b"), d = node("d", "urn:d")(b);
    EXPECT_TREE(descended(node("root"))(descended(node("a", "urn:a"))(b, node("c", "c"), d), b),
                *state->req_tree_schema);
    tvk_map_free_req_tree_schema(ctx);
    add(3, 1);  // starts anew
    EXPECT_TREE(descended(node("root"))(node("d", "urn:d")), *state->req_tree_schema);
}

TEST_F(StateTest, InstanceStackCountsLevelsOfPlainItems) {
    Tree plain = root()(node("a"), node({})), owned = root()(node(TVK_LIST_INSTANCE_TAG)(leaf("x", "1")), node("two"));
    tvk_map_itree_item unset{}, *item = &unset;
    const auto level = [&](std::uint32_t wanted) {
        item = &unset;
        EXPECT_STATUS(TVK_OK, tvk_map_util_itree_stack_peak_level(ctx, wanted, &item));
        return item->extra;
    };
    EXPECT_EQ(0u, level(1));
    tvk_map_util_itree_stack_push(ctx, &plain->subtrees[0], 2, 1);
    tvk_map_util_itree_stack_push(ctx, std::exchange(owned->subtrees, nullptr), 2, 2);
    EXPECT_EQ(0u, level(0));
    tvk_map_util_itree_stack_push(ctx, &plain->subtrees[1], 1, 3);
    EXPECT_EQ(1u, level(1));
    EXPECT_EQ(3u, level(2));
    tvk_map_util_itree_stack_push(ctx, nullptr, 0, 4);
    EXPECT_EQ(0u, level(3));
    tvk_map_util_itree_stack_peak(ctx, &item);
    EXPECT_EQ(4u, item->extra);
    tvk_map_util_itree_stack_pop(ctx);
    kel_named_free(item);  // without nodes: only taken off
    for (std::uint32_t size = 3; size > 0; --size) {
        EXPECT_EQ(size, tvk_map_util_itree_stack_size(ctx));
        tvk_map_util_itree_stack_pop(ctx);
    }
    EXPECT_EQ(nullptr, state->itree_stack);
    EXPECT_STREQ("a", plain->subtrees[0].tag);
    state->path_record_count = 1;
    std::string("a/b").copy(state->path_record[0], 3);
    tvk_map_util_itree_stack_pop(ctx);
    EXPECT_EQ(0u, state->path_record_count);
    EXPECT_EQ(std::string(TVK_MAP_MAX_PATH, '\0'), std::string(state->path_record[0], TVK_MAP_MAX_PATH));
    for (int i = 0; i < 50; ++i) {
        tvk_map_util_itree_stack_push(ctx, plain->subtrees, 2, 0);
    }
    EXPECT_DEATH(tvk_map_util_itree_stack_push(ctx, plain->subtrees, 2, 0), "item_count < TVK_MAP_MAX_ITREE_ITEMS");
    while (tvk_map_util_itree_stack_size(ctx) > 0) {
        tvk_map_util_itree_stack_pop(ctx);  // before the nodes go
    }
}

TEST_F(StateTest, LooksUpValuesBelowALevel) {
    Tree tree = node("a")(node("b")(node("x")), leaf("n", "0").without(TVK_HAS_TAG), leaf("n", "1"), leaf("n", "2"),
                          node("b")(leaf("x", "3"), node("y")(leaf("z", "4"))));
    Tree on_stack = root()(leaf("s", "6").without(TVK_HAS_TAG), leaf("n", "7"));
    push(tree.get());
    tvk_map_util_itree_stack_push(ctx, on_stack->subtrees, 2, 0);
    char *value = nullptr;
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_get_node_info(ctx, "/a", "s", &value));
    state->list_key_state = 1;  // now the stack is looked at, too
    EXPECT_STATUS(TVK_OK, tvk_map_get_node_info(ctx, "/a", "s", &value));
    EXPECT_STREQ("6", value);
    EXPECT_STATUS(TVK_OK, tvk_map_get_node_info(ctx, "/a", "n", &value));
    EXPECT_STREQ("1", value);  // the level's own comes first
    qidl_tvk_datatree *found = nullptr;
    EXPECT_STATUS(TVK_OK, tvk_map_dfs_get_child_match(ctx, "/a", "b", "x", &value, &found));
    EXPECT_EQ(nullptr, value);  // the first match, though it has no value
    EXPECT_EQ(&tree->subtrees[0].subtrees[0], found);
    EXPECT_STATUS(TVK_OK, tvk_map_get_node_info_inv_thresh_static(ctx, "/a", "b", "y", "z", &value));
    EXPECT_STREQ("4", value);
    tvk_map_util_itree_stack_pop(ctx);
}

}  // namespace

}  // namespace tvk::test
