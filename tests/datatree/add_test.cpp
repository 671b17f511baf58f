#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <iterator>

#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_datatree.h"
#include "tvk_platform_control.h"

using namespace tvk::test;

namespace {

constexpr char kNs[] = "urn:n";

Node b(const std::string &data = "old") {
    return leaf("b", data, kNs);
}

class AddSubtree : public MappingTest {
protected:
    qerrno add(const Tree &parent, const char *data, int append = 0, int flags = 0,
               const qidl_tvk_datatree *as = nullptr) {
        return tvk_map_datatree_add_subtree_flagged(ctx, parent.get(), "b", kNs, data, as, &out, append, flags);
    }
    qidl_tvk_datatree *out = nullptr;
};

TEST_F(AddSubtree, MakesAndLogsANewNodeStepByStep) {
    Tree parent = root();
    Tree as = node("t").op(TVK_OPERATION_CREATE).kind(TVK_NODE_KIND_KA).insert(TVK_INSERT_BEFORE, {{"id", "7"}});
    EXPECT_STATUS(TVK_OK, add(parent, "1", 1, TVK_ADD_MARK_TREE_TRAVERSE, as.get()));
    char array[64];
    std::snprintf(array, sizeof array, "Setting updated subtree array (%p).", static_cast<void *>(out));
    const std::string made[] = {"Allocating a new subtree array.",
                                "Setting tag name 'b'.",
                                "Setting node data '1'.",
                                "Setting operation '2'.",
                                "Setting insert",
                                "Setting operation '3'.",
                                "Setting tree tarverse '5'.",
                                "Setting subtree_index '1'.",
                                array};
    for (std::size_t i = 0; i < std::size(made); ++i) {
        EXPECT_EQ("TRC: " + made[i], logs().at(i));
    }
    clear_logs();
    state->build_flags = TVK_BUILD_FILTERED;
    EXPECT_STATUS(TVK_OK, add(parent, nullptr, 7, 0, as.get()));
    EXPECT_EQ("TRC: Expanding subtree array.", logs().at(0));
    EXPECT_EQ(1u, state->added_node_count) << "the first child of a parent is not counted";
    const auto like_template = [](Node child) {
        return child.op(TVK_OPERATION_CREATE).insert(TVK_INSERT_BEFORE, {{"id", "7"}});
    };
    EXPECT_TREE(root()(like_template(b("1").kind(TVK_NODE_KIND_TREE_TRAVERSE).index(1)),
                       like_template(node("b", kNs).kind(TVK_NODE_KIND_KA).index(2))),
                parent);
}

TEST_F(AddSubtree, FindsTheChildThatIsThere) {
    const Node removed = b().op(TVK_OPERATION_REMOVE), other = b().ns("urn:o");
    constexpr int kTag = TVK_ADD_MATCH_TAG_ONLY, kOnPath = TVK_ADD_TEMPLATE_ON_PATH;
    const Node one = b().index(1), two = b().index(2);
    const struct {
        const char *why;
        Node before;
        int flags;
        bool with_template;
        int found;
        bool is_new = false, keeps_data = false;
    } rows[] = {
        {"the first of its tag and namespace", root()(leaf("a", "old", kNs), other, b(), b()), 0, false, 2},
        {"or of its tag", root()(other, b()), kTag, false, 0},
        {"without a namespace not even then", root()(node("b").data("old")), kTag, false, 1, true},
        {"the presence bit of the tag counts", root()(b().without(TVK_HAS_TAG)), 0, false, 1, true},
        {"instances give way to a plain one", root()(one, two, b(), b()), 0, false, 2},
        {"else the last instance, with its data", root()(one, two), 0, false, 1, false, true},
        {"with a template the first", root()(one, b()), 0, true, 0},
        {"but not on a path", root()(one, two), kOnPath, true, 1, false, true},
        {"a removed one is gone", root()(Node(removed).without(TVK_HAS_OPERATION)), kOnPath, false, 1, true},
        {"but in a replace only", root()(removed, b()), 0, false, 0},
    };
    Tree as = node("t").kind(TVK_NODE_KIND_KA);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        Tree parent = row.before, after = row.is_new ? Node(row.before)(b("new")) : row.before;
        if (!row.is_new && !row.keeps_data) {
            std::memcpy(after->subtrees[row.found].data, "new", 4);
        }
        EXPECT_STATUS(TVK_OK, add(parent, "new", 0, row.flags, row.with_template ? as.get() : nullptr));
        EXPECT_TREE(after, parent);
        EXPECT_EQ(&parent->subtrees[row.found], out);
        tvk_map_forget_children(ctx, nullptr);  // the next tree may stand at the same place
    }
}

