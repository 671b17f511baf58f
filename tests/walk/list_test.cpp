#include <tuple>

#include "walk_test.h"

namespace tvk::test {

namespace {

Node list() {
    return node("list", "http://openconfig.net/list");
}
Node list(std::uint32_t operation) {
    return list().op(operation);
}

class ListTest : public WalkTest {
protected:
    qerrno parse(Tree &tree) { return WalkTest::parse(ctx, tree, info); }

    // Walks a container whose child "list", and what is propagated from it, goes to the list.
    qerrno parse_below_container(tvk_map_ctx own, Tree &tree) {
        const tmap_child_entry entry{"list", handler<"list">, TMAP_CHILD_PROPAGATE};
        on("list", [this](tvk_map_ctx inner, qidl_tvk_datatree &node) {
            return tmap_high_list_parse(inner, &node, target.get(), &info);
        });
        return WalkTest::parse(own, tree, tmap_node_cont_info{nullptr, nullptr, &entry, 1, nullptr, nullptr});
    }

    std::vector<tmap_child_entry> entries{{"name", handler<"name">, TMAP_CHILD_KEY},
                                          {"id", handler<"id">, TMAP_CHILD_KEY},
                                          {"config", handler<"config">, TMAP_CHILD_PROPAGATE},
                                          {"state", handler<"state">, 0}};
    std::vector<tmap_key_entry> keys{{"name", "/list", "config"}, {"id", "/list", "config"}};
    tmap_node_list_info info{handler<"entry">, handler<"other">, entries.data(), keys.data(), 4, 1, "/list", kForeign};
};

TEST_F(ListTest, WalksAnEntry) {
    Tree tree = list(TVK_OPERATION_CREATE)(leaf("name", "a"), node("config"), leaf("mtu", "9000"));
    tvk_map_util_itree_stack_push(ctx, tree->subtrees, 3, 0);  // of a list around this one
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(each({"entry(list <create>)", "name(name = a)", "config(config)", "other(mtu = 9000)"}, " at /list"),
              calls);
    EXPECT_EQ(std::uint32_t{TVK_NODE_TYPE_LIST}, tree->schema_info.node_type);
    EXPECT_STREQ("/list", ctx->current_list_node);
    EXPECT_EQ("TRC: End", logs().back());
    tree->operation = TVK_OPERATION_MERGE;
    for (const qerrno status : {TVK_SKIP_NODE, TVK_ERR_UNSUPPORTED}) {
        answer("entry", status);
        EXPECT_STATUS(status == TVK_SKIP_NODE ? TVK_OK : status, parse(tree));
        EXPECT_EQ((Lines{"entry(list <merge>) at /list"}), calls);
        EXPECT_EQ(std::uint32_t{TVK_OPERATION_CREATE}, ctx->list_operation);
    }
    answer("entry", TVK_OK);
    tree->operation = TVK_OPERATION_REMOVE;
    tree->presence = TVK_HAS_TAG | TVK_HAS_SUBTREES;
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(0u, ctx->list_operation) << "the operation is there only with its bit";
    EXPECT_EQ(1u, tvk_map_util_itree_stack_size(ctx));
    tvk_map_util_itree_stack_pop(ctx);
    expect_walk_is_over(*state);
}

TEST_F(ListTest, WantsAllKeysOrNone) {
    const Node name = leaf("name", "a"), id = leaf("id", "1"), no_name = node("name"), no_id = node("id");
    const struct {
        std::uint32_t type;
        std::uint8_t key_count;
        Node tree;
        bool is_good;
        std::uint32_t propagating = 0, key_state = 0;
    } kCases[] = {
        {1, 2, list()(id, node("config"), name), true},
        {1, 2, list()(name), false},
        {1, 2, list()(name, no_id), false},
        {1, 2, list()(no_name, no_id), false},
        {1, 2, list()(node("config")), false},
        {1, 2, list()(name, id, name), false},  // one too many
        {1, 0, list()(name), false},            // an add request needs keys, also where the list has none
        {2, 2, list()(node("config")), true},
        {2, 2, list()(name), false},
        {0, 2, list()(no_name, no_id), true},
        {0, 2, list()(name, no_id), false},
        {1, 2, list()(name), true, 1, 0},  // not looked at there
        {1, 2, list()(name), true, 0, 2},
    };
    for (const auto &test : kCases) {
        const MappingContext own(test.type);
        Tree tree = test.tree;
        SCOPED_TRACE(std::to_string(test.type) + " with " + std::to_string(test.key_count) + " keys\n" + show(tree));
        info.key_count = test.key_count;
        own.state->delete_walk_active = test.propagating;
        own.state->list_key_state = test.key_state;
        EXPECT_STATUS(test.is_good ? TVK_OK : TVK_ERR_LIST_KEY, WalkTest::parse(own.ctx, tree, info));
        EXPECT_EQ(test.is_good, !calls.empty());
        EXPECT_STREQ(test.is_good ? nullptr : "keytag", own.state->error_node_tag);
        // A key without a value keeps the error path from being recorded, which is a complaint of its own.
        EXPECT_EQ(test.is_good ? 0u : own.state->error_xpath != nullptr ? 1u : 2u, complaints().size());
        EXPECT_EQ(0, own.state->hierarchy_depth);
    }
}

// The copy of a key inside the entry.
TEST_F(ListTest, WantsTheCopyOfAKeyToSayTheSame) {
    const Node name = leaf("name", "a");
    const struct {
        const char *ns;
        Node copy;
        bool is_good;
        std::uint32_t type = TVK_REQUEST_EDIT_CONFIG;
    } kCases[] = {
        {"http://openconfig.net/list", name, true},
        {"http://openconfig.net/list", leaf("name", "b"), false},
        {"http://openconfig.net/list", node("name"), false},
        {"http://openconfig.net/list", leaf("name", "a").op(TVK_OPERATION_DELETE), false},
        {"http://openconfig.net/list", leaf("name", "a").op(TVK_OPERATION_REMOVE), true},
        {"http://openconfig.net/list", leaf("other", "b"), true},
        {"http://openconfig.net/list", leaf("name", "b"), true, TVK_REQUEST_GET},
        {"urn:other", leaf("name", "b"), true},
    };
    for (const auto &test : kCases) {
        const MappingContext own(test.type);
        Tree tree = node("list", test.ns)(name, node("config")(test.copy));
        SCOPED_TRACE(show(tree));
        EXPECT_STATUS(test.is_good ? TVK_OK : TVK_ERR_NAMESPACE, WalkTest::parse(own.ctx, tree, info));
        EXPECT_EQ(test.is_good ? 0 : 1, own.state->hierarchy_depth) << "the level of an entry that fails stays";
        EXPECT_EQ(!test.is_good, own.state->error_xpath != nullptr);
    }
}

TEST_F(ListTest, TakesAnEntryWithoutChildrenOutsideAddRequests) {
    static constexpr char kNoKeys[] = "ERR: No keys specified with a list node.";
    Tree tree = list(), deleted = list(TVK_OPERATION_DELETE);
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, parse(tree));
    EXPECT_EQ((Lines{"TRC: Start", kNoKeys, kNoKeys, "TRC: End"}), logs());
    EXPECT_TRUE(calls.empty());
    state->list_key_state = 2;
    EXPECT_STATUS(TVK_OK, parse(deleted));
    EXPECT_EQ(Lines{"entry(list <delete>) at /list keys=2"} +
                  each({"config(list <remove>)", "other(list <remove>)"}, " at /list keys=2 propagating"),
              calls);
    EXPECT_TREE(list(TVK_OPERATION_DELETE).type(TVK_NODE_TYPE_LIST), deleted);
    state->list_key_state = 0;
    request.type = TVK_REQUEST_GET_CONFIG;
    EXPECT_STATUS(TVK_OK, parse(tree));
    const Lines propagated{"name(list)", "id(list)", "config(list)", "state(list)", "other(list)"};
    EXPECT_EQ(Lines{"entry(list) at /list"} + each(propagated, " at /list keys=1 propagating"), calls);
    expect_walk_is_over(*state);
}

TEST_F(ListTest, RefusesBadKeyLeavesAndForeignChildren) {
    Tree deleted_key = list()(leaf("name", "a").op(TVK_OPERATION_DELETE));
    EXPECT_STATUS(TVK_ERR_KEY_OPERATION, parse(deleted_key));
    EXPECT_EQ((Lines{"entry(list) at /list"}), calls);
    EXPECT_EQ(nullptr, state->error_node_tag);
    Tree foreign = list()(leaf("name", "a"), node("mtu", kForeign), node("config"));
    EXPECT_STATUS(TVK_ERR_NAMESPACE, parse(foreign));
    EXPECT_EQ((Lines{"entry(list) at /list", "name(name = a) at /list"}), calls);
    EXPECT_STREQ("mtu", state->error_node_tag);
    Tree nameless = list()(leaf("name", "a"), node({}));
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, parse(nameless));
    info = {nullptr, nullptr, nullptr, nullptr, 7, 1, "/list", nullptr};
    EXPECT_STATUS(TVK_ERR_LIST_KEY, parse(foreign));
    EXPECT_STATUS(TVK_ERR_INVALID, tmap_high_list_parse(ctx, foreign.get(), target.get(), nullptr));
    EXPECT_STATUS(TVK_ERR_INVALID, tmap_high_list_parse(ctx, foreign.get(), nullptr, &info));
    Tree lost = list().claims(2);
    EXPECT_STATUS(TVK_ERR_NOT_FOUND, parse(lost));
    expect_walk_is_over(*state);
}

