// Questions about one path or one tree: schema filter, get-response filter, template walk.
#include <gtest/gtest.h>

#include "allocation_failures.h"
#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_filter.h"
#include "tvk_platform_control.h"

using namespace tvk::test;

namespace {

std::string repeated(int count, const std::string &text) {
    return count == 0 ? "" : text + repeated(count - 1, text);
}

Node nest(int levels, const Node &inner) {
    return levels == 0 ? inner : nest(levels - 1, node("n")(inner));
}

class FilterPaths : public MappingTest {};

TEST_F(FilterPaths, SchemaFilter) {
    const Node list = node("top")(node("e")(node("speed")));
    const Node matches = node("top")(node("m")(leaf("x", "1").type(6), leaf("y", "2").type(6)));
    const struct {
        const char *why;
        Node filter;
        std::string path;
        int accept_last;
        bool content;
        std::uint32_t expected;
    } rows[] = {
        {"empty components vanish", node("top")(node("c")(node("x"))), "//c//x/", 0, false, 1},
        {"no component ends at the root", list, "/", 1, false, 1},
        {"accepted for 1 only", list, "e", 2, false, 0},
        {"content match alone", matches, "m/z", 0, false, 0},
        {"selects all where the request has it", matches, "m/z", 0, true, 1},
        {"the 201st component is the last", nest(210, node("n")), repeated(200, "n/") + "/other", 1, false, 0},
        {"that is looked at", nest(210, node("n")), repeated(201, "n/") + "/other", 1, false, 1},
    };
    for (const auto &row : rows) {
        const Tree filter = row.filter;
        state->walk_flags = row.content ? TVK_WALK_CONTENT_MATCH_IN_REQUEST : 0;
        EXPECT_EQ(row.expected, tvk_map_dfs_filter_schema(ctx, filter.get(), row.path.c_str(), row.accept_last))
            << row.why;
    }
    const Tree lost = node("top").with(TVK_HAS_SUBTREES);
    lost->subtree_count = 2;
    EXPECT_EQ(0u, tvk_map_dfs_filter_schema(ctx, lost.get(), "c", 1));
    EXPECT_EQ(0u, tvk_map_dfs_filter_schema(nullptr, lost.get(), "c", 1));
    lost->subtree_count = 0;
    EXPECT_EQ(Lines{}, logs());
}

TEST_F(FilterPaths, SchemaFilterSelectsNothingWhenMemoryRunsOut) {
    for_each_allocation_failure([this](AllocationFailure &failure) {
        const Tree filter = node("top")(node("c")(node("x")));
        EXPECT_EQ(failure.is_injected() ? 0u : 1u,
                  failure.during([&] { return tvk_map_dfs_filter_schema(ctx, filter.get(), "c/x/y", 0); }));
    });
}

TEST_F(FilterPaths, GetResponseFilter) {
    const Node keys_only = node("e")(leaf("name", "A").key(), node("unit").key());
    const Node filter =
        node("top")(keys_only, node("c")(node("x"), node("d")(node("y"))), node("no").with(TVK_HAS_SUBTREES));
    const struct {
        const char *why;
        const char *path;
        int partial_ok, mark_leaf;
        qerrno expected;
        const char *marked = nullptr;
    } rows[] = {
        {"a leaf", "c/x", 0, 0, TVK_OK},
        {"is marked", "c/x", 0, 1, TVK_OK, "c/x"},
        {"whatever follows it", "c/x/y/z", 0, 1, TVK_OK, "c/x"},
        {"an end above a leaf", "c/d", 0, 0, TVK_ERR_NOT_FOUND},
        {"may be enough", "/c//d/", 1, 0, TVK_OK},
        {"nothing of that name", "c/z", 1, 0, TVK_ERR_NOT_FOUND},
        {"no component", "//", 1, 0, TVK_ERR_NOT_FOUND},
        {"keys select all below", "e/any", 0, 0, TVK_OK},
        {"but when a leaf is to be marked", "e/any", 0, 1, TVK_ERR_NOT_FOUND},
        {"a claim of children", "no/x", 0, 0, TVK_ERR_NO_MEMORY},
    };
    for (const auto &row : rows) {
        const Tree tree = filter;
        const Tree expected = filter;
        if (row.marked != nullptr) {
            find(expected, row.marked)->is_key = 1;
            find(expected, row.marked)->presence |= TVK_HAS_IS_KEY;
        }
        SCOPED_TRACE(row.why);
        EXPECT_STATUS(row.expected,
                      tvk_map_datatree_filter_get_response(ctx, tree.get(), row.path, row.partial_ok, row.mark_leaf));
        EXPECT_TREE(expected, tree);
    }
    const Tree leaf_alone = node("top"), tagless = node("top")(node("a"), root(), node("c"));
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_datatree_filter_get_response(ctx, leaf_alone.get(), "a/b", 0, 0));
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_filter_get_response(ctx, leaf_alone.get(), "a/b", 1, 0));
    EXPECT_EQ(Lines{}, logs());
    EXPECT_STATUS(TVK_ERR_NO_MEMORY, tvk_map_datatree_filter_get_response(ctx, leaf_alone.get(), nullptr, 0, 0));
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_datatree_filter_get_response(ctx, tagless.get(), "c", 1, 0));
    EXPECT_EQ((Lines{"ERR: Failed to copy path string!", "ERR: Tag name is not available!"}), errors());
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
