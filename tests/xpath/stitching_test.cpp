// Xpaths from tokens and the node hierarchy, and what is stitched by them.
#include <algorithm>
#include <cstring>

#include "allocation_failures.h"
#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_lists.h"
#include "tvk_map_walk.h"
#include "tvk_map_xpath.h"

using namespace tvk::test;

namespace {

constexpr char kNs[] = "urn:n";
const std::vector<const char *> kTokens = {"/ifs", "/if", "/config"};

Node entry(const std::string &key) {
    return node("l", kNs)(leaf("k", key));
}

class Stitching : public MappingTest {
protected:
    Stitching() { walk_into(mapping); }

    // /ifs/if[K1=A][K2=B]/config of the request.
    void walk_into(MappingContext &own) {
        tvk_map_add_to_node_hierarchy(own.ctx, request_tree.get(), TVK_LEVEL_CONTAINER);
        tvk_map_add_to_node_hierarchy(own.ctx, find(request_tree, "if"), TVK_LEVEL_LIST);
        tvk_map_add_to_node_hierarchy(own.ctx, find(request_tree, "if/config"), TVK_LEVEL_CONTAINER);
    }
    std::string build(const std::vector<const char *> &tokens, std::int32_t offset, char *trim = nullptr) {
        char xpath[TVK_MAP_MAX_PATH] = "";
        const auto count = static_cast<std::uint32_t>(tokens.size());
        built = tvk_map_build_xpath_from_tokens(ctx, tokens.data(), count, offset, xpath, trim);
        return xpath;
    }
    using Stitch = qerrno (*)(tvk_map_ctx, tvk_map_node_operation *);
    qerrno stitch(Stitch operation, MappingContext &own, const Tree &tree, const std::string &xpath,
                  const char *trim = "/trim") {
        record = {};
        record.root = tree.get();
        record.kind = TVK_XPATH_CONTAINER;
        std::strcpy(record.ns, kNs);
        xpath.copy(record.xpath, sizeof record.xpath - 1);
        std::strcpy(record.trim_path, trim);
        clear_logs();
        return operation(own.ctx, &record);
    }
    // After a failure. The pointer is dead: nothing may release it, the context least.
    static void expect_nothing_pending(tvk_map_request_state &own) {
        EXPECT_TRUE(own.pending_trim_path == nullptr && own.pending_list_node == nullptr &&
                    own.pending_hierarchy_kind == 0);
        EXPECT_NE(nullptr, own.pending_hierarchy_path);
    }