// The keys lie on the instance-tree stack while an entry that is named by them alone is propagated.
TEST_F(ListTest, DeletesByKeysAlone) {
    const std::string tags[] = {"name", TVK_LIST_INSTANCE_TAG};  // whatever a request calls its nodes
    entries[3].flags = TMAP_CHILD_PROPAGATE;
    for (const std::string &key : tags) {
        entries[0].ctag = keys[0].key_tag = key.c_str();
        on("config", [&key](tvk_map_ctx own, qidl_tvk_datatree &entry) {
            char *value = nullptr;
            EXPECT_EQ(0, entry.subtree_count);
            EXPECT_STATUS(TVK_OK, tvk_map_get_node_info(own, "/list", key.c_str(), &value));
            EXPECT_STREQ("a", value);
            grow(own, entry);  // what is added meanwhile goes
            return TVK_ERR_NO_MEMORY;
        });
        answer("state", TVK_ERR_UNSUPPORTED);  // the result of the last entry counts
        answer("other", TVK_ERR_INVALID);
        Tree tree = list(TVK_OPERATION_DELETE)(leaf(key, "a"));
        EXPECT_STATUS(TVK_ERR_UNSUPPORTED, parse(tree));
        EXPECT_EQ((Lines{"entry(list <delete>) at /list keys=2", "name(" + key + " = a) at /list"}) +
                      each({"config(list <remove>)", "state(list <remove>)", "other(list <remove>)"},
                           " at /list keys=1 propagating"),
                  calls);
        EXPECT_TREE(list(TVK_OPERATION_REMOVE).type(TVK_NODE_TYPE_LIST)(leaf(key, "a").key()), tree);
        expect_walk_is_over(*state);
    }
    Tree with_content = list(TVK_OPERATION_DELETE)(leaf(TVK_LIST_INSTANCE_TAG, "a"), node("config"));
    answer("config", TVK_OK);
    EXPECT_STATUS(TVK_OK, parse(with_content));
    EXPECT_EQ(each({"entry(list <delete>)", "name(LIST_INSTANCE_NODE = a)", "config(config)"}, " at /list"), calls);
}

