#include "allocation_failures.h"
#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"
#include "tvk_platform_control.h"

namespace tvk::test {
namespace {

constexpr char kNs[] = "urn:old";
char kNew[] = "urn:new";

class NamespaceTest : public MappingTest {
protected:
    // Which of the nodes a, a/b and a/b/c are re-stamped, as text.
    static std::string stamped(const Tree &tree) {
        std::string names;
        for (const char *path : {"a", "a/b", "a/b/c"}) {
            names += find(tree, path)->ns == nullptr             ? "-"
                     : std::string(find(tree, path)->ns) == kNew ? find(tree, path)->tag
                                                                 : "";
        }
        return names;
    }
};

Node abc() {
    return node("top", kNs)(node("a")(node("x"), node("b")(leaf("c", "1"))));
}

TEST_F(NamespaceTest, RestampsAlongAPath) {
    const struct {
        const char *path;
        int mode;
        const char *stamped, *reason;
    } kCases[] = {
        {"a/b", 0, "ab", "mode 0 stamps what it meets"},
        {"a/b", 1, "b", "mode 1 only what the path reaches"},
        {"a/b", 2, "ab", "any other mode both"},
        {"a/nothing/b", 0, "ab", "a component that is not there is passed over"},
        {"a/b/nothing", 1, "", "mode 1 wants the last one to be there"},
        {"a/b/c/nothing", 1, "", "below a leaf there is nothing to look among"},
        {"", 0, "", "no component"},
        {"nothing", 2, "", "no match"},
    };
    for (const auto &test : kCases) {
        const Tree tree = abc();
        std::string path = test.path;
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_update_namespace(ctx, tree.get(), path.data(), kNew, test.mode));
        EXPECT_EQ(test.stamped, stamped(tree)) << test.reason;
    }
    const Tree tree = abc();
    std::string too_long(TVK_MAP_MAX_PATH, 'a');
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_update_namespace(ctx, tree.get(), too_long.data(), kNew, 0));
    // The new namespace may be that of a node on the path, or a part of it.
    std::string path = "a/b/c";
    for (const auto &[part, expected] : {std::pair(0, "Urn:old"), {4, "old"}}) {
        find(tree, "a")->ns[0] = 'U';
        char *ns = find(tree, "a")->ns + part;
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_update_namespace(ctx, tree.get(), path.data(), ns, 0));
        EXPECT_STREQ(expected, find(tree, "a/b/c")->ns);
    }
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_datatree_update_namespace(ctx, tree.get(), path.data(), nullptr, 0));
    const Tree unmarked = node("top", kNs).without(TVK_HAS_SUBTREES)(node("b"));
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_update_namespace(ctx, unmarked.get(), std::string("b").data(), kNew, 0));
    EXPECT_STREQ(kNew, unmarked->subtrees[0].ns) << "the count alone says that there are children";
}

TEST_F(NamespaceTest, RestampsOnlyWhatHasANamespace) {
    const Tree tree = abc();
    EXPECT_STATUS(TVK_OK, tvk_map_update_node_namespace(ctx, find(tree, "a"), kNew));
    const Tree bare = node("bare").no_ns();
    EXPECT_STATUS(TVK_ERR_INVALID, tvk_map_update_node_namespace(ctx, bare.get(), kNew));
    EXPECT_EQ(nullptr, bare->ns);
    for_each_allocation_failure([&](AllocationFailure &failure) {
        const Tree own = abc();
        std::string path = "a/b";
        clear_logs();
        const qerrno status =
            failure.during([&] { return tvk_map_datatree_update_namespace(ctx, own.get(), path.data(), kNew, 0); });
        EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
        EXPECT_TRUE(!failure.is_injected() || stamped(own) == "-" || stamped(own) == "a-") << show(own);
        EXPECT_EQ(failure.is_injected() ? "ERR: Failed to update ns!" : "TRC: End", logs().back());
    });
}