    Tree request_tree =
        node("ifs", kNs)(node("if")(leaf("K1", "A").key(), leaf("other", "1"), leaf("K2", "B").key(), node("config")));
    tvk_map_node_operation record{};
    qerrno built = TVK_OK;
};

TEST_F(Stitching, TokensTakeTheKeysOfTheirLevel) {
    char trim[TVK_MAP_MAX_PATH] = "/top";
    EXPECT_EQ("/ifs/if[K1=A][K2=B]/config", build(kTokens, 0, trim));
    EXPECT_STREQ("/top/ifs/if/config", trim);
    EXPECT_EQ("/ifs/if/config[K1=A][K2=B]", build(kTokens, -1));
    EXPECT_EQ("/ifs[K1=A][K2=B]/if/config", build(kTokens, 1));
    EXPECT_EQ("/ifs/if/config", build(kTokens, INT32_MAX));
    EXPECT_EQ("[K1=A][K2=B]", build({nullptr, nullptr}, 0));
    state->hierarchy[0].kind = TVK_LEVEL_LIST;
    state->hierarchy[0].node = find(request_tree, "if");
    EXPECT_EQ("/ifs", build({"/ifs"}, 0)) << "the outermost level never has keys";
    find(request_tree, "if/K1")->presence ^= TVK_HAS_DATA;
    EXPECT_EQ("/if[K1=][K2=B]", build({"/if"}, 1));
    for (qidl_tvk_datatree *key : {find(request_tree, "if/K1"), find(request_tree, "if/K2")}) {
        key->presence ^= TVK_HAS_IS_KEY;
    }
    EXPECT_EQ("/if", build({"/if"}, 1));

    Tree bare = node("if"), produced = node("if")(leaf("k", "1"), leaf("m", "2"));
    state->hierarchy[1].node = bare.get();
    for (const auto &[propagating, key_state] : {std::pair(0u, 0u), {2u, 0u}, {1u, 0u}, {0u, 2u}}) {
        state->delete_walk_active = propagating;
        state->list_key_state = key_state;
        EXPECT_EQ("/if", build({"/if"}, 1)) << "the stack is empty";
        tvk_map_util_itree_stack_push(ctx, produced->subtrees, 2, 0);
        EXPECT_EQ(propagating == 1 || key_state != 0 ? "/if[k=1][m=2]" : "/if", build({"/if"}, 1));
        tvk_map_util_itree_stack_pop(ctx);
    }
    EXPECT_TREE(node("if")(leaf("k", "1").key(), leaf("m", "2").key()), produced);
    EXPECT_EQ(Lines{}, errors());
}

TEST_F(Stitching, WhatDoesNotFitEmptiesTheBuffer) {
    const std::string full = "/" + std::string(998, 'x'), keyed = "/" + std::string(986, 'x');
    char trim[TVK_MAP_MAX_PATH] = "";
    EXPECT_EQ(keyed + "[K1=A][K2=B]", build({keyed.c_str()}, 1, trim));
    EXPECT_STATUS(TVK_OK, built);
    EXPECT_EQ("", build({(keyed + "x").c_str(), "/more"}, 1)) << "which ends the path";
    EXPECT_STATUS(TVK_OK, built);
    EXPECT_EQ("", build({full.c_str(), "/"}, 5));
    EXPECT_STATUS(TVK_ERR_NO_MEMORY, built);
    EXPECT_EQ("/aaaaaaaaaaaaaaaa", build({"/aaaaaaaaaaaaaaaa", "/more"}, 5, trim));
    EXPECT_STREQ("", trim);
    EXPECT_STATUS(TVK_OK, built);
}

TEST_F(Stitching, AddsALeafOnceAndOnlyInAGet) {
    Tree value = leaf("x", std::string(400, 'v')), bare = node("x"), tree = root();
    const char *const tokens[] = {"/ifs", "/if", "/l", "/mtu"};
    const auto add = [&](const Tree &leaf, const std::string &ns, std::uint32_t count = 4) {
        return tvk_map_add_leaf_from_xpath(ctx, leaf.get(), tree.get(), nullptr, ns.c_str(), tokens, count);
    };
    EXPECT_STATUS(TVK_OK, add(value, kNs)) << "an edit";
    EXPECT_TREE(root(), tree);
    for (const std::uint32_t type : {TVK_REQUEST_GET, TVK_REQUEST_GET_CONFIG}) {
        request.type = type;
        EXPECT_STATUS(TVK_ERR_INVALID, add(value, std::string(250, 'n')));
        clear_logs();
        EXPECT_STATUS(TVK_OK, add(type == TVK_REQUEST_GET ? value : bare, std::string(249, 'n')));
    }
    EXPECT_EQ((Lines{"ERR: Node already present in the path /ifs/if/l[K1=A][K2=B]/mtu\n", "TRC: xpath already added"}),
              logs());
    const Node keyed = node("l").index(1)(leaf("K1", "A"), leaf("K2", "B"), leaf("mtu", std::string(299, 'v')));
    EXPECT_TREE(root()(node("ifs", std::string(249, 'n'))(node("if")(keyed))), tree);
    EXPECT_STATUS(TVK_ERR_INVALID, add(value, kNs, 3)) << "the keyed step ends the path";
}

TEST_F(Stitching, ContainersOpenAnOutputEntry) {
    Tree tree = root();
    for (int i = 0; i < 2; ++i) {
        EXPECT_STATUS(TVK_OK, stitch(tvk_map_stitch_container_to_list, mapping, tree, "/l[k=1]/"));
        EXPECT_EQ("TRC: Set trim path to: /trim", logs().back());
        const auto lines = logs();
        EXPECT_EQ(i == 1, std::count(lines.begin(), lines.end(), "TRC: list already exists") == 1);
    }
    EXPECT_TREE(root()(entry("1").index(1)), tree);
    ASSERT_EQ(2, state->output_list_count);
    for (const auto &output : {state->output_list[0], state->output_list[1]}) {
        EXPECT_EQ(find(tree, "l"), output.list_node);
        EXPECT_STREQ("/trim", output.trim_path);
        EXPECT_STREQ("/ifs/if/config", output.hierarchy_path);
        EXPECT_EQ(TVK_LEVEL_CONTAINER, output.hierarchy_kind);
    }
    for (int key = 2; key <= 49; ++key) {
        ASSERT_STATUS(TVK_OK,
                      stitch(tvk_map_stitch_container_to_list, mapping, tree, "/l[k=" + std::to_string(key) + "]/"));
    }
    for (int i = 1; i < 50; ++i) {
        EXPECT_EQ(std::to_string(i), find(*state->output_list[i].list_node, "k")->data) << "it moved with its siblings";
    }
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, stitch(tvk_map_stitch_container_to_list, mapping, tree, "/l[k=1]/"));
    EXPECT_EQ("ERR: error -1426940416.", logs().back());
    expect_nothing_pending(*state);

