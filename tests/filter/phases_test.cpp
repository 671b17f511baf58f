// Container phase and sweep on trees that each show one rule; what the mark phase does is the oracle's to say.
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

TEST_F(Phases, KeysAreComparedByTheirNumber) {
    const Tree behind = node("e")(node("other"), key("k", "1"));  // as if they were the first children
    tvk_map_key_info keys;
    EXPECT_EQ(1u, tvk_map_datatree_get_keys(behind.get(), &keys));
    const Tree with_other = node("e")(node("other"), leaf("k", "2")), without = node("e")(leaf("k", "1"));
    EXPECT_EQ(1u, tvk_map_datatree_compare_keys(behind.get(), &keys, with_other.get()));
    EXPECT_EQ(0u, tvk_map_datatree_compare_keys(behind.get(), &keys, without.get()));
    const Tree filter = node("top")(node("e").type(TVK_NODE_TYPE_LIST)(leaf("other", "9"), key("k", "1")));
    const Tree response =
        node("top")(node("e")(leaf("other", "9"), leaf("k", "2")), node("e")(leaf("other", "8"), leaf("k", "1")));
    tvk_map_dfs_filter_mark(ctx, filter.get(), response.get());
    EXPECT_EQ(kNode, response->subtrees[0].node_kind);
    EXPECT_EQ(0u, response->subtrees[1].node_kind);
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
    const std::string all_dropped = "TRC: \n delete trigger all nodes dropped";
    const std::string key_failed = "TRC: \n delete trigger key does not match ";
    const std::string z_is_not_a = "TRC: \n src_key: Z, tgt_key:A|" + key_failed;
    const std::string content_failed = "TRC: \n delete trigger cnt does not match";
    const Node name = leaf("name", "A"), whole_name = Node(name).kind(kAll), dropped_name = Node(name).kind(kDrop);
    const Node vlan = leaf("vlan", "1"), kept_vlan = Node(vlan).kind(kNode), dropped_vlan = Node(vlan).kind(kDrop);
    const Node vlan_one = leaf("vlan", "1").type(6), vlan_two = leaf("vlan", "2").type(6);
    const Node asks_for_vlan = node("vlan").type(1), untyped_key = node("name").key(), any_id = node("id").key();
    const Node key_a = key("name", "A"), key_z = key("name", "Z"), name_b = leaf("name", "B");
    const Node c = node("c").type(3)(node("x").type(1));
    const auto entries = [](const Node &first, const Node &second) {
        return node("top")(node("list").type(3)(node("unit").type(4)(first), node("unit").type(4)(second)));
    };
    // One part is selected, two others have content that differs.
    const auto asking = [](const char *tag) {
        const Node y = leaf("y", "1").type(6);
        return node(tag).type(3)(node("c").type(3)(y), node("e").type(3)(y), node("d").type(3)(node("x").type(1)));
    };
    const Node y = leaf("y", "2"), x = leaf("x", "5");
    const auto asked = [&](const char *tag) { return node(tag)(node("c")(y), node("e")(y), node("d")(x)); };
    const auto kept = [&](const char *tag) {
        const Node dropped_y = Node(y).kind(kDrop);
        return node(tag).kind(kNode)(node("c").kind(kDrop)(dropped_y), node("e").kind(kDrop)(dropped_y),
                                     node("d").kind(kNode)(Node(x).kind(kNode)));
    };
    const struct {
        const char *why;
        Node source, target, expected;
        std::string lines = "";
    } rows[] = {
        {"a selection keeps what it names", filter_of(asks_for_vlan), response_of(name, vlan),
         marked(kNode, kNode, dropped_name, kept_vlan)},
        {"also one of type 2 with a value", filter_of(leaf("vlan", "9").type(2)), response_of(name, vlan),
         marked(kNode, kNode, dropped_name, kept_vlan)},
        {"which does nothing in one of type 1", filter_of(leaf("vlan", "9").type(1)), response_of(vlan),
         marked(kDrop, kDrop, dropped_vlan), all_dropped},
        {"a key keeps its whole entry", filter_of(key_a), response_of(name, vlan),
         marked(kNode, kAll, whole_name, vlan)},
        {"beside a container the key alone", filter_of(key_a, c),
         response_of(name, node("c")(leaf("x", "1"), leaf("y", "1"))),
         marked(kNode, kNode, whole_name,
                node("c").kind(kNode)(leaf("x", "1").kind(kNode), leaf("y", "1").kind(kDrop)))},
        {"and beside a selection as a node", filter_of(key_a, node("name").type(1)), response_of(name, vlan),
         marked(kNode, kNode, Node(name).kind(kNode), dropped_vlan)},
        {"but not where all else is dropped", filter_of(key_a, any_id), response_of(name, vlan),
         marked(kNode, kDrop, whole_name, dropped_vlan), all_dropped},
        {"a key that differs drops upwards", filter_of(key_z), response_of(name, vlan),
         marked(kDrop, kDrop, dropped_name, vlan), z_is_not_a},
        {"as does one that is not there", filter_of(key("id", "Z")), response_of(name), marked(kDrop, kDrop, name),
         key_failed},
        {"one that matches brings back what it dropped", entries(key_a, key_z), response_of(name),
         marked(kNode, kAll, whole_name), z_is_not_a},
        {"unless it met a differing value before", entries(key_a, key_z), response_of(name_b, name),
         marked(kDrop, kAll, name_b, whole_name), z_is_not_a},
        {"a key that differs from one that is kept for good passes",
         node("top")(node("list").type(3)(node("unit").type(4)(key_z, node("d").type(3)),
                                          node("unit").type(4)(key_a, node("d").type(3)))),
         response_of(name, node("d")), marked(kNode, kNode, whole_name, node("d").kind(kAll))},
        {"an entry with a compared key is not dropped upwards", filter_of(key_a, any_id, any_id),
         response_of(name_b, name), marked(kNode, kDrop, Node(name_b).kind(kDrop), whole_name), all_dropped},
        {"nor is one that selects by key", filter_of(key("id")), response_of(vlan), marked(kNode, kDrop, dropped_vlan),
         all_dropped},
        {"a key without type does not hold an entry", filter_of(untyped_key, node("id").type(1)),
         response_of(name, vlan), marked(kDrop, kDrop, Node(name).kind(kNode), dropped_vlan), all_dropped},
        {"of which all else was dropped below", filter_of(untyped_key, c), response_of(name, node("c")(leaf("y", "1"))),
         marked(kDrop, kDrop, Node(name).kind(kNode), node("c").kind(kDrop)(leaf("y", "1").kind(kDrop))), all_dropped},
        {"content that matches keeps the whole node", filter_of(vlan_one), response_of(name, vlan),
         marked(kNode, kAll, name, vlan)},
        {"beside a container itself", filter_of(vlan_one, node("c").type(3)), response_of(name, vlan, node("c")),
         marked(kNode, kNode, dropped_name, leaf("vlan", "1").kind(kAll), node("c").kind(kAll))},
        {"content that differs drops its node, not a sibling", filter_of(vlan_one),
         node("top")(node("list")(node("unit")(vlan), node("unit")(leaf("vlan", "2")))),
         node("top").kind(kNode)(node("list").kind(kNode)(node("unit").kind(kAll)(vlan),
                                                          node("unit").kind(kDrop)(leaf("vlan", "2").kind(kDrop)))),
         content_failed},
        {"and passes where that is kept", entries(vlan_two, asks_for_vlan), response_of(vlan),
         marked(kNode, kAll, kept_vlan)},
        {"what is kept whole is not looked at again", node("top")(node("list").type(3)(node("z")), node("list")),
         response_of(name), node("top").kind(kNode)(node("list").kind(kAll)(node("unit")(name)))},
        {"bgp of level 2, and of no other, is left alone", node("bgp")(node("bgp")(node("x").type(1))),
         node("bgp")(node("bgp")(node("y"))), node("bgp").kind(kNode)(node("bgp")(node("y")))},
        {"a target without children is dropped", filter_of(asks_for_vlan), response_of(), marked(kDrop, kDrop),
         all_dropped},
        {"drops below a sibling do not count", node("top").type(3)(asking("a"), asking("b")),
         node("top")(asked("a"), asked("b")), node("top").kind(kNode)(kept("a"), kept("b")),
         content_failed + "|" + content_failed + "|" + content_failed + "|" + content_failed},
        {"a tag that is missing abandons, and marks stay", node("top")(key_a, root().data("1").type(6)),
         node("top")(name), node("top")(whole_name)},
    };
    for (const auto &row : rows) {
        const Tree source = row.source;
        const Tree target = row.target;
        SCOPED_TRACE(row.why);
        clear_logs();
        EXPECT_EQ(0u, tvk_map_dfs_filter_con(ctx, source.get(), target.get()));
        EXPECT_TREE(row.expected, target);
        EXPECT_EQ(row.lines, joined(logs()));
    }
}

