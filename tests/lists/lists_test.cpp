#include <gtest/gtest.h>

#include "context.h"
#include "kel_memory.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_lists.h"
#include "tvk_string.h"

using namespace tvk::test;

namespace {

char kNs[] = "urn:new";

// Writable texts, as the operations take them; null when there is none.
struct Argument {
    std::string text;
    bool given;
    Argument(const char *value) : text(value != nullptr ? value : ""), given(value != nullptr) {}
    char *get() { return given ? text.data() : nullptr; }
};

class FindList : public MappingTest {
protected:
    const Tree tree = node("r", "n")(
        node("a")(leaf("v", "1"), leaf("v", "2", "o"), leaf("v", "3").without(TVK_HAS_DATA), node({}), leaf("w", "4")),
        node("l")(leaf("k", "1")), node("l", "o")(leaf("k", "2")), node("l").without(TVK_HAS_TAG)(leaf("k", "3")),
        node("m").with(TVK_HAS_SUBTREES));
};

TEST_F(FindList, AChildByValueOrByNamespace) {
    Tree broken = node("b").with(TVK_HAS_SUBTREES);
    broken->subtree_count = 1;
    const struct {
        const char *why;
        const qidl_tvk_datatree *parent;
        const char *tag, *data, *ns;
        std::string found;  // empty when nothing is
        qerrno status;
    } rows[] = {{"by tag, the first", find(tree, "a"), "v", nullptr, "n", "a/v", TVK_OK},
                {"no later one for its namespace", find(tree, "a"), "v", nullptr, "o", "", TVK_ERR_INVALID},
                {"by value, whatever the namespace", find(tree, "a"), "v", "2", "n", "a/v[2]", TVK_OK},
                {"a value without its bit", find(tree, "a"), "v", "3", nullptr, "", TVK_ERR_INVALID},
                {"behind a child without a tag", find(tree, "a"), "w", nullptr, nullptr, "", TVK_ERR_INVALID},
                {"no tag asked for", find(tree, "a"), nullptr, nullptr, nullptr, "", TVK_ERR_INVALID},
                {"no children", find(tree, "m"), "v", nullptr, nullptr, "", TVK_ERR_INVALID},
                {"no array", broken.get(), "v", nullptr, nullptr, "", TVK_ERR_NOT_FOUND}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const qidl_tvk_datatree *found = nullptr;
        EXPECT_STATUS(row.status, tvk_map_datatree_get_subtree(row.parent, &found, row.tag, row.data, row.ns));
        EXPECT_EQ(row.found.empty() ? nullptr : find(tree, row.found), found);
    }
    for (const auto &[value, status] : {std::pair("1", TVK_OK), {"3", TVK_ERR_INVALID}}) {  // 3: no tag by its bit
        Argument key = "k", wanted = value, path = "x/l/";
        const qidl_tvk_datatree *list = tree.get();
        EXPECT_STATUS(status, tvk_map_iterate_list(ctx, &list, key.get(), wanted.get(), path.get(), nullptr));
        EXPECT_EQ("x/l/", path.text) << "is not cut";
    }
    Argument text = "k";
    const qidl_tvk_datatree *at = broken.get();
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_iterate_list(ctx, &at, text.get(), text.get(), text.get(), nullptr));
    EXPECT_EQ(Lines{"ERR: Failed to get subtrees!"}, errors());
}

TEST_F(FindList, AValueIsLookedForBelowTheLastOfEachTag) {
    const Tree twice = node("r")(node("a")(leaf("v", "1")), node("a")(leaf("v", "2")));
    EXPECT_STATUS(TVK_OK, tvk_map_get_subtree_from_key(ctx, twice.get(), "a/v", "2", nullptr));
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_get_subtree_from_key(ctx, twice.get(), "a/v", "1", nullptr));
}

TEST_F(FindList, TheWayToAListStopsAtItsParent) {
    const struct {
        const char *path, *ns, *reached;
        qerrno status;
    } rows[] = {{"/a//v/", "n", "a", TVK_OK},
                {"l", nullptr, "", TVK_OK},
                {"l", "o", "", TVK_ERR_INVALID},
                {"a/v", "o", "", TVK_ERR_INVALID},
                {"a/v/x", nullptr, "a/v", TVK_ERR_INVALID},
                {"a/w", nullptr, "a", TVK_ERR_INVALID},
                {"", nullptr, "", TVK_ERR_INVALID}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path);
        MappingContext fresh;
        Argument path = row.path, ns = row.ns;
        const qidl_tvk_datatree *at = tree.get();
        EXPECT_STATUS(row.status, tvk_map_get_list(fresh.ctx, &at, path.get(), ns.get()));
        EXPECT_EQ(find(tree, row.reached), at);
        EXPECT_STREQ(row.status == TVK_OK ? nullptr : "", fresh.state->error_xpath);
    }
}