TEST_F(AddSubtree, AValueThatCannotBeCopiedIsNone) {
    Tree parent = root()(b());
    tvk_platform_fail_allocation(1, 1);
    EXPECT_STATUS(TVK_ERR_NO_MEMORY, add(parent, "new"));
    tvk_platform_fail_allocation(0, 0);
    EXPECT_TREE(root()(node("b", kNs)), parent);
}

TEST_F(AddSubtree, WhatTheStateHoldsIsFollowed) {
    const Tree parent = root().children(std::vector<Node>(600, b().index(1)));
    state->pending_list_node = &parent->subtrees[1];
    state->xpath_attachment = &parent->subtrees[2];
    state->output_list_count = 2;
    state->output_list[0].list_node = &parent->subtrees[3];
    state->output_list[1].list_node = &parent->subtrees[4];
    const auto expect_followed = [&] {
        EXPECT_EQ(&parent->subtrees[1], state->pending_list_node);
        EXPECT_EQ(&parent->subtrees[2], state->xpath_attachment);
        EXPECT_EQ(&parent->subtrees[3], state->output_list[0].list_node);
        EXPECT_EQ(&parent->subtrees[4], state->output_list[1].list_node);
    };
    for (int i = 0; i < 600; ++i) {
        EXPECT_STATUS(TVK_OK, add(parent, nullptr, 1));
    }
    expect_followed();
    while (parent->subtree_count > 5) {
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_remove_last_subtree(ctx, parent.get()));
    }
    expect_followed();
    state->output_list_count = 0;
}

TEST_F(AddSubtree, OneIsGoneWhereAReplaceHasRemovedIt) {
    const Tree removed = b().op(TVK_OPERATION_REMOVE), other = b().op(TVK_OPERATION_DELETE);
    for (const auto &[converted, operation, is_gone] :
         {std::tuple(1u, TVK_OPERATION_MERGE, 1), {0u, TVK_OPERATION_MERGE, 0}, {1u, TVK_OPERATION_REPLACE, 0}}) {
        state->replace_converted = converted;
        ctx->list_operation = operation;
        EXPECT_EQ(is_gone, tvk_map_validate_replace_subtree(ctx, removed.get()));
        EXPECT_EQ(0, tvk_map_validate_replace_subtree(ctx, other.get()));
    }
}

TEST_F(AddSubtree, ArgumentsMayStandInTheTreeThatChanges) {
    Tree parent = root()(b("0123").kind(TVK_NODE_KIND_KN));
    EXPECT_STATUS(TVK_OK, add(parent, parent->subtrees->data + 2));
    for (int i = 0; i < 100; ++i) {
        EXPECT_STATUS(TVK_OK, add(parent, parent->subtrees->data, 1, 0, parent->subtrees));
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_subtree_with_data(ctx, parent.get(), parent->subtrees, 1));
    }
    EXPECT_TREE(b("23").kind(TVK_NODE_KIND_KN).index(200), parent->subtrees[199]);
    EXPECT_TREE(b("23").index(201), parent->subtrees[200]);
    EXPECT_EQ(0u, state->added_node_count) << "not counted outside a filtered read";
    for (const int count : {0, 3, -1}) {
        Tree claims_children = root().with(TVK_HAS_SUBTREES);
        claims_children->subtree_count = count;
        EXPECT_STATUS(TVK_OK, add(claims_children, "1"));
        EXPECT_TREE(root()(b("1")), claims_children);
    }
}