    // The pointer that the failure left never comes into the list.
    tvk_remove_from_output_list_ctx(ctx, nullptr, nullptr);
    while (tvk_map_remove_from_node_hierarchy(ctx, nullptr) == TVK_OK) {
    }
    const int open = state->output_list_count;
    EXPECT_STATUS(TVK_OK, stitch(tvk_map_stitch_container_to_list, mapping, tree, "/l[k=1]/"));
    EXPECT_EQ(nullptr, state->output_list[open].hierarchy_path);
    EXPECT_EQ(nullptr, state->pending_hierarchy_path);
}

TEST_F(Stitching, ListsStayPending) {
    Tree tree = root();
    for (const char *key : {"1", "2"}) {  // the former path is released, the former trim path stays
        EXPECT_STATUS(TVK_OK,
                      stitch(tvk_map_stitch_list_to_list, mapping, tree, std::string("/l[k=") + key + "]/", key));
        EXPECT_STREQ("1", state->pending_trim_path);
        EXPECT_EQ("TRC: Set trim path to: 1", logs().back());
        EXPECT_EQ(find(tree, std::string("l[") + key + "]"), state->pending_list_node);
        EXPECT_STREQ("/ifs/if/config", state->pending_hierarchy_path);
        EXPECT_EQ(TVK_LEVEL_CONTAINER, state->pending_hierarchy_kind);
    }
    EXPECT_EQ(0, state->output_list_count);

    for (const Stitch operation : {tvk_map_stitch_list_to_list, tvk_map_stitch_container_to_list}) {
        EXPECT_STATUS(TVK_ERR_INVALID, stitch(operation, mapping, tree, "/l[k=1]"));
        EXPECT_EQ("ERR: List operation failed -1426939904. /trim", logs().back());
        EXPECT_STREQ("1", state->pending_trim_path) << "what is pending stays";
        clear_logs();
        EXPECT_STATUS(TVK_ERR_INVALID, operation(ctx, nullptr));
        EXPECT_EQ(Lines{"ERR: NULL arguments passed"}, logs());
        std::memset(record.trim_path, 't', sizeof record.trim_path);
        EXPECT_STATUS(TVK_ERR_INVALID, operation(ctx, &record));
        EXPECT_DEATH(operation(nullptr, &record), "src/tvk_map_callbacks:.*Assertion `NULL != ctx' failed");
    }
}