class SearchOrAdd : public MappingTest {
protected:
    static qerrno search_or_add(MappingContext &at, const Tree &tree, Argument path, Argument value,
                                const qidl_tvk_datatree **found) {
        Argument name = "k", ns = "n";
        return tvk_map_search_or_add_list(at.ctx, tree.get(), found, path.get(), value.get(), name.get(), ns.get());
    }
    const qidl_tvk_datatree *entry = nullptr;
};

TEST_F(SearchOrAdd, TheFirstTrimPathStaysUntilReset) {
    Tree tree = root();
    EXPECT_STATUS(TVK_OK, search_or_add(mapping, tree, "l", "1", &entry));
    EXPECT_STATUS(TVK_OK, search_or_add(mapping, tree, "m", "1", &entry));
    EXPECT_STREQ("l", state->pending_trim_path);
    EXPECT_EQ("TRC: trim_path copy fails new m old l", logs().at(logs().size() - 2));
    EXPECT_STATUS(TVK_ERR_INVALID, search_or_add(mapping, tree, "l", "2", &entry)) << "no list node to add below";

    char hierarchy[] = "/c";
    state->pending_list_node = tree.get();
    state->pending_hierarchy_path = hierarchy;
    state->pending_hierarchy_kind = TVK_LEVEL_LIST;
    for (; state->output_list_count < 2; ++state->output_list_count) {
        state->output_list[state->output_list_count].trim_path = tvk_strdup("l", "test");
    }
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_datatree_reset_trim_path_ctx(ctx));
    EXPECT_EQ("ERR: Cleaning faulty stack 2.", errors().back());
    EXPECT_EQ(0, state->output_list_count);
    EXPECT_TRUE(state->pending_list_node == nullptr && state->pending_trim_path == nullptr &&
                state->pending_hierarchy_path == nullptr && state->pending_hierarchy_kind == 0);
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_reset_trim_path_ctx(ctx));
    EXPECT_EQ("TRC: trim path free failed", logs().back());
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_datatree_reset_trim_path_ctx(nullptr));
}

TEST_F(SearchOrAdd, AnEntryOfAnotherNamespaceIsAnother) {
    const Node one = node("l", "n").index(1)(leaf("k", "1")), other = node("l", "o").index(2)(leaf("k", "2"));
    const Tree tree = root()(one, other);
    EXPECT_STATUS(TVK_OK, search_or_add(mapping, tree, "l", "2", &entry));
    EXPECT_TREE(root()(one, other, node("l", "n").index(3)(leaf("k", "2"))), tree);
    EXPECT_EQ(&tree->subtrees[2], entry);
}

class ErrorPath : public MappingTest {
protected:
    static qerrno record(MappingContext &at, const std::vector<std::pair<std::uint32_t, const Tree *>> &levels) {
        at.state->hierarchy_depth = 0;
        for (const auto &[kind, tree] : levels) {
            tvk_map_hierarchy_level &level = at.state->hierarchy[at.state->hierarchy_depth++];
            level.kind = kind;
            level.node = tree->get();
        }
        return tvk_oc_error_path(at.ctx);
    }
    const Tree top = node("interfaces", "urn:i"), config = node("config", "urn:other");
};

