// Mark phase, container phase and sweep, each on trees that show one of its rules.
#include <gtest/gtest.h>

#include "context.h"
#include "tree.h"
#include "tvk_map_filter.h"
#include "tvk_platform_control.h"

using namespace tvk::test;

namespace {

constexpr std::uint32_t kDrop = TVK_NODE_KIND_NONE;
constexpr std::uint32_t kNode = TVK_NODE_KIND_KN;
constexpr std::uint32_t kAll = TVK_NODE_KIND_KA;

class Phases : public MappingTest {};

Node key(const std::string &tag, const std::string &value) {
    return leaf(tag, value).key().type(1);
}
Node key(const std::string &tag) {
    return node(tag).key().type(1);
}
Node unit(const std::string &name, const std::string &vlan) {
    return node("unit")(leaf("name", name), leaf("vlan", vlan));
}

TEST_F(Phases, Mark) {
    const Node plain = node("top")(leaf("a", "1"), node("c")(leaf("x", "1")));
    const Node units = node("top")(unit("A", "1"), unit("B", "1"), unit("A", "2"));
    const auto filter_unit = [](const Node &first, const Node &second) {
        return node("top")(node("unit").type(4)(first, second));
    };
    const auto kept = [](const Node &first, const Node &second, const Node &third) {
        return node("top").kind(kNode)(first, second, third);
    };
    const Node whole_a = node("unit").kind(kAll)(leaf("name", "A").kind(kAll), leaf("vlan", "1"));
    const Node matches = node("top")(node("c")(leaf("x", "9").type(6)));
    const auto picked = [](const std::string &name, const std::string &vlan, bool by_name) {
        Node chosen = leaf("name", name);
        return node("unit").kind(kNode)(by_name ? chosen.kind(kAll) : chosen, leaf("vlan", vlan).kind(kAll));
    };
    const struct {
        const char *why;
        Node filter, response;
        bool content;
        Node expected;
    } rows[] = {
        {"a filter leaf keeps all below; what it does not name is not marked", node("top")(node("c")), plain, false,
         node("top").kind(kNode)(leaf("a", "1"), node("c").kind(kAll)(leaf("x", "1")))},
        {"keys alone keep the whole entry", node("top")(node("unit").type(4)(key("name", "A"))), units, false,
         kept(whole_a, unit("B", "1"), unit("A", "2"))},
        {"one key: the first entry that has it", filter_unit(key("name", "A"), node("vlan")), units, false,
         kept(picked("A", "1", true), unit("B", "1"), unit("A", "2"))},
        {"a key without value: every entry", filter_unit(key("name"), node("vlan")), units, false,
         kept(picked("A", "1", true), picked("B", "1", true), picked("A", "2", true))},
        {"one key of two: every entry that has it", filter_unit(key("name", "A"), key("vlan")), units, false,
         kept(node("unit").kind(kAll)(leaf("name", "A").kind(kAll), leaf("vlan", "1").kind(kAll)), unit("B", "1"),
              node("unit").kind(kAll)(leaf("name", "A").kind(kAll), leaf("vlan", "2").kind(kAll)))},
        {"a key behind another leaf: that one is compared", filter_unit(node("vlan"), key("name", "B")), units, false,
         kept(picked("A", "1", true), unit("B", "1"), unit("A", "2"))},
        {"content match descends", matches, plain, false,
         node("top").kind(kNode)(leaf("a", "1"), node("c").kind(kNode)(leaf("x", "1").kind(kAll)))},
        {"or keeps all, where the request has it", matches, plain, true,
         node("top").kind(kNode)(leaf("a", "1"), node("c").kind(kAll)(leaf("x", "1")))},
        {"a claim of no children keeps nothing", node("top").with(TVK_HAS_SUBTREES), plain, false, plain},
        {"or all, where the request matches content", node("top").with(TVK_HAS_SUBTREES), plain, true,
         node("top").kind(kAll)(leaf("a", "1"), node("c")(leaf("x", "1")))},
    };
    for (const auto &row : rows) {
        const Tree filter = row.filter;
        const Tree response = row.response;
        state->walk_flags = row.content ? TVK_WALK_CONTENT_MATCH_IN_REQUEST : 0;
        SCOPED_TRACE(row.why);
        EXPECT_EQ(0u, tvk_map_dfs_filter_mark(ctx, filter.get(), response.get()));
        EXPECT_TREE(row.expected, response);
        EXPECT_TREE(row.filter, filter);
    }
}

TEST_F(Phases, AtMostTenKeysAreRecorded) {
    std::vector<Node> leaves(12, key("k", "1"));
    leaves[0] = node("first");
    leaves[2] = key("k");
    const Tree entry = node("e").children(leaves);
    tvk_map_key_info keys;
    EXPECT_EQ(9u, tvk_map_datatree_get_keys(entry.get(), &keys));
    EXPECT_EQ(10u, keys.key_count);
    EXPECT_EQ(10u, keys.key_index[9]);
    EXPECT_EQ(0u, keys.key_has_value[1]);
}

// A list of one entry below the root, in the filter, in the response and in what is expected.
template <class... Children>
Node filter_of(const Children &...children) {
    return node("top")(node("list").type(3)(node("unit").type(4)(children...)));
}
template <class... Children>
Node response_of(const Children &...children) {
    return node("top")(node("list")(node("unit")(children...)));
}
template <class... Children>
Node marked(std::uint32_t above, std::uint32_t entry, const Children &...children) {
    return node("top").kind(above)(node("list").kind(above)(node("unit").kind(entry)(children...)));
}

TEST_F(Phases, Container) {
    const std::string z_is_not_a = "TRC: \n src_key: Z, tgt_key:A";
    const std::string key_failed = "TRC: \n delete trigger key does not match ";
    const std::string content_failed = "TRC: \n delete trigger cnt does not match";
    const std::string all_dropped = "TRC: \n delete trigger all nodes dropped";
    const Node name = leaf("name", "A");
    const Node whole_name = leaf("name", "A").kind(kAll);
    const Node dropped_name = leaf("name", "A").kind(kDrop);
    const Node vlan = leaf("vlan", "1");
    const Node vlan_one = leaf("vlan", "1").type(6);
    const Node vlan_two = leaf("vlan", "2").type(6);
    const Node asks_for_vlan = node("vlan").type(1);
    const Node untyped_key = node("name").key();
    const Node c = node("c").type(3)(node("x").type(1));
    const auto entries = [](const Node &first, const Node &second) {
        return node("top")(node("list").type(3)(node("unit").type(4)(first), node("unit").type(4)(second)));
    };
    const struct {
        const char *why;
        Node source, target, expected;
        Lines lines = {};
    } rows[] = {
        {"a source leaf keeps all", node("top"), response_of(name),
         node("top").kind(kAll)(node("list")(node("unit")(name)))},
        {"a selection keeps what it names", filter_of(asks_for_vlan), response_of(name, vlan),
         marked(kNode, kNode, dropped_name, leaf("vlan", "1").kind(kNode))},
        {"also one of type 2 with a value", filter_of(leaf("vlan", "9").type(2)), response_of(name, vlan),
         marked(kNode, kNode, dropped_name, leaf("vlan", "1").kind(kNode))},
        {"which does nothing in one of type 1",
         filter_of(leaf("vlan", "9").type(1)),
         response_of(vlan),
         marked(kDrop, kDrop, leaf("vlan", "1").kind(kDrop)),
         {all_dropped}},
        {"a key keeps its whole entry", filter_of(key("name", "A")), response_of(name, vlan),
         marked(kNode, kAll, whole_name, vlan)},
        {"beside a container the key alone", filter_of(key("name", "A"), c),
         response_of(name, node("c")(leaf("x", "1"), leaf("y", "1"))),
         marked(kNode, kNode, whole_name,
                node("c").kind(kNode)(leaf("x", "1").kind(kNode), leaf("y", "1").kind(kDrop)))},
        {"and beside a selection as a node", filter_of(key("name", "A"), node("name").type(1)), response_of(name, vlan),
         marked(kNode, kNode, leaf("name", "A").kind(kNode), leaf("vlan", "1").kind(kDrop))},
        {"but not where all else is dropped",
         filter_of(key("name", "A"), node("id").key()),
         response_of(name, vlan),
         marked(kNode, kDrop, whole_name, leaf("vlan", "1").kind(kDrop)),
         {all_dropped}},
        {"a key that differs drops upwards",
         filter_of(key("name", "Z")),
         response_of(name, vlan),
         marked(kDrop, kDrop, dropped_name, vlan),
         {z_is_not_a, key_failed}},
        {"as does one that is not there",
         filter_of(key("id", "Z")),
         response_of(name),
         marked(kDrop, kDrop, name),
         {key_failed}},
        {"one that matches brings back what it dropped",
         entries(key("name", "A"), key("name", "Z")),
         response_of(name),
         marked(kNode, kAll, whole_name),
         {z_is_not_a, key_failed}},
        {"unless it met a differing value before",
         entries(key("name", "A"), key("name", "Z")),
         response_of(leaf("name", "B"), name),
         marked(kDrop, kAll, leaf("name", "B"), whole_name),
         {z_is_not_a, key_failed}},
        {"a key that differs from one that is kept for good passes",
         node("top")(node("list").type(3)(node("unit").type(4)(key("name", "Z"), node("d").type(3)),
                                          node("unit").type(4)(key("name", "A"), node("d").type(3)))),
         response_of(name, node("d")), marked(kNode, kNode, whole_name, node("d").kind(kAll))},
        {"an entry with a compared key is not dropped upwards",
         filter_of(key("name", "A"), node("id").key(), node("id").key()),
         response_of(leaf("name", "B"), name),
         marked(kNode, kDrop, leaf("name", "B").kind(kDrop), whole_name),
         {all_dropped}},
        {"nor is one that selects by key",
         filter_of(key("id")),
         response_of(vlan),
         marked(kNode, kDrop, leaf("vlan", "1").kind(kDrop)),
         {all_dropped}},
        {"a key without type does not hold an entry",
         filter_of(untyped_key, node("id").type(1)),
         response_of(name, vlan),
         marked(kDrop, kDrop, leaf("name", "A").kind(kNode), leaf("vlan", "1").kind(kDrop)),
         {all_dropped}},
        {"of which all else was dropped below",
         filter_of(untyped_key, c),
         response_of(name, node("c")(leaf("y", "1"))),
         marked(kDrop, kDrop, leaf("name", "A").kind(kNode), node("c").kind(kDrop)(leaf("y", "1").kind(kDrop))),
         {all_dropped}},
        {"content that matches keeps the whole node", filter_of(vlan_one), response_of(name, vlan),
         marked(kNode, kAll, name, vlan)},
        {"beside a container itself", filter_of(vlan_one, node("c").type(3)), response_of(name, vlan, node("c")),
         marked(kNode, kNode, dropped_name, leaf("vlan", "1").kind(kAll), node("c").kind(kAll))},
        {"content that differs drops its node, not a sibling",
         filter_of(vlan_one),
         node("top")(node("list")(node("unit")(vlan), node("unit")(leaf("vlan", "2")))),
         node("top").kind(kNode)(node("list").kind(kNode)(node("unit").kind(kAll)(vlan),
                                                          node("unit").kind(kDrop)(leaf("vlan", "2").kind(kDrop)))),
         {content_failed}},
        {"and passes where that is kept", entries(vlan_two, asks_for_vlan), response_of(vlan),
         marked(kNode, kAll, leaf("vlan", "1").kind(kNode))},
        {"what is kept whole is not looked at again", node("top")(node("list").type(3)(node("z")), node("list")),
         response_of(name), node("top").kind(kNode)(node("list").kind(kAll)(node("unit")(name)))},
        {"bgp of level 2, and of no other, is left alone", node("bgp")(node("bgp")(node("x").type(1))),
         node("bgp")(node("bgp")(node("y"))), node("bgp").kind(kNode)(node("bgp")(node("y")))},
        {"a target without children is dropped",
         filter_of(asks_for_vlan),
         response_of(),
         marked(kDrop, kDrop),
         {all_dropped}},
        {"a tag that is missing abandons, and marks stay", node("top")(key("name", "A"), root().data("1").type(6)),
         node("top")(name), node("top")(whole_name)},
    };
    for (const auto &row : rows) {
        const Tree source = row.source;
        const Tree target = row.target;
        SCOPED_TRACE(row.why);
        clear_logs();
        EXPECT_EQ(0u, tvk_map_dfs_filter_con(ctx, source.get(), target.get()));
        EXPECT_TREE(row.expected, target);
        EXPECT_EQ(row.lines, logs());
    }
}

TEST_F(Phases, ChildrenThatAreMissingMarkNothing) {
    const Tree lost = node("top");
    lost->presence |= TVK_HAS_SUBTREES;
    lost->subtree_count = 2;
    const Tree whole = node("top")(node("x").type(1));
    const Node given = node("top")(node("x").type(1));
    state->walk_flags = TVK_WALK_CONTENT_MATCH_IN_REQUEST;
    tvk_map_dfs_filter_mark(ctx, lost.get(), whole.get());
    tvk_map_dfs_filter_con(ctx, lost.get(), whole.get());
    EXPECT_TREE(given, whole);
    tvk_map_dfs_filter_con(ctx, whole.get(), lost.get());
    EXPECT_EQ(0, lost->presence & TVK_HAS_NODE_KIND);
    lost->subtree_count = 0;
}

TEST_F(Phases, ContainerTracesItsTableAndNamesItself) {
    const Tree source = node("top")(node("unit").type(4)(key("name", "A"), key("id")));
    const Tree target = node("top")(node("unit")(leaf("name", "A"), leaf("id", "1")));
    mapping.context.dfs_trace = 1;
    mapping.context.trace_enabled = 1;
    tvk_map_dfs_filter_con(ctx, source.get(), target.get());
    const std::string level_0 = "TRC: \n ----stack:lvl- 0/NULL, ch:0, kch:";
    const std::string of_level_0 = ", dch:0, tp:0, kn:0,ksn:0,kmn=0, tra_st:0";
    const std::string level_1 = "TRC: \n ----stack:lvl- 1/top, ch:1, kch:";
    const std::string level_2 = "TRC: \n ----stack:lvl- 2/unit, ch:2, kch:1, dch:0, tp:4, kn:0,ksn:0,kmn=0, tra_st:";
    EXPECT_EQ((Lines{
                  "TRC: \n Child stats: top, lvl: 1, src_tot:1, cont:2,sel:0, mat:0,key:0, key_sel:0 key_match:0\n",
                  "TRC: \n              : drp:0, tgt_cont:1\n",
                  "TRC: \n src_key: A, tgt_key:A",
                  "TRC: \n stack-kc_start\n",
                  level_0 + "0" + of_level_0,
                  level_1 + "0, dch:0, tp:0, kn:0,ksn:0,kmn=0, tra_st:2",
                  level_2 + "0",
                  "TRC: \n",
                  "TRC: \n stack-kc_end\n",
                  level_0 + "1" + of_level_0,
                  level_1 + "1, dch:0, tp:0, kn:0,ksn:0,kmn=0, tra_st:2",
                  level_2 + "2",
                  "TRC: \n",
                  "TRC: \n Child stats: unit, lvl: 2, src_tot:2, cont:0,sel:0, mat:0,key:0, key_sel:1 key_match:1\n",
                  "TRC: \n              : drp:0, tgt_cont:2\n",
              }),
              logs());
    EXPECT_EQ(0u, traces().front().find("#1: TRC: tvk_map_dfs_process_con:"));
    EXPECT_EQ(3u, find(source, "unit")->schema_info.node_type) << "the source keeps its new type";
}

TEST_F(Phases, WalksUpEndWithTheLevelTable) {
    const Tree last = node("last");
    tvk_map_cnt_hier_stack_t levels[TVK_MAP_MAX_FILTER_LEVELS] = {};
    levels[TVK_MAP_MAX_FILTER_LEVELS - 1].node = last.get();
    EXPECT_EQ(1u, tvk_map_mark_visit_parent(ctx, levels, 1000));
    EXPECT_TREE(node("last").kind(kDrop), last);
    EXPECT_EQ(1, levels[0].dch);
    EXPECT_EQ(1u, tvk_map_mark_visit_parent_mark_kc(ctx, levels, 1000));
    EXPECT_TREE(node("last").kind(kNode), last);
    EXPECT_EQ(1, levels[0].kch);
    print_stack(ctx, levels, 1000, nullptr);
    EXPECT_EQ(1u + TVK_MAP_MAX_FILTER_LEVELS + 1u, logs().size());
    EXPECT_DEATH(print_stack(nullptr, levels, 0, ""), "void print_stack\\(tvk_map_ctx.*NULL != ctx");
}

TEST_F(Phases, Sweep) {
    const Node inner = node("kn").kind(kNode)(leaf("x", "1").kind(kAll), leaf("y", "2"));
    const struct {
        const char *why;
        Node tree, expected;
    } rows[] = {
        {"order stays, kept nodes are entered",
         node("t")(node("0").kind(0), node("ka").kind(kAll)(node("z")), inner, node("0").kind(0)),
         node("t")(node("ka").kind(kAll)(node("z")), node("kn").kind(kNode)(leaf("x", "1").kind(kAll)))},
        {"the other kinds drop", node("t")(node("dn").kind(1), node("da").kind(4), node("tt").kind(5)),
         node("t").with(TVK_HAS_SUBTREES)},
        {"a verdict without its bit is none", node("t")(node("a").kind(kAll).without(TVK_HAS_NODE_KIND)),
         node("t").with(TVK_HAS_SUBTREES)},
        {"a root kept whole is left alone", node("t").kind(kAll)(node("a")), node("t").kind(kAll)(node("a"))},
        {"a kept child without a tag goes with the dropped",
         node("t")(node("a"), leaf("k", "1").kind(kAll).without(TVK_HAS_TAG), leaf("b", "1").kind(kAll)),
         node("t")(leaf("b", "1").kind(kAll))},
        {"and stays where there are none", node("t")(root().data("1").kind(kAll)),
         node("t")(root().data("1").kind(kAll))},
    };
    for (const auto &row : rows) {
        const Tree tree = row.tree;
        SCOPED_TRACE(row.why);
        EXPECT_EQ(0u, tvk_map_dfs_filter_sweep(ctx, tree.get()));
        EXPECT_TREE(row.expected, tree);
    }
}

TEST_F(Phases, CompactionKeepsTheFrameworksBitsAndLosesWhatItCannotMove) {
    for (const int all_later_ones : {0, 1}) {
        const Tree tree = node("t")(node("a").with(0x8000u), leaf("b", "1").kind(kAll), leaf("c", "1").kind(kAll));
        tvk_platform_fail_allocation(3,
                                     all_later_ones);  // the root's element and the tag of b before it, its value not
        tvk_map_dfs_filter_sweep(ctx, tree.get());
        tvk_platform_fail_allocation(0, 0);
        Node left = node("t").with(TVK_HAS_SUBTREES);
        EXPECT_TREE(all_later_ones != 0 ? left : left(leaf("c", "1").kind(kAll)), tree);
        EXPECT_EQ(all_later_ones == 0, (tree->subtrees[0].presence & TVK_HAS_TAG) != 0) << "a slot is cleared";
        EXPECT_EQ(0, tree->subtrees[2].presence);
    }
    const Tree emptied = node("t")(node("a").with(0x8000u));
    tvk_map_dfs_filter_sweep(ctx, emptied.get());
    EXPECT_EQ(0x8000, emptied->subtrees[0].presence);
}

}  // namespace