TEST_F(ListTest, ReplacesInTwoPasses) {
    const Lines removing =
        each({"entry(list <remove>) at /list keys=2", "name(name = a) at /list", "other(mtu = 9000) at /list",
              "config(list <remove>) at /list keys=1 propagating", "other(list <remove>) at /list keys=1 propagating"},
             " removing converted");
    const Lines merging =
        each({"entry(list <merge>)", "name(name = a)", "config(config)", "other(mtu = 9000)"}, " at /list converted");
    const auto expect_calls = [&](std::uint32_t operation, qerrno answer, const Lines &expected) {
        on("entry",
           [&](tvk_map_ctx, qidl_tvk_datatree &node) { return node.operation == operation ? answer : TVK_OK; });
        Tree tree = list(TVK_OPERATION_REPLACE)(leaf("name", "a"), node("config"), leaf("mtu", "9000"));
        EXPECT_STATUS(answer == TVK_SKIP_NODE ? TVK_OK : answer, parse(tree));
        EXPECT_EQ(expected, calls);
        EXPECT_EQ(3, tree->subtree_count);
        EXPECT_EQ(std::uint32_t{TVK_OPERATION_MERGE}, tree->operation);
        expect_walk_is_over(*state);
    };
    expect_calls(TVK_OPERATION_REMOVE, TVK_OK, removing + merging);
    expect_calls(TVK_OPERATION_REMOVE, TVK_SKIP_NODE, Lines{removing.front()} + merging);
    expect_calls(TVK_OPERATION_MERGE, TVK_SKIP_NODE, removing + Lines{merging.front()});
    expect_calls(TVK_OPERATION_REMOVE, TVK_ERR_UNSUPPORTED, {removing.front()});
}

qerrno extra(tvk_map_ctx ctx, qidl_tvk_datatree *instance, qidl_tvk_datatree *target, int reserved) {
    EXPECT_EQ(0, reserved);
    return WalkTest::record("extra", ctx, instance, "", target);
}

// The list handler pushes instances; the stack owns them.
class InstanceTest : public ListTest {
protected:
    InstanceTest() {
        on("entry", [this](tvk_map_ctx own, qidl_tvk_datatree &) { return push_instances(own); });
    }