TEST_F(NamespaceTest, AttachesAValueNamespace) {
    const struct {
        const char *path;
        qerrno status;
    } kCases[] = {{"top/a/b/c", TVK_OK},
                  {"top/a", TVK_OK},
                  {"/", TVK_OK},
                  {"top", TVK_ERR_NOT_FOUND},
                  {"a/b", TVK_ERR_NOT_FOUND},
                  {"top/a/y/z", TVK_ERR_NOT_FOUND},
                  {"top/a/b/c/d", TVK_ERR_NOT_FOUND}};
    for (const auto &test : kCases) {
        const Tree tree = abc();
        clear_logs();
        EXPECT_STATUS(test.status, tvk_map_datatree_add_data_ns(ctx, tree.get(), test.path, kNew)) << test.path;
        if (test.status == TVK_OK && test.path[1] != '\0') {
            EXPECT_STREQ(kNew, find(tree, std::string(test.path).substr(4))->data_ns);
        }
        const std::string missed = "ERR: Can't find path '" + std::string(test.path) + "' in the datatree!";
        EXPECT_EQ(test.status == TVK_OK ? Lines{} : (Lines{missed, "ERR: Asserting ..."}), errors());
    }
    const Tree tree = abc();
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, tvk_map_datatree_add_data_ns(ctx, tree.get(), "top/a/b/c/d/e", kNew));
    EXPECT_EQ("TRC: Checking subtrees of node 'c'", logs().rbegin()[3]) << "below a leaf the walk ends";
}

TEST_F(NamespaceTest, ValidatesAValueNamespace) {
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

// ---- List entries told apart by their keys ----

TEST_F(NamespaceTest, FindsOrAddsAnEntryByItsKey) {
    const Tree parent = node("parent", kNs);
    const auto enter = [&](const char *ns, const char *value) {
        qidl_tvk_datatree *entry = nullptr;
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_list_node(ctx, parent.get(), "l", ns, "id", value, &entry));
        if (entry->subtrees == nullptr) {
            EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_subtree(ctx, entry, "id", ns, value, nullptr, nullptr, 0));
        }
        return entry;
    };
    EXPECT_EQ(0, enter(kNs, "1")->subtree_index) << "the first of all children is not numbered";
    EXPECT_EQ(2, enter(kNs, "2")->subtree_index);
    EXPECT_EQ(0, enter(kNs, "1")->subtree_index) << "found again";
    EXPECT_EQ(3, enter(kNew, "1")->subtree_index) << "another namespace is another list";
    EXPECT_EQ(3, parent->subtree_count);

    tvk_platform_set_router_type(7);
    for (const auto &[type, status] :
         {std::pair(TVK_REQUEST_EDIT_CONFIG, TVK_ERR_UNSUPPORTED), {TVK_REQUEST_GET, TVK_OK}}) {
        MappingContext own{type};
        qidl_tvk_datatree *entry = parent.get();
        EXPECT_STATUS(status, tvk_map_datatree_add_list_node(own.ctx, parent.get(), "vrrp", kNs, "id", "1", &entry));
        EXPECT_EQ(nullptr, entry) << "left out";
    }
}

TEST_F(NamespaceTest, AsksForAnEntryAtAPath) {
    const Tree tree = node("top", "http://openconfig.net/yang/bgp")(
        node("list")(node("e")(leaf("id", "1")), node("e"), node("e")(leaf("id", "2"))));
    const qidl_tvk_datatree *entry = nullptr;
    EXPECT_EQ(1, tvk_map_is_list_node_already_present(ctx, tree.get(), "list", "", "id", "1", &entry));
    EXPECT_EQ(find(tree, "list/e"), entry);
    EXPECT_EQ(0, tvk_map_is_list_node_already_present(ctx, tree.get(), "list", "", "id", "2", &entry))
        << "hidden by the entry without children";
    EXPECT_EQ(0, tvk_map_is_list_node_already_present(ctx, tree.get(), "made", "", "id", "1", nullptr));
    EXPECT_STREQ("made", find(tree, "made")->tag);

    const qidl_tvk_datatree *list = find(tree, "list");
    EXPECT_EQ(1, tvk_map_is_node_in_subtrees(ctx, list->subtrees, 3, "e", nullptr, 1, nullptr)) << "no data";
    EXPECT_EQ(0, tvk_map_is_node_in_subtrees(ctx, list->subtrees, 3, "e", "1", 1, nullptr));
    EXPECT_EQ(1, tvk_map_is_node_in_subtrees(ctx, list->subtrees, 3, "e", "1", 0, nullptr)) << "by name alone";
    EXPECT_EQ(0, tvk_map_is_node_in_subtrees(ctx, list->subtrees, 0, "e", nullptr, 0, nullptr));
}

}  // namespace
}  // namespace tvk::test