TEST_F(Phases, ContainerTracesItsTableAndNamesItself) {
    const Tree source = node("top")(node("unit").type(4)(key("name", "A"), key("id")));
    const Tree target = node("top")(node("unit")(leaf("name", "A"), leaf("id", "1")));
    mapping.context.dfs_trace = 1;
    mapping.context.trace_enabled = 1;
    tvk_map_dfs_filter_con(ctx, source.get(), target.get());
    const std::string level = "TRC: \n ----stack:lvl- ", dropped = ", dch:0, tp:0, kn:0,ksn:0,kmn=0, tra_st:";
    const std::string level_2 = level + "2/unit, ch:2, kch:1, dch:0, tp:4, kn:0,ksn:0,kmn=0, tra_st:";
    const Lines lines = logs();
    ASSERT_EQ(15u, lines.size());
    EXPECT_EQ("TRC: \n Child stats: top, lvl: 1, src_tot:1, cont:2,sel:0, mat:0,key:0, key_sel:0 key_match:0\n",
              lines[0]);
    EXPECT_EQ("TRC: \n              : drp:0, tgt_cont:1\n", lines[1]);
    EXPECT_EQ("TRC: \n src_key: A, tgt_key:A|TRC: \n stack-kc_start\n", lines[2] + "|" + lines[3]);
    EXPECT_EQ(level + "0/NULL, ch:0, kch:0" + dropped + "0", lines[4]);
    EXPECT_EQ(level + "1/top, ch:1, kch:0" + dropped + "2", lines[5]);
    EXPECT_EQ(level_2 + "0|TRC: \n|TRC: \n stack-kc_end\n", lines[6] + "|" + lines[7] + "|" + lines[8]);
    EXPECT_EQ(level + "0/NULL, ch:0, kch:1" + dropped + "0", lines[9]);
    EXPECT_EQ(level_2 + "2", lines[11]);
    EXPECT_EQ("TRC: \n Child stats: unit, lvl: 2, src_tot:2, cont:0,sel:0, mat:0,key:0, key_sel:1 key_match:1\n",
              lines[13]);
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

TEST_F(Phases, CompactionMovesWithoutMemoryAndKeepsTheFrameworksBits) {
    const Tree tree =
        node("t")(node("a").with(0x8000u), leaf("b", "1").kind(kAll), node("c").kind(kAll)(leaf("d", "1")));
    const char *const value = tree->subtrees[1].data;
    tvk_platform_fail_allocation(2, 1);  // all but the root's element
    tvk_map_dfs_filter_sweep(ctx, tree.get());
    tvk_platform_fail_allocation(0, 0);
    EXPECT_TREE(node("t")(leaf("b", "1").kind(kAll), node("c").kind(kAll)(leaf("d", "1"))), tree);
    EXPECT_EQ(value, tree->subtrees[0].data);
    EXPECT_EQ(nullptr, tree->subtrees[2].tag) << "what moved is not there twice";
    EXPECT_EQ(0, tree->subtrees[2].presence);
    const Tree whole = node("t").kind(kAll)(node("a"));
    tvk_platform_fail_allocation(1, 1);
    tvk_map_dfs_filter_sweep(ctx, whole.get());
    tvk_platform_fail_allocation(0, 0);
    EXPECT_TREE(node("t").kind(kAll)(node("a")), whole);
    const Tree emptied = node("t")(node("a").with(0x8000u));
    tvk_map_dfs_filter_sweep(ctx, emptied.get());
    EXPECT_EQ(0x8000, emptied->subtrees[0].presence);
}

}  // namespace
