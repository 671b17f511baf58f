#include <gtest/gtest.h>

#include "allocation_failures.h"
#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_datatree.h"

using namespace tvk::test;

namespace {

constexpr char kNs[] = "urn:n";
constexpr char kOther[] = "urn:o";

class AddPath : public MappingTest {
protected:
    qerrno add(const Tree &tree, const std::string &path, int flags = 0, const qidl_tvk_datatree *as = nullptr,
               int append = 0) {
        return tvk_map_datatree_add_path_flagged(ctx, tree.get(), path.c_str(), kNs, "1", as, nullptr, append, flags);
    }
};

TEST_F(AddPath, MakesWhatIsMissing) {
    const Node last = leaf("b", "1").op(TVK_OPERATION_CREATE);
    Tree as = last, tree = root();
    for (const char *path : {"", "//", "a", "/a//b/"}) {
        EXPECT_STATUS(TVK_OK, add(tree, path, 0, as.get()));
    }
    Node a = leaf("a", "1", kNs).op(TVK_OPERATION_CREATE);
    EXPECT_TREE(root()(a(last)), tree);
    Tree plain = root(), merged = root();
    EXPECT_STATUS(TVK_OK, add(plain, "a/b", 0, as.get(), 5));
    EXPECT_STATUS(TVK_OK, add(plain, "a/b", 0, as.get(), 5));
    EXPECT_TREE(root()(node("a", kNs)(Node(last).index(1), Node(last).index(2))), plain);
    state->build_flags = TVK_BUILD_REPLACE_MERGING;  // stands for TVK_ADD_TEMPLATE_ON_PATH
    EXPECT_STATUS(TVK_OK, add(merged, "a/b", 0, as.get()));
    EXPECT_TREE(root()(node("a", kNs).op(TVK_OPERATION_CREATE)(last)), merged);

    for_each_allocation_failure([&](AllocationFailure &failure) {
        Tree partly = root();
        const qerrno status = failure.during([&] { return add(partly, "a/b"); });
        EXPECT_STATUS(failure.is_injected() ? TVK_ERR_NO_MEMORY : TVK_OK, status);
        const Node kept = partly->subtree_count != 0 ? root()(node("a", kNs)) : root();
        EXPECT_TREE(failure.is_injected() ? kept : root()(node("a", kNs)(leaf("b", "1"))), partly);
    });
}

TEST_F(AddPath, GoesWhereTheRequestStands) {
    constexpr std::uint32_t kRead = TVK_BUILD_FILTERED | TVK_BUILD_UNFILTERED;
    constexpr int kTrim = TVK_ADD_TRIM_PENDING;
    char in[] = "x/a", other[] = "other";
    enum { kTree, kPending, kEntry, kNowhere };
    const struct {
        const char *why;
        char *pending, *entry;
        std::uint32_t build_flags;
        int flags, place;
        std::string added;
    } rows[] = {
        {"the pending entry comes first", in, in, 0, 0, kPending, "b"},
        {"a path outside it is taken whole", other, in, 0, kTrim, kTree, "x"},
        {"a filtered read does not look at it", other, in, kRead, 0, kEntry, "b"},
        {"a relative path is where it is", nullptr, other, 0, TVK_ADD_RELATIVE, kTree, "x"},
        {"trimmed, below the tree", in, other, kRead, kTrim, kTree, "b"},
        {"which the path must allow", other, in, kRead, kTrim, kNowhere, ""},
        {"and which must be there", nullptr, in, 0, kTrim, kNowhere, ""},
        {"a path outside the open entry", nullptr, other, 0, 0, kNowhere, ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const Tree places[] = {Tree(root()), Tree(root()), Tree(root())};
        state->build_flags = row.build_flags;
        state->pending_trim_path = row.pending;
        state->pending_list_node = places[kPending].get();
        state->output_list_count = row.entry != nullptr ? 2 : 0;
        state->output_list[1] = {places[kEntry].get(), row.entry, nullptr, 0};
        EXPECT_STATUS(row.place == kNowhere ? TVK_ERR_NOT_FOUND : TVK_OK, add(places[kTree], "x/a/b", row.flags));
        for (int i = kTree; i <= kEntry; ++i) {
            const qidl_tvk_datatree *first = places[i]->subtrees;
            EXPECT_STREQ(i == row.place ? row.added.c_str() : nullptr, first != nullptr ? first->tag : nullptr);
        }
    }
    state->output_list[1] = {};
    state->pending_trim_path = in;
    state->pending_list_node = nullptr;
    EXPECT_STATUS(TVK_ERR_INVALID, add(Tree(root()), "x/a/b")) << "there is nowhere to put it";
    state->pending_trim_path = nullptr;
}

TEST_F(AddPath, AsksTheFilterOfARead) {
    constexpr std::uint32_t kRead = TVK_BUILD_FILTERED;
    Tree filter = node("filter")(node("a"));
    const struct {
        const char *path;
        std::uint32_t build_flags;
        int flags;
        bool added;
    } rows[] = {{"a/b", kRead, 0, true},
                {"x/b", kRead, 0, false},
                {"x/b", kRead, TVK_ADD_UNFILTERED, true},
                {"x/b", kRead | TVK_BUILD_UNFILTERED, 0, true}};
    state->datatree = filter.get();
    for (const auto &row : rows) {
        Tree tree = root();
        clear_logs();
        state->build_flags = row.build_flags | TVK_BUILD_ERROR_NODE;
        EXPECT_STATUS(TVK_OK, add(tree, row.path, row.flags));
        EXPECT_EQ(row.added ? 1 : 0, tree->subtree_count);
        EXPECT_EQ(row.added ? "TRC: got xpath error node " : "TRC: 'x/b' skipped", logs().at(0));
        EXPECT_EQ(row.build_flags | (row.added ? 0 : TVK_BUILD_ERROR_NODE), state->build_flags);
        EXPECT_STREQ(row.added ? row.path : "a/b", state->error_xpath) << "a skipped path leaves the former one";
    }
}

TEST_F(AddPath, RecordsPathsAndAddsEachOnce) {
    constexpr std::uint32_t kCut = TVK_PATH_RECORD_CUT_LAST, kKeep = TVK_PATH_RECORD_KEEP_LAST;
    const std::string longest(TVK_MAP_MAX_PATH - 1, 'l');
    const struct {
        const char *why;
        std::string path;
        std::uint32_t mode, recorded;
        std::string added;  // the last node of the tree then
    } rows[] = {{"mode 1 cuts the last component", "a/b/c", kCut, 1, "b"},
                {"a recorded path begins with it", "a/b", kKeep, 1, "b"},
                {"it begins with a recorded path", "a/b/cd/e", kKeep, 1, "b"},
                {"mode 2 keeps the last component", "a/x", kKeep, 2, "x"},
                {"one component cannot be cut", "y", kCut, 3, "y"},
                {"too long to be recorded", "m" + longest, kKeep, 3, "y"},
                {"just not too long", longest, kKeep, 4, longest}};
    Tree tree = root();
    const auto last_added = [&tree] {
        const qidl_tvk_datatree *last = tree.get();
        while (last->subtree_count > 0) {
            last = &last->subtrees[last->subtree_count - 1];
        }
        return std::string(last->tag);
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        state->path_record_mode = row.mode;
        EXPECT_STATUS(TVK_OK, add(tree, row.path));
        EXPECT_EQ(row.recorded, state->path_record_count);
        EXPECT_EQ(row.added, last_added());
    }
    EXPECT_STATUS(TVK_OK, tvk_map_clear_xpath_ctx(ctx));
    for (int i = 0; i <= TVK_MAP_MAX_RECORDED_PATHS; ++i) {
        EXPECT_EQ(Lines{}, errors());
        EXPECT_STATUS(TVK_OK, add(tree, "n" + std::to_string(100 + i)));
    }
    EXPECT_EQ(Lines{"ERR: xpath max reached its limit"}, errors());
    EXPECT_EQ("n149", last_added());
}

TEST_F(AddPath, PartsOfABundleGoToItsSubinterface) {
    const auto configuration = [](const std::string &name) {
        return node("interface-configuration", kOther)(leaf("interface-name", name), node("interface-virtual"));
    };
    // The entry's place is the second of three: the third is new and moves it.
    const auto placed = [&](const Node &entry, const std::string &path, std::string name) {
        Tree tree = root()(node("first"), entry);
        state->replace_converted = 1;
        mapping.context.intf_name = name.data();
        mapping.context.intf_config_flag = 1;
        EXPECT_STATUS(TVK_OK, add(tree, "interface-configuration/" + path));
        return tree;
    };
    const Node last = leaf("z", "1", kNs), added = node("interface-configuration", kNs);
    const auto expect_moved = [&](const char *path, const Node &below_target, const Node &new_entry) {
        EXPECT_TREE(root()(node("first"), configuration("B.0")(below_target, last), new_entry),
                    placed(configuration("B.0"), path, "B.0"));
        EXPECT_EQ(0u, mapping.context.intf_config_flag);
    };
    expect_moved("bundle/z", node("bundle", kNs), added);
    expect_moved("links/q/z", node("links", kNs)(node("q")), added);
    expect_moved("p/mode/z", node("mode", kNs), Node(added)(node("p")));
    const std::pair<std::string, Node> others[] = {
        {"B", configuration("B")},
        {"A.0", configuration("B.0")},
        {"B.0", configuration("B.0").op(TVK_OPERATION_REMOVE)},
        {"B.0", node("interface-configuration", kOther)(node("interface-virtual"))},
        {"B.0", node("interface-configuration", kOther)(leaf("interface-name", "B.0"))}};
    for (const auto &[name, entry] : others) {
        EXPECT_TREE(entry, placed(entry, "bundle/z", name)->subtrees[1]);
        EXPECT_EQ(1u, mapping.context.intf_config_flag) << "the flag waits for the entry";
    }
}

}  // namespace