TEST_F(Stitching, AutomaticStitchingIsForReads) {
    const Node stitched = root()(node("l", kNs).index(1)(leaf("K1", "A"), leaf("K2", "B")));
    const std::string full = "/" + std::string(998, 'x');
    const char *const tokens[] = {"/l", full.c_str()};
    for (const std::uint32_t type : {TVK_REQUEST_GET, TVK_REQUEST_GET_CONFIG, TVK_REQUEST_EDIT_CONFIG, 9u}) {
        MappingContext own(type);
        walk_into(own);
        Tree tree = root();
        const auto stitch_tokens = [&](const std::string &ns, const char *const *first) {
            return tvk_map_auto_stitch_list_to_list(own.ctx, nullptr, tree.get(), ns.c_str(), first, 1);
        };
        const bool is_read = type == TVK_REQUEST_GET || type == TVK_REQUEST_GET_CONFIG;
        clear_logs();
        EXPECT_STATUS(TVK_OK, stitch_tokens(kNs, tokens));
        EXPECT_TREE(is_read ? stitched : root(), tree);
        EXPECT_STREQ(is_read ? "/l" : nullptr, own.state->pending_trim_path);
        EXPECT_EQ(is_read ? tree->subtrees : nullptr, own.state->pending_list_node);
        const Lines all = logs(), said(all.begin(), std::min(all.begin() + 2, all.end()));
        EXPECT_EQ(is_read ? (Lines{"TRC: Stitch xpath: /l[K1=A][K2=B]/", "TRC: Stitch trim_path: /l"}) : Lines{}, said);
        EXPECT_STATUS(is_read ? TVK_ERR_INVALID : TVK_OK, stitch_tokens(std::string(250, 'n'), tokens));
        EXPECT_STATUS(is_read ? TVK_ERR_INVALID : TVK_OK, stitch_tokens(kNs, tokens + 1)) << "no room for the keys";
        EXPECT_EQ(is_read ? tree->subtrees : nullptr, own.state->pending_list_node);
        tvk_map_remove_from_node_hierarchy(own.ctx, nullptr);
        tvk_map_remove_from_node_hierarchy(own.ctx, nullptr);
        EXPECT_STATUS(is_read ? TVK_ERR_NO_MEMORY : TVK_OK, stitch_tokens(kNs, tokens + 1)) << "no room for the slash";
    }
}

TEST_F(Stitching, AllocationFailuresLeaveNothingPending) {
    for (const Stitch operation : {tvk_map_stitch_list_to_list, tvk_map_stitch_container_to_list}) {
        for_each_allocation_failure([&](AllocationFailure &failure) {
            MappingContext own;
            walk_into(own);
            Tree tree = root();
            ASSERT_STATUS(TVK_OK, stitch(tvk_map_stitch_list_to_list, own, tree, "/l[k=1]/"));
            tvk_map_free_trim_path_list_ctx(own.ctx);
            const auto status = failure.during([&] { return stitch(operation, own, tree, "/l[k=2]/"); });
            const bool is_open = own.state->output_list_count == 1;
            EXPECT_EQ(status == TVK_OK && operation == tvk_map_stitch_container_to_list, is_open);
            if (status == TVK_ERR_NOT_FOUND || status == TVK_ERR_NO_MEMORY) {
                expect_nothing_pending(*own.state);
            } else if (!is_open) {
                EXPECT_STATUS(failure.is_injected() ? TVK_ERR_INVALID : TVK_OK, status);
                EXPECT_STREQ("/ifs/if/config", own.state->pending_hierarchy_path);
                EXPECT_STREQ(status == TVK_OK ? "2" : "1", find(*own.state->pending_list_node, "k")->data);
            }
        });
    }
}

}  // namespace
