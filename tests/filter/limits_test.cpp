// What the phases do with much, with deep and with too little.
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <functional>
#include <set>

#include "allocation_failures.h"
#include "context.h"
#include "kel_memory.h"
#include "tree.h"
#include "tvk_map_filter.h"
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

// Works a phase off as its entry point does, and gives the most elements that were on the stack.
std::uint32_t peak_of(tvk_map_ctx ctx, kel_queue &stack, tvk_map_dfs_process_fp process) {
    std::uint32_t peak = stack.count;
    while (auto *element = static_cast<tvk_map_dfs_elem *>(kel_queue_dequeue(&stack))) {
        process(ctx, &stack, element);
        kel_named_free(element);
        peak = std::max(peak, stack.count);
    }
    return peak;
}

class Limits : public MappingTest {};

TEST_F(Limits, StackHoldsNoMoreThanTheSiblingsOnTheWay) {
    std::vector<Node> leaves(10, node("other"));
    leaves[3] = node("leaf");
    const std::vector<Node> entries(100, node("entry").children(leaves));
    const std::vector<Node> groups(100, node("group").children(entries));
    const Tree response = node("top").children(groups);  // more than 100,000 nodes
    const Tree filter = node("top")(node("group")(node("entry")(node("leaf"))));
    kel_queue stack;
    tvk_map_dfs_stack_init(&stack);
    tvk_map_dfs_mark_stack_push(ctx, &stack, filter.get(), response.get(), 1, 1);
    EXPECT_EQ(199u, peak_of(ctx, stack, tvk_map_dfs_process_mark));
    tvk_map_dfs_sweep_stack_push(ctx, &stack, response.get(), 1);
    EXPECT_EQ(199u, peak_of(ctx, stack, tvk_map_dfs_process_sweep));
    const std::string swept = show(response);
    EXPECT_EQ(1 + 100 + 2 * 100 * 100, std::count(swept.begin(), swept.end(), '\n'));
    EXPECT_EQ(std::string::npos, swept.find("other"));
}

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

TEST_F(Limits, ContainerPhaseEndsWithItsLevelTable) {
    for (const int levels : {49, 50, 60}) {
        const Tree filter = chain(levels), response = chain(levels);
        tvk_map_dfs_filter_con(ctx, filter.get(), response.get());
        tvk_map_dfs_filter_sweep(ctx, response.get());
        EXPECT_EQ(49, depth(response)) << levels << " levels";
    }
}

std::set<std::string> leaf_paths(const qidl_tvk_datatree &tree, const std::string &above = "") {
    const std::string path = above + "/" + tree.tag;
    std::set<std::string> paths;
    for (int i = 0; i < tree.subtree_count; ++i) {
        paths.merge(leaf_paths(tree.subtrees[i], path));
    }
    return tree.data != nullptr ? std::set{path + "=" + tree.data} : paths;
}

TEST_F(Limits, WhenMemoryRunsOutLessIsKeptAndNeverMore) {
    const Node entry = node("unit").type(4)(leaf("name", "A").key().type(1), node("c").type(3)(node("x").type(1)));
    const auto unit = [](const char *name) {
        return node("unit")(leaf("name", name), node("c")(leaf("x", name), leaf("y", "2")));
    };
    using Phase = std::uint32_t (*)(tvk_map_ctx, qidl_tvk_datatree *, qidl_tvk_datatree *);
    for (const Phase phase : {tvk_map_dfs_filter_mark, tvk_map_dfs_filter_con}) {
        std::set<std::string> all;
        for_each_allocation_failure([&](AllocationFailure &failure) {
            const Tree filter = node("top")(node("list").type(3)(entry));
            const Tree response = node("top")(node("list")(unit("A"), unit("B")), leaf("z", "1"));
            failure.during([&] { return phase(ctx, filter.get(), response.get()); });
            tvk_map_dfs_filter_sweep(ctx, response.get());
            const std::set<std::string> kept = leaf_paths(*response);
            all = failure.is_injected() ? all : kept;
            EXPECT_TRUE(std::includes(all.begin(), all.end(), kept.begin(), kept.end())) << show(response);
        });
        EXPECT_TRUE(all.contains("/top/list/unit/c/x=A"));
        EXPECT_FALSE(all.contains("/top/list/unit/c/y=2"));
    }
    for_each_allocation_failure([&](AllocationFailure &failure) {
        const Tree response = node("top")(
            leaf("z", "1"),
            node("list").kind(2)(leaf("a", "1"), node("b").kind(2)(leaf("c", "1"), leaf("d", "1").kind(3))));
        failure.during([&] { return tvk_map_dfs_filter_sweep(ctx, response.get()); });
        const std::set<std::string> kept = leaf_paths(*response);
        EXPECT_TRUE(kept.empty() ? failure.is_injected() : kept == std::set<std::string>{"/top/list/b/d=1"})
            << show(response);
    });
}

}  // namespace
