#include <cstring>

#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_datatree.h"
#include "tvk_map_walk.h"
#include "tvk_map_xpath.h"

using namespace tvk::test;

namespace {

constexpr char kNs[] = "urn:n";
constexpr std::uint32_t kContainer = TVK_XPATH_CONTAINER, kAnotherLeaf = TVK_XPATH_LEAF_INSTANCE;
constexpr unsigned kData = TVK_HAS_DATA;

// Nodes as an addition makes them.
Node made(const std::string &tag, const Text &data = {}) {
    return data ? leaf(tag, *data, kNs) : node(tag, kNs);
}
Node entry(const std::string &key) {
    return made("l")(made("k", key));
}

class Xpath : public MappingTest {
protected:
    qerrno run(tvk_map_ctx own, const Tree &tree, std::uint32_t op, const std::string &xpath,
               std::uint32_t kind = TVK_XPATH_LEAF, const std::string &value = "v") {
        record = {};
        record.root = tree.get();
        record.op = op;
        record.kind = kind;
        value.copy(record.value, sizeof record.value - 1);
        std::strcpy(record.ns, kNs);
        xpath.copy(record.xpath, sizeof record.xpath - 1);
        clear_logs();
        return tvk_map_tree_xpath_operations(own, &record);
    }
    qerrno add(const Tree &tree, const std::string &xpath, std::uint32_t kind = TVK_XPATH_LEAF) {
        return run(ctx, tree, TVK_XPATH_ADD, xpath, kind);
    }

    tvk_map_node_operation record{};
};

TEST_F(Xpath, AddMakesWhatIsMissing) {
    const Node x = made("x", "v"), gone = made("a").op(TVK_OPERATION_DELETE), unmarked = made("k", "1").without(kData);
    const Node deleted = entry("1").op(TVK_OPERATION_DELETE), removed = entry("1").op(TVK_OPERATION_REMOVE);
    const Node in_m = made("m")(made("k", "2"), x), in_1 = entry("1").index(1), both = entry("1")(made("m", "1"));
    const struct {
        const char *why, *xpath;
        Node before, after;
        const char *result;
        std::uint32_t kind = TVK_XPATH_LEAF;
    } rows[] = {
        {"containers", "/a/b/c", root()(made("a")), root()(made("a")(made("b")(made("c")))), "a", kContainer},
        {"empty steps", "//a//b//", root()(made("a")), root()(made("a")(made("b", "v"))), "a"},
        {"an instance", "/a/b", root(), root()(made("a")(made("b").index(1))), "", TVK_XPATH_INSTANCE},
        {"a further leaf", "/a/x/", root()(made("a")(x)), root()(made("a")(x, Node(x).index(2))), "a", kAnotherLeaf},
        {"a slash in a value, no value, an empty one", "/l[k=a/b][m][n=]/x", root(),
         root()(made("l").index(1)(made("k", "a/b"), made("m", ""), made("n", ""), x)), "l"},
        {"values are literal", "/l[k='=[1']/", root(), root()(entry("'=[1'").index(1)), "l"},
        {"containers between lists", "/a/l[k=1]/b/c/m[k=2]/x", root(),
         root()(made("a")(Node(in_1)(made("b")(made("c")(Node(in_m).index(1)))))), "a/l/b/c/m"},
        {"lists in a row", "/a/l[k=1]/m[k=2]/x", root(), root()(made("a")(Node(in_1)(Node(in_m).index(2)))), "a/l/m"},
        {"the entry with the key", "/l[k=2]/x", root()(entry("1"), entry("2")), root()(entry("1"), entry("2")(x)),
         "l[2]"},
        {"any entry has no keys", "/l[]/x", root()(entry("1")), root()(entry("1")(x)), "l"},
        {"all keys must match", "/l[k=1][m=2]/", root()(both), root()(both, entry("1").index(2)(made("m", "2"))),
         "l[2]"},
        {"an unmarked value is one", "/l[k=1]/x", root()(made("l")(unmarked)), root()(made("l")(unmarked, x)), "l"},
        {"deleted entries are absent", "/l[k=1]/x", root()(deleted, removed),
         root()(deleted, removed, entry("1").index(3)(x)), "l[3]"},
        {"deleted containers are not", "/a/x", root()(gone), root()(Node(gone)(x)), "a"},
        {"a character is lost without a leading slash", "ab/x", root(), root()(made("b")(x)), ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        Tree tree = row.before;
        EXPECT_STATUS(TVK_OK, add(tree, row.xpath, row.kind));
        EXPECT_TREE(row.after, tree);
        EXPECT_EQ(*row.result != '\0' ? find(tree, row.result) : tree.get(), record.result);
        EXPECT_EQ(Lines{}, errors());
        tvk_map_forget_children(ctx, nullptr);
    }
    Tree tree = root()(made("l")(unmarked));
    EXPECT_STATUS(TVK_OK, run(ctx, tree, TVK_XPATH_READ, "/l[k=1]/k"));
    EXPECT_STREQ("1", record.value) << "an unmarked value is read, too";
}

TEST_F(Xpath, UnusableRecordsAreRefusedWithoutAWord) {
    const std::string name(49, 'n'), value(299, 'v'), five = "/a/l[k=1][k=1][k=1][k=1][k=1]";
    const std::string xpaths[] = {
        "", "/a/l[k=1]", "/a/l[k=1/x", five + "[k=1]/", "/a/l[" + name + "n]/", "/a/l[k=" + value + "v]/"};
    void (*const faults[])(tvk_map_node_operation &) = {
        [](auto &r) { r.op += 4; },
        [](auto &r) { r.op = 0; },
        [](auto &r) { r.kind = 0; },
        [](auto &r) { r.kind = 5; },
        [](auto &r) { r.ns[0] = '\0'; },
        [](auto &r) { std::memset(r.ns, 'n', sizeof r.ns); },
        [](auto &r) { std::memset(r.xpath, 'x', sizeof r.xpath); },
        [](auto &r) { std::memset(r.value, 'v', sizeof r.value), r.op |= 1; },  // add or modify
    };
    Tree tree = root();
    for (std::uint32_t op = TVK_XPATH_ADD; op <= TVK_XPATH_READ; ++op) {
        for (const std::string &xpath : xpaths) {
            EXPECT_STATUS(TVK_ERR_INVALID, run(ctx, tree, op, xpath)) << xpath;
            EXPECT_EQ(Lines{}, logs());
        }
        for (const auto &fault : faults) {
            run(ctx, tree, TVK_XPATH_NO_ACTION, "/a");
            record.op = op;
            fault(record);
            EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_tree_xpath_operations(ctx, &record)) << &fault - faults;
            EXPECT_EQ(Lines{}, logs());
        }
    }
    EXPECT_STATUS(TVK_ERR_INVALID, add(tree, "[k=/x[" + name + "n]/y")) << "too long once a character is lost";
    EXPECT_TREE(root(), tree);
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_tree_xpath_operations(ctx, nullptr));
    EXPECT_STATUS(TVK_ERR_INVALID, run(ctx, Tree(nullptr), TVK_XPATH_NO_ACTION, "/a"));
    EXPECT_EQ(Lines{"ERR: NULL argument(s) passed!"}, logs());

