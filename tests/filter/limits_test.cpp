// Tests the phases with large trees, with deep ones, and without memory.
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <functional>

#include "context.h"
#include "kel_memory.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_filter.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"

using namespace tvk::test;

namespace {

// Containers without branches, made without recursion.
Tree chain(int levels) {
    auto *top = static_cast<qidl_tvk_datatree *>(kel_named_calloc_(1, sizeof(qidl_tvk_datatree), "chain", 0));
    qidl_tvk_datatree *last = top;
    for (int level = 1;; ++level) {
        last->tag = tvk_strdup("n", "chain");
        last->presence = TVK_HAS_TAG;
        last->schema_info.node_type = TVK_NODE_TYPE_CONTAINER;
        last->schema_info.flags = TVK_SCHEMA_INFO_HAS_NODE_TYPE;
        if (level == levels) {
            return Tree(top);
        }
        last->subtrees = static_cast<qidl_tvk_datatree *>(kel_named_calloc_(1, sizeof(qidl_tvk_datatree), "chain", 0));
        last->subtree_count = 1;
        last->presence |= TVK_HAS_SUBTREES;
        last = last->subtrees;
    }
}

int depth(const Tree &tree) {
    int levels = 1;
    for (const qidl_tvk_datatree *at = tree.get(); at->subtree_count > 0; at = at->subtrees) {
        ++levels;
    }
    return levels;
}

// Runs work on a stack that 100,000 nested calls would not fit.
void on_small_stack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, 512 * 1024));
    pthread_t thread;
    const auto run = [](void *arg) -> void * {
        (*static_cast<std::function<void()> *>(arg))();
        return nullptr;
    };
    ASSERT_EQ(0, pthread_create(&thread, &attributes, run, &work));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

class Limits : public MappingTest {};

TEST_F(Limits, DepthDoesNotRecurse) {
    const Tree filter = chain(100000), response = chain(100001);
    on_small_stack([&] {
        EXPECT_EQ(0u, tvk_map_con_fil_check_con_node(ctx, response.get()));
        tvk_map_dfs_filter_mark(ctx, filter.get(), response.get());
    });
    EXPECT_EQ(100001, depth(response));
    on_small_stack([&] { tvk_map_dfs_filter_sweep(ctx, response.get()); });
    EXPECT_EQ(100001, depth(response)) << "the last filter node keeps all below";
}

TEST_F(Limits, TheContainerPhaseEndsWithItsTable) {
    const Tree filter = chain(60), response = chain(60);
    tvk_map_dfs_filter_con(ctx, filter.get(), response.get());
    int kept = 0;
    for (const qidl_tvk_datatree *at = response.get(); at->node_kind == TVK_NODE_KIND_KN; at = at->subtrees) {
        ++kept;
    }
    EXPECT_EQ(TVK_MAP_MAX_FILTER_LEVELS - 1, kept);
}

class FilterPaths : public MappingTest {};

TEST_F(FilterPaths, OnePathDownAFilter) {
    const struct {
        const char *path;
        int partial_ok;
        qerrno status, marked_status;
        const char *marked = "";
    } rows[] = {
        {"c/a", 0, TVK_OK, TVK_OK, "c/a"},
        {"c/a/below", 0, TVK_OK, TVK_OK, "c/a"},
        {"/c//e/name/", 0, TVK_OK, TVK_OK, "c/e/name"},
        {"c/e/other", 0, TVK_OK, TVK_ERR_NOT_FOUND},
        {"c/e", 0, TVK_ERR_NOT_FOUND, TVK_ERR_NOT_FOUND},
        {"c/e", 1, TVK_OK, TVK_OK},
        {"c", 2, TVK_ERR_NOT_FOUND, TVK_ERR_NOT_FOUND},
        {"c/b", 1, TVK_ERR_NOT_FOUND, TVK_ERR_NOT_FOUND},
        {"c/behind", 1, TVK_ERR_NOT_FOUND, TVK_ERR_NOT_FOUND},
        {"", 1, TVK_ERR_NOT_FOUND, TVK_ERR_NOT_FOUND},
    };
    for (const auto &row : rows) {
        for (const int mark_leaf : {0, 1, 2}) {
            const Tree filter = node("top")(node("c")(
                node("a"), node("e")(leaf("name", "1").key(), leaf("id", "1").key()), node({}), node("behind")));
            const std::string before = show(filter);
            SCOPED_TRACE(row.path + std::string(" ") + std::to_string(mark_leaf));
            EXPECT_STATUS(mark_leaf == 0 ? row.status : row.marked_status,
                          tvk_map_datatree_filter_get_response(ctx, filter.get(), row.path, row.partial_ok, mark_leaf));
            const bool is_marked = mark_leaf == 1 && *row.marked != '\0';
            if (is_marked) {
                EXPECT_NE(0, find(filter, row.marked)->presence & TVK_HAS_IS_KEY);
            } else {
                EXPECT_EQ(before, show(filter));
            }
        }
    }
}

