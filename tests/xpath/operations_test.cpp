#include <cstring>

#include "allocation_failures.h"
#include "context.h"
#include "kel_memory.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_xpath.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"

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
        {"an unmarked value is none", "/l[k=1]/", root()(made("l")(unmarked)),
         root()(made("l")(unmarked), entry("1").index(2)), "l[2]"},
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
    }
}

TEST_F(Xpath, AddFindsWhatIsThere) {
    const Node before = root()(made("a")(made("b", "u"), node({}), made("c")), entry("1"));
    Tree tree = before;
    // The last but one is behind a child without a tag.
    for (const auto &[xpath, result] : {std::pair("/a/b", "a/b"),
                                        {"a/b/", "a/b"},
                                        {"/l[k=1]/", "l"},
                                        {"/l[k=1]/k", "l/k"},
                                        {"/a/l[k=1]/", "a"},
                                        {"/", nullptr}}) {
        EXPECT_STATUS(TVK_ERR_PRESENT, add(tree, xpath, TVK_XPATH_INSTANCE));
        EXPECT_EQ(result != nullptr ? find(tree, result) : nullptr, record.result);
        EXPECT_EQ(Lines{"ERR: Node already present in the path " + std::string(xpath) + "\n"}, logs());
    }
    EXPECT_STATUS(TVK_ERR_INVALID, add(tree, "x")) << "the lost character was all";
    EXPECT_EQ(nullptr, record.result);
    tvk_platform_set_router_type(7);
    EXPECT_STATUS(TVK_ERR_INVALID, add(tree, "/vrrp[k=1]/x")) << "an entry that the platform leaves out";
    EXPECT_TREE(before, tree);
}

TEST_F(Xpath, ModifyAndReadFindANode) {
    Tree tree = root()(entry("1").op(TVK_OPERATION_DELETE)(made("x", "old"), made("e")), made("c")(node({})));
    char *const old = find(tree, "l/x")->data;
    EXPECT_STATUS(TVK_OK, run(ctx, tree, TVK_XPATH_MODIFY, "/l[k=1]/x", TVK_XPATH_LEAF, "new"));
    EXPECT_STREQ("old", old) << "the former value is the caller's";
    kel_named_free(old);
    EXPECT_STATUS(TVK_OK, run(ctx, tree, TVK_XPATH_MODIFY, "l[k=1]/e", TVK_XPATH_LEAF_INSTANCE, "1"));
    EXPECT_TREE(root()(entry("1").op(TVK_OPERATION_DELETE)(made("x", "new"), made("e", "1")), made("c")(node({}))),
                tree);

    Tree read = root()(entry("1")(made("x", std::string(400, 'x')), made("e")));
    EXPECT_STATUS(TVK_OK, run(ctx, read, TVK_XPATH_READ, "/l[k=1]/x"));
    EXPECT_EQ(std::string(299, 'x'), record.value);
    EXPECT_STATUS(TVK_OK, run(ctx, read, TVK_XPATH_READ, "/l[k=1]/e"));
    EXPECT_STREQ("", record.value);
    EXPECT_EQ(find(read, "l/e"), record.result);
    EXPECT_EQ(Lines{}, logs());
    EXPECT_STATUS(TVK_OK, run(ctx, read, TVK_XPATH_NO_ACTION, "/none"));

    for (const auto &[xpath, status] : {std::pair("/l[k=2]/x", TVK_ERR_NOT_PRESENT),
                                        {"/c/x", TVK_ERR_NOT_PRESENT},
                                        {"/c/l[k=1]/", TVK_ERR_NOT_FOUND},
                                        {"//", TVK_ERR_INVALID}}) {
        for (const std::uint32_t op : {TVK_XPATH_MODIFY, TVK_XPATH_READ}) {
            EXPECT_STATUS(status, run(ctx, tree, op, xpath));
            EXPECT_EQ(nullptr, record.result);
            EXPECT_EQ(Lines{"ERR: Node not present in the path " + std::string(xpath) + "\n"}, logs());
        }
    }
    EXPECT_DEATH(run(nullptr, tree, TVK_XPATH_READ, "/none"),
                 "tvk_map_common:[0-9]+: qerrno tvk_map_tree_xpath_operations\\(tvk_map_ctx, struct "
                 "tvk_map_node_operation \\*\\): Assertion `NULL != ctx' failed");
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

TEST_F(Xpath, AnAdditionThatGoesElsewhereMovesTheAttachmentPoint) {
    Tree tree = root()(made("c")(entry("1")));
    state->pending_trim_path = tvk_strdup("x", "test");
    state->pending_list_node = find(tree, "c");
    for (int i = 0; i < 40; ++i) {  // below the pending list node, beside the entry
        ASSERT_STATUS(TVK_OK, add(tree, "/c/l[k=1]/x/new", TVK_XPATH_INSTANCE));
        ASSERT_EQ(find(tree, "c/l"), record.result);
    }
    EXPECT_EQ(41, find(tree, "c")->subtree_count);
    EXPECT_STATUS(TVK_OK, add(tree, "/c/l[k=2]/m[x=3]/x/last"));
    EXPECT_EQ(find(tree, "c/l[2]/m"), record.result);
    EXPECT_STREQ("v", find(tree, "c/last")->data);
    state->pending_list_node = nullptr;
    EXPECT_STATUS(TVK_ERR_INVALID, add(tree, "/c/l[k=1]/x/new")) << "nowhere to go";
    EXPECT_EQ(nullptr, record.result);
}

TEST_F(Xpath, AllocationFailures) {
    const Node whole = root()(made("a")(entry("1").index(1)(made("m", "2"), made("x", "v"))));
    const Node without_key = root()(made("a")(made("l").index(1)(made("m", "2"), made("x", "v"))));
    for_each_allocation_failure([&](AllocationFailure &failure) {
        Tree tree = root();
        const auto status = failure.during([&] { return add(tree, "/a/l[k=1][m=2]/x"); });
        if (status == TVK_OK) {  // a key leaf that is not the last of its step does not count
            EXPECT_TREE(failure.is_injected() ? without_key : whole, tree);
            EXPECT_EQ(find(tree, "a/l"), record.result);
        } else {
            EXPECT_TRUE(status == TVK_ERR_NO_MEMORY || status == TVK_ERR_INVALID);
            EXPECT_EQ(nullptr, record.result);
        }
    });
    for_each_allocation_failure([&](AllocationFailure &failure) {
        Tree tree = root()(made("x"));
        const auto status = failure.during([&] { return run(ctx, tree, TVK_XPATH_MODIFY, "/x"); });
        EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
        EXPECT_EQ(failure.is_injected() ? nullptr : tree->subtrees, record.result);
        EXPECT_TREE(failure.is_injected() ? root()(made("x")) : root()(made("x", "v")), tree);
    });
}

}  // namespace