    Tree largest = root();
    EXPECT_STATUS(TVK_OK, add(largest, five + "/x"));
    EXPECT_STATUS(TVK_OK, add(largest, "/l[" + name + "=" + value + "]/x"));
    EXPECT_EQ(value, find(largest, "l/" + name)->data);
    EXPECT_STATUS(TVK_OK, add(largest, "/" + std::string(998, 'p')));
}

// Inside /ifs/if[K1=A][K2=B]/config of a request.
class XpathOfTokens : public MappingTest {
protected:
    XpathOfTokens() {
        tvk_map_add_to_node_hierarchy(ctx, request_tree.get(), TVK_LEVEL_CONTAINER);
        tvk_map_add_to_node_hierarchy(ctx, find(request_tree, "if"), TVK_LEVEL_LIST);
        tvk_map_add_to_node_hierarchy(ctx, find(request_tree, "if/config"), TVK_LEVEL_CONTAINER);
    }
    std::string build(const std::vector<const char *> &tokens, std::int32_t offset, char *trim = nullptr) {
        char xpath[TVK_MAP_MAX_PATH] = "";
        const auto count = static_cast<std::uint32_t>(tokens.size());
        built = tvk_map_build_xpath_from_tokens(ctx, tokens.data(), count, offset, xpath, trim);
        return xpath;
    }
    Tree request_tree =
        node("ifs", kNs)(node("if")(leaf("K1", "A").key(), leaf("other", "1"), leaf("K2", "B").key(), node("config")));
    qerrno built = TVK_OK;
};

TEST_F(XpathOfTokens, TokensTakeTheKeysOfTheirLevel) {
    char trim[TVK_MAP_MAX_PATH] = "/top";
    EXPECT_EQ("/ifs/if[K1=A][K2=B]/config", build({"/ifs", "/if", "/config"}, 0, trim));
    EXPECT_STREQ("/top/ifs/if/config", trim);
    EXPECT_EQ("/ifs/if/config[K1=A][K2=B]", build({"/ifs", "/if", "/config"}, -1));
    EXPECT_EQ("/ifs[K1=A][K2=B]/if/config", build({"/ifs", "/if", "/config"}, 1));
    EXPECT_EQ("/ifs/if/config", build({"/ifs", "/if", "/config"}, INT32_MAX));
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

TEST_F(XpathOfTokens, WhatDoesNotFitEmptiesTheBuffer) {
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

}  // namespace