std::string visits;  // tags and levels, as visited

std::uint32_t visit(tvk_map_ctx ctx, kel_queue *stack, const tvk_map_dfs_elem *element) {
    visits += element->node->tag + std::to_string(element->level) + " ";
    return tvk_map_dfs_process_con_node(ctx, stack, element);
}

TEST_F(FilterPaths, TemplateWalkTakesTheLastChildFirstAndStopsAtContentMatch) {
    const Tree tree = node("t")(node("a")(leaf("x", "1").type(6), node("y")), node("b")(node("z").type(1)));
    visits.clear();
    EXPECT_EQ(1u, tvk_map_dfs_template(ctx, tree.get(), tvk_map_dfs_sweep_stack_push, visit));
    EXPECT_EQ("t1 b2 z3 a2 y3 x3 ", visits);
    EXPECT_EQ(1u, tvk_map_con_fil_check_con_node(ctx, tree.get()));
    find(tree, "a/x")->schema_info.flags = 0;
    EXPECT_EQ(0u, tvk_map_con_fil_check_con_node(ctx, tree.get()));
    find(tree, "a")->schema_info.node_type = 6;
    find(tree, "a")->schema_info.flags = TVK_SCHEMA_INFO_HAS_NODE_TYPE;
    visits.clear();
    EXPECT_EQ(1u, tvk_map_dfs_template(ctx, tree.get(), tvk_map_dfs_sweep_stack_push, visit));
    EXPECT_EQ("t1 b2 z3 a2 ", visits) << "what is left on the stack is released";
}

TEST_F(FilterPaths, PairsOfOtherNamesAreForcedByExactlyOne) {
    const Tree source = node("a");
    const Tree target = node("b");
    const Tree nameless = root();
    kel_queue stack;
    EXPECT_EQ(1u, tvk_map_dfs_stack_init(&stack));
    EXPECT_EQ(0u, tvk_map_dfs_mark_stack_push(ctx, &stack, source.get(), target.get(), 1, 2));
    EXPECT_EQ(0u, tvk_map_dfs_con_stack_push(ctx, &stack, nameless.get(), nameless.get(), 1, 7, 0));
    EXPECT_EQ(0u, tvk_map_dfs_mark_stack_push(ctx, &stack, source.get(), nullptr, 1, 1));
    EXPECT_NE(0, kel_queue_empty(&stack));
    EXPECT_EQ(1u, tvk_map_dfs_mark_stack_push(ctx, &stack, source.get(), source.get(), 1, 0));
    EXPECT_EQ(1u, tvk_map_dfs_con_stack_push(ctx, &stack, nameless.get(), target.get(), 3, 7, 1));
    EXPECT_EQ(2u, tvk_platform_live_blocks("TVK DFS Mark ELEM"));
    EXPECT_EQ(80u, tvk_platform_live_bytes("TVK DFS Mark ELEM"));
    tvk_map_dfs_stack_free(&stack);
}

}  // namespace