    qerrno push_instances(tvk_map_ctx own) {
        qidl_tvk_datatree copy{};
        const std::uint32_t size = tvk_map_util_itree_stack_size(own);
        if (qidl_tvk_datatree_duplicate(&copy, instances.get(), tvk_gpb_alloc, nullptr) == TVK_OK) {
            tvk_map_util_itree_stack_push(own, copy.subtrees, 3, reinterpret_cast<std::uintptr_t>(extra));
        }
        if (tvk_map_util_itree_stack_size(own) == size) {
            qidl_tvk_datatree_free_ext(&copy, tvk_gpb_free, nullptr, 0);
            return TVK_ERR_NO_MEMORY;
        }
        return TVK_OK;
    }

    Tree instances = root()(node(TVK_LIST_INSTANCE_TAG)(leaf("name", "1")), node("two")(leaf("name", "2")),
                            node("three")(leaf("name", "3")));
};

TEST_F(InstanceTest, AreWalkedInPlaceOfTheirEntry) {
    on("name", [](tvk_map_ctx own, qidl_tvk_datatree &) { return tvk_map_update_current_list_node(own, "/else"); });
    on("extra", [](tvk_map_ctx own, qidl_tvk_datatree &) {
        EXPECT_STREQ("/list", own->current_list_node);
        return TVK_ERR_UNSUPPORTED;  // does not count
    });
    Tree tree = list(TVK_OPERATION_CREATE)(leaf("name", "a"), node("config"));
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ((Lines{"entry(list <create>) at /list", "extra(LIST_INSTANCE_NODE) at /list", "name(name = 1) at /list",
                     "extra(two) at /list/two", "name(name = 2) at /list/two", "extra(three) at /list/three",
                     "name(name = 3) at /list/three"}),
              calls);
    expect_walk_is_over(*state);

    answer("extra", TVK_OK);
    tree->operation = TVK_OPERATION_REPLACE;
    EXPECT_STATUS(TVK_OK, parse(tree));
    EXPECT_EQ(each({"extra(LIST_INSTANCE_NODE <remove>) at /list", "name(name = 1) at /list",
                    "config(list <remove>) at /list keys=1 propagating",
                    "other(list <remove>) at /list keys=1 propagating", "extra(two <remove>) at /list/two"},
                   " removing converted"),
              Lines(calls.begin() + 1, calls.begin() + 6));
    EXPECT_EQ((1u + 3 * 4) + (1 + 3 * 2), calls.size());
    expect_walk_is_over(*state);

    Tree top = node("top", "urn:top").op(TVK_OPERATION_REMOVE);
    EXPECT_STATUS(TVK_OK, parse_below_container(ctx, top));
    EXPECT_EQ(2u + 3 * 4, calls.size());
    EXPECT_EQ("other(top <remove>) at /top/three keys=1 propagating", calls.back());
}

TEST_F(InstanceTest, GoWithTheirEntryHoweverItEnds) {
    Tree tree = list()(leaf("name", "a"));
    instances = root()(node(TVK_LIST_INSTANCE_TAG), node("two")(node("name")), node("three"));
    EXPECT_STATUS(TVK_ERR_LIST_KEY, parse(tree));
    EXPECT_EQ((Lines{"ERR: Empty list key specified."}), complaints());
    EXPECT_EQ("extra(two) at /list/two", calls.back());
    EXPECT_STREQ("name", state->error_node_tag);
    expect_walk_is_over(*state);
    for (const qerrno status : {TVK_SKIP_NODE, TVK_ERR_UNSUPPORTED}) {
        on("entry", [&](tvk_map_ctx own, qidl_tvk_datatree &) { return push_instances(own) + status; });
        EXPECT_STATUS(status == TVK_SKIP_NODE ? TVK_OK : status, parse(tree));
        EXPECT_EQ(1u, calls.size());
        expect_walk_is_over(*state);
    }
}

TEST_F(ListTest, AddsItsKeysToAReadThatSelectsByOtherLeaves) {
    info.key_count = 2;
    for (const auto &[type, status, adds] :
         {std::tuple(0u, TVK_OK, true), std::tuple(10u, TVK_SKIP_NODE, true),
          std::tuple(0u, TVK_ERR_UNSUPPORTED, false), std::tuple(2u, TVK_OK, false)}) {
        const MappingContext own(type);
        answer("entry", status);
        const Node entry = list().type(TVK_NODE_TYPE_LIST)(node("config"));
        Tree tree = list()(node("config"));
        EXPECT_STATUS(status == TVK_SKIP_NODE ? TVK_OK : status, WalkTest::parse(own.ctx, tree, info));
        EXPECT_TREE(adds ? Node(entry)(node("name").key(), node("id").key()) : entry, tree);
    }
}

}  // namespace

}  // namespace tvk::test