TEST_F(ErrorPath, NamesLevelsAndKeys) {
    const std::string longest(968, 'x');
    const struct {
        const char *why;
        std::uint32_t kind;
        Node level;
        std::string element;  // empty when nothing can be recorded
    } rows[] = {
        {"container", TVK_LEVEL_CONTAINER, node("e")(leaf("a", "1").key()), "ns1:e/"},
        {"no keys", TVK_LEVEL_LIST, node("e")(leaf("a", "1")), "ns1:e/"},
        {"keys, by the bit alone, among others", TVK_LEVEL_LIST,
         node("e").without(TVK_HAS_SUBTREES)(leaf("a", "1").with(TVK_HAS_IS_KEY), leaf("b", "2"), leaf("c", "3").key()),
         "ns1:e[a = '1' and c = '3']/"},
        {"other kinds run on", 3, node("e"), "ns1:e"},
        {"a key without a value", TVK_LEVEL_LIST, node("e")(node("a").key()), ""},
        {"999 characters in all", TVK_LEVEL_CONTAINER, node(longest), "ns1:" + longest + "/"},
        {"1000 characters", TVK_LEVEL_CONTAINER, node("x" + longest), ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        clear_logs();
        MappingContext fresh;
        const Tree level = row.level;
        const bool recorded = !row.element.empty();
        const std::string path = "ns1:interfaces/" + row.element + "ns1:config/";
        EXPECT_STATUS(recorded ? TVK_OK : TVK_ERR_NO_MEMORY,
                      record(fresh, {{1, &top}, {row.kind, &level}, {1, &config}}));
        EXPECT_STREQ(recorded ? path.c_str() : nullptr, fresh.state->error_xpath);
        EXPECT_STREQ(recorded ? "urn:i" : nullptr, fresh.state->error_xpath_ns);
        EXPECT_EQ(recorded ? Lines{} : Lines{"ERR: Memory allocation failed \n"}, logs());
    }
}

class Namespaces : public MappingTest {};

TEST_F(Namespaces, OfAValueLeavesTheFormerOneToItsHolder) {
    const Tree tree = node("top", "urn:old")(leaf("a", "1"));
    char *former = nullptr;
    for (const char *ns : {"urn:first", "urn:second"}) {
        former = find(tree, "a")->data_ns;
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_data_ns(ctx, tree.get(), "top/a", ns));
    }
    EXPECT_STREQ("urn:first", former);
    kel_named_free(former);
    EXPECT_TREE(node("top", "urn:old")(leaf("a", "1").data_ns("urn:second")), tree);
}

TEST_F(Namespaces, RestampsWithTextsOfTheTree) {
    const Tree tree = node("top", "urn:old")(node("a")(node("x"), node("b")(leaf("c", "1"))));
    // The new namespace may be that of a node on the path, or a part of it.
    std::string path = "a/b/c";
    for (const auto &[part, expected] : {std::pair(0, "Urn:old"), {4, "old"}}) {
        find(tree, "a")->ns[0] = 'U';
        char *ns = find(tree, "a")->ns + part;
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_update_namespace(ctx, tree.get(), path.data(), ns, 0));
        EXPECT_STREQ(expected, find(tree, "a/b/c")->ns);
    }
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_datatree_update_namespace(ctx, tree.get(), path.data(), nullptr, 0));
    const Tree unmarked = node("top", "urn:old").without(TVK_HAS_SUBTREES)(node("b"));
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_update_namespace(ctx, unmarked.get(), std::string("b").data(), kNs, 0));
    EXPECT_STREQ(kNs, unmarked->subtrees[0].ns) << "the count alone says that there are children";
    const Tree ended = node("top", "urn:old")(node("b")(node("c")));
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_update_namespace(ctx, ended.get(), std::string("b/x").data(), kNs, 1));
    EXPECT_STREQ("urn:old", find(ended, "b")->ns) << "nothing stands at the end of the path";
}

TEST_F(Namespaces, ValidatesAValueNamespace) {
    char expected[] = "urn:types";
    const struct {
        Node node;
        std::uint32_t type;
        int optional;
        qerrno status;
        Lines errors;
    } kCases[] = {
        {leaf("t", "v").data_ns("urn:types"), 1, 0, TVK_OK, {}},
        {leaf("t", "v").data_ns("urn:other"),
         1,
         1,
         TVK_ERR_NAMESPACE,
         {"ERR: mismatched data_ns: urn:other and ns: urn:types"}},
        {leaf("t", "v").with(TVK_HAS_DATA_NS), 1, 1, TVK_ERR_NAMESPACE, {"ERR: data ns is NULL!"}},
        {leaf("t", "v"), 1, 1, TVK_OK, {}},
        {leaf("t", "v"), 1, 0, TVK_ERR_NAMESPACE, {"ERR: There is no data ns for this node!"}},
        {leaf("t", "v"), 10, 0, TVK_ERR_NAMESPACE, {"ERR: There is no data ns for this node!"}},
        {node("t"), 10, 0, TVK_OK, {}},
        {node("t"), 0, 0, TVK_OK, {}},
        {node("t").op(TVK_OPERATION_REMOVE), 1, 0, TVK_OK, {}},
        {node("t"), 1, 0, TVK_ERR_NAMESPACE, {"ERR: There is no data ns for this node!"}},
    };
    for (const auto &test : kCases) {
        MappingContext own{test.type};
        const Tree tree = test.node;
        clear_logs();
        EXPECT_STATUS(test.status, tvk_map_validate_data_ns(own.ctx, tree.get(), expected, test.optional));
        EXPECT_EQ(test.errors, errors());
        EXPECT_EQ(test.status != TVK_OK, own.state->error_xpath != nullptr);
    }
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_validate_data_ns(ctx, nullptr, expected, 0));
    EXPECT_EQ("ERR: Invalid arguments passed!", errors().back());
}

}  // namespace