TEST_F(AddSubtree, SharesOrMovesChildren) {
    const Node entry = b()(leaf("k", "1"));
    Tree source = entry, parent = root();
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_subtree_with_data(ctx, parent.get(), source.get(), 0));
    EXPECT_TREE(root()(entry), parent);
    EXPECT_EQ(source->subtrees, parent->subtrees->subtrees);
    source->subtrees = nullptr;
    Tree own = root()(entry);  // a source beside which it comes to stand
    EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_subtree_with_data(ctx, own.get(), own->subtrees, 1));
    EXPECT_EQ(own->subtrees[0].subtrees, own->subtrees[1].subtrees);
    own->subtrees[1].subtrees = nullptr;

    const Node emptied = b().with(TVK_HAS_SUBTREES);  // says that it has children, and has none
    Tree from = root()(entry, emptied), to = root();
    EXPECT_STATUS(TVK_OK, tvk_map_add_subtrees_from_source_to_target(ctx, to.get(), from.get()));
    EXPECT_TREE(root()(emptied, emptied), from);
    EXPECT_TREE(root()(b().index(1)(leaf("k", "1")), b().index(2).with(TVK_HAS_SUBTREES)), to);
    Tree family = root()(node("s", kNs)(entry, entry));
    for (qidl_tvk_datatree *top = family.get(); const int child : {1, 0}) {  // up one level, then onto itself
        EXPECT_STATUS(TVK_OK, tvk_map_add_subtrees_from_source_to_target(ctx, top, child != 0 ? top->subtrees : top));
    }
    EXPECT_TREE(b().index(3)(leaf("k", "1")), family->subtrees[2]);
}

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
        clear_logs();
        const Tree places[] = {Tree(root()), Tree(root()), Tree(root())};
        state->build_flags = row.build_flags;
        state->pending_trim_path = row.pending;
        state->pending_list_node = places[kPending].get();
        state->output_list_count = row.entry != nullptr ? 2 : 0;
        state->output_list[1] = {places[kEntry].get(), row.entry, nullptr, 0};
        EXPECT_STATUS(row.place == kNowhere ? TVK_ERR_NOT_FOUND : TVK_OK, add(places[kTree], "x/a/b", row.flags));
        EXPECT_EQ(row.place == kNowhere || (row.pending == other && row.place == kTree) ? 2u : 0u, errors().size());
        for (int i = kTree; i <= kEntry; ++i) {
            const qidl_tvk_datatree *first = places[i]->subtrees;
            EXPECT_STREQ(i == row.place ? row.added.c_str() : nullptr, first != nullptr ? first->tag : nullptr);
        }
        tvk_map_forget_children(ctx, nullptr);
    }
    state->output_list[1] = {};
    state->pending_trim_path = in;
    state->pending_list_node = nullptr;
    EXPECT_STATUS(TVK_ERR_INVALID, add(Tree(root()), "x/a/b")) << "there is nowhere to put it";
    state->pending_trim_path = nullptr;
}

TEST_F(AddPath, TakesBackWhatConcernsOnePath) {
    const Tree filter = node("top")(node("a")), tree = root();
    state->datatree = filter.get();
    state->build_flags = TVK_BUILD_FILTERED | TVK_BUILD_ERROR_NODE;
    EXPECT_STATUS(TVK_OK, add(tree, "c"));
    EXPECT_EQ(TVK_BUILD_FILTERED | TVK_BUILD_ERROR_NODE, state->build_flags) << "a path that is skipped takes nothing";
    for (const char *path : {"a", "a/b"}) {
        EXPECT_STATUS(TVK_OK, add(tree, path));
        EXPECT_STREQ("a", state->error_xpath);
    }
    state->build_flags |= TVK_BUILD_UNFILTERED;
    EXPECT_STATUS(TVK_OK, add(tree, "c"));
    EXPECT_TREE(root()(leaf("a", "1", kNs)(leaf("b", "1")), leaf("c", "1", kNs)), tree);
}

TEST_F(AddPath, PutsABundleOnSubinterface0) {
    char name[] = "b1.0";
    mapping.context.intf_name = name;
    const auto placed = [&](const char *path) {
        const auto configuration = [](const char *of) {
            return node("interface-configuration")(leaf("interface-name", of), leaf("interface-virtual", ""));
        };
        Tree tree = node("top", kSketchedNs)(configuration("b1"), configuration(name));
        mapping.context.intf_config_flag = 1;
        EXPECT_STATUS(TVK_OK, tvk_map_datatree_add_path(ctx, tree.get(), path, kSketchedNs, "1", nullptr, nullptr, 0));
        EXPECT_EQ(0u, mapping.context.intf_config_flag) << "one path is placed";
        tvk_map_forget_children(ctx, nullptr);
        std::string text = sketch(*tree);
        return text.substr(text.find("interface-virtual=") + 18);
    };
    const std::string second = ",interface-configuration(interface-name=b1.0,interface-virtual=";
    EXPECT_EQ(")" + second + ",x=1))", placed("interface-configuration/x"));
    EXPECT_EQ(")" + second + ",bundle,x=1))", placed("interface-configuration/bundle/x"));
    EXPECT_EQ(")" + second + ",bundle(mode=1)))", placed("interface-configuration/bundle/mode"));
    EXPECT_EQ(")" + second + ",bundle(mode,x=1)))", placed("interface-configuration/bundle/mode/x"));
    EXPECT_EQ(")" + second + ",lacp(links(a),b=1)))", placed("interface-configuration/lacp/links/a/b"));
    EXPECT_EQ(",mode(a),b=1)" + second + "))", placed("interface-configuration/mode/a/b")) << "whatever holds it";
}

}  // namespace
