// With an index and without, everything is the same: the trees, what is found, statuses and messages. Two requests
// carry out the same random operations on equal trees, and only one of them has opted in.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <utility>

#include "context.h"
#include "kel_memory.h"
#include "status.h"
#include "tree.h"
#include "tvk_map.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"

using namespace tvk::test;
using Record = qidl_tvk_datatree;

namespace {

constexpr const char *kNs[] = {"urn:one", "urn:two"};
constexpr const char *kTags[] = {"list", "item", "id", "name", "box"};
constexpr const char *kLists[] = {"list", "item"};
constexpr const char *kKeys[] = {"id", "name"};

// "list[3]/id[0]" for a node below tree; "?" when it is not there.
std::string place_of(const Record &tree, const Record *node) {
    for (std::int32_t i = 0; i < tree.subtree_count; ++i) {
        const Record &child = tree.subtrees[i];
        const std::string step = (child.tag != nullptr ? child.tag : "") + ("[" + std::to_string(i) + "]");
        if (&child == node) {
            return step;
        }
        if (const std::string below = place_of(child, node); below != "?") {
            return step + "/" + below;
        }
    }
    return "?";
}

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}

    // 0 to count - 1.
    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(engine_); }
    bool one_in(int count) { return below(count) == 0; }
    template <typename T, std::size_t kSize>
    T pick(T (&from)[kSize]) {
        return from[below(static_cast<int>(kSize))];
    }
    std::string value() { return std::to_string(below(30)); }

private:
    std::mt19937 engine_;
};

// One of the two requests.
class World {
public:
    explicit World(std::uint32_t index_from) : tree_(root()(node("box", kNs[0]))) {
        mapping_.context.index_children_from = index_from;
    }

    // Carries out one operation that the numbers choose, and says what came of it.
    std::string step(Random random) {
        std::string result = act(random);
        tvk_map_datatree_reset_trim_path_ctx(ctx());
        return result;
    }

    std::string shown() const { return show(tree_); }

private:
    tvk_map_ctx ctx() const { return mapping_.ctx; }

    std::string outcome(qerrno status, const Record *node) const {
        return std::to_string(status) + " " + (node != nullptr ? place_of(*tree_, node) : "nothing");
    }

    // A node not too far below the top.
    Record *some_node(Random &random) const {
        Record *node = tree_.get();
        for (int depth = random.below(4); depth > 0 && node->subtree_count > 0; --depth) {
            node = &node->subtrees[random.below(node->subtree_count)];
        }
        return node;
    }

    std::string act(Random &random) {
        switch (random.below(12)) {
            case 0:
                return add_subtree(random);
            case 1:
                return add_subtree(random);
            case 2:
                return search(random, tvk_map_search_list);
            case 3:
            case 4:
                return search(random, tvk_map_search_or_add_list);
            case 5:
                return list_node(random);
            case 6:
                return is_present(random);
            case 7:
            case 8:
                return xpath(random);
            case 9:
            case 10:
                return rekey(random);
            default:
                return disturb(random);
        }
    }

    std::string add_subtree(Random &random) {
        Record *parent = some_node(random);
        const std::string value = random.value();
        const Record as_removed = [] {
            Record record{};
            record.operation = TVK_OPERATION_REMOVE;
            record.presence = TVK_HAS_OPERATION;
            return record;
        }();
        constexpr int kFlags[] = {0, 0, TVK_ADD_MATCH_TAG_ONLY, TVK_ADD_TEMPLATE_ON_PATH};
        Record *added = nullptr;
        const qerrno status = tvk_map_datatree_add_subtree_flagged(
            ctx(), parent, random.pick(kTags), random.pick(kNs), random.one_in(2) ? value.c_str() : nullptr,
            random.one_in(4) ? &as_removed : nullptr, &added, random.one_in(3) ? 1 : 0, random.pick(kFlags));
        return outcome(status, added);
    }

    template <typename Operation>
    std::string search(Random &random, Operation operation) {
        const char *const key = random.pick(kKeys);
        return search_for(random, operation, key, random.value());
    }

    template <typename Operation>
    std::string search_for(Random &random, Operation operation, std::string key, std::string value) {
        std::string path = std::string("box/") + random.pick(kLists);
        std::string ns = random.pick(kNs);
        const Record *entry = nullptr;
        const qerrno status = operation(ctx(), tree_.get(), &entry, path.data(), value.data(), key.data(),
                                        random.one_in(3) ? nullptr : ns.data());
        return outcome(status, entry);
    }

    std::string list_node(Random &random) {
        Record *parent = some_node(random);
        const std::string value = random.value();
        const char *const key = random.pick(kKeys);
        const char *const ns = random.pick(kNs);
        Record *entry = nullptr;
        const qerrno status =
            tvk_map_datatree_add_list_node(ctx(), parent, random.pick(kLists), ns, key, value.c_str(), &entry);
        std::string result = outcome(status, entry);
        if (entry != nullptr && !random.one_in(5)) {
            tvk_map_datatree_add_subtree(ctx(), entry, key, ns, value.c_str(), nullptr, nullptr, 0);
        }
        return result;
    }

    static void put(char *&text, const std::string &value) {
        kel_named_free(text);
        text = tvk_strdup(value.c_str(), "test");
    }

    // The former value is left to whoever holds it.
    void modify(const std::string &path, const std::string &value) {
        tvk_map_node_operation record{};
        record.root = tree_.get();
        record.op = TVK_XPATH_READ;
        record.kind = TVK_XPATH_LEAF;
        record.ns[0] = '-';
        path.copy(record.xpath, sizeof record.xpath - 1);
        if (tvk_map_tree_xpath_operations(ctx(), &record) == TVK_OK) {
            char *former = record.result->data;
            record.op = TVK_XPATH_MODIFY;
            record.value[value.copy(record.value, sizeof record.value - 1)] = '\0';
            tvk_map_tree_xpath_operations(ctx(), &record);
            kel_named_free(former);
        }
    }

    // An entry gets another value for its key, or a key at last, and is looked for by it.
    std::string rekey(Random &random) {
        Record &box = tree_->subtrees[0];
        if (box.subtree_count == 0) {
            return "no entries";
        }
        Record &entry = box.subtrees[random.below(box.subtree_count)];
        const std::string value = random.value();
        const char *const key = random.pick(kKeys);
        Record *leaf = nullptr;
        for (std::int32_t i = 0; i < entry.subtree_count; ++i) {
            Record &child = entry.subtrees[i];
            leaf = child.data != nullptr && child.tag != nullptr && std::string(child.tag) == key ? &child : leaf;
        }
        const int way = random.below(3);
        if (leaf != nullptr && entry.tag != nullptr && way == 0) {
            modify("/box/" + std::string(entry.tag) + "[" + key + "=" + leaf->data + "]/" + key, value);
        } else if (leaf != nullptr && way == 1) {
            tvk_map_forget_children(ctx(), &entry);
            put(leaf->data, value);
        } else {
            tvk_map_datatree_add_subtree_flagged(ctx(), &entry, key, kNs[0], value.c_str(), nullptr, nullptr,
                                                 random.one_in(3) ? 1 : 0, TVK_ADD_MATCH_TAG_ONLY);
        }
        return search_for(random, tvk_map_search_list, key, value);
    }

    std::string is_present(Random &random) {
        const Record *entry = nullptr;
        const std::string value = random.value();
        const int present = tvk_map_is_list_node_already_present(ctx(), tree_.get(), "box", "", random.pick(kKeys),
                                                                 value.c_str(), &entry);
        return outcome(static_cast<qerrno>(present), entry);
    }

    std::string xpath(Random &random) {
        std::string steps =
            std::string("/box/") + random.pick(kLists) + "[" + random.pick(kKeys) + "=" + random.value();
        steps += random.one_in(3) ? "][name=" + random.value() + "]/" : "]/";
        steps += random.pick(kTags);
        tvk_map_node_operation record{};
        constexpr std::uint32_t kOperations[] = {TVK_XPATH_ADD, TVK_XPATH_READ};
        record.root = tree_.get();
        record.op = random.pick(kOperations);
        record.kind = static_cast<std::uint32_t>(TVK_XPATH_CONTAINER + random.below(4));
        random.value().copy(record.value, sizeof record.value - 1);
        std::string(random.pick(kNs)).copy(record.ns, sizeof record.ns - 1);
        steps.copy(record.xpath, sizeof record.xpath - 1);
        const qerrno status = tvk_map_tree_xpath_operations(ctx(), &record);
        return outcome(status, record.result) + " " + record.value;
    }

    // What takes nodes away, what mapping code may change at any time, and what it announces.
    std::string disturb(Random &random) {
        Record *node = some_node(random);
        switch (random.below(5)) {
            case 0:
                return outcome(tvk_map_datatree_remove_last_subtree(ctx(), node), nullptr);
            case 1:
                node->operation = static_cast<std::uint32_t>(random.below(5));
                return "operation";
            case 2:
                return announced_change(random, *node);
            case 3:
                return "mark " + mark(random);
            default:
                return outcome(tvk_map_add_subtrees_from_source_to_target(ctx(), some_node(random), leaf_box(random)),
                               nullptr);
        }
    }

    // A box that nobody else stands below.
    Record *leaf_box(Random &random) {
        source_ = Tree(node("box", kNs[0])(node(random.pick(kLists))(leaf(random.pick(kKeys), random.value())),
                                           node(random.pick(kLists))(leaf(random.pick(kKeys), random.value()))));
        return source_.get();
    }

    std::string announced_change(Random &random, Record &parent) {
        if (parent.subtree_count == 0) {
            return "no children";
        }
        tvk_map_forget_children(ctx(), random.one_in(2) ? &parent : nullptr);
        Record &child = parent.subtrees[random.below(parent.subtree_count)];
        const std::string value = random.value();
        switch (random.below(3)) {
            case 0:
                child.subtree_index = random.below(2);
                break;
            case 1:
                put(child.tag, random.pick(kTags));
                if (random.one_in(20)) {
                    kel_named_free(std::exchange(child.tag, nullptr));
                }
                break;
            default:
                put(child.data, value);
                child.presence |= TVK_HAS_DATA;
        }
        return search_for(random, tvk_map_search_list, "id", value);
    }

    std::string mark(Random &random) {
        Tree filter = root()(node("box")(
            node(random.pick(kLists)).type(TVK_NODE_TYPE_LIST)(leaf(random.pick(kKeys), random.value()).key()),
            node(random.pick(kLists)).type(TVK_NODE_TYPE_LIST)(leaf("id", random.value()).key(), node("name").key())));
        tvk_map_dfs_filter_mark(ctx(), filter.get(), tree_.get());
        if (random.one_in(8)) {
            tvk_map_dfs_filter_sweep(ctx(), tree_.get());
        }
        return shown();
    }

    Tree tree_;
    Tree source_{root()};
    MappingContext mapping_;
};

// The messages of either one, with the addresses in them taken out.
Lines messages(const LogCapture &log) {
    Lines lines = log.logs();
    for (std::string &line : lines) {
        for (std::size_t at = line.find("0x"); at != std::string::npos; at = line.find("0x", at)) {
            std::size_t end = line.find_first_not_of("0123456789abcdef", at + 2);
            line.erase(at, (end == std::string::npos ? line.size() : end) - at);
        }
    }
    return lines;
}

struct Setting {
    unsigned seed;
    std::uint32_t index_from;
    std::uint32_t log_level;
    bool short_of_memory;  // in every other operation
};

class Index : public HeapTest {};

class Equivalence : public HeapTest, public ::testing::WithParamInterface<Setting> {};

}  // namespace

TEST_P(Equivalence, RandomOperations) {
    const Setting &run = GetParam();
    LogCapture log(run.log_level);
    World scan(0);
    World index(run.index_from);
    std::mt19937 steps(run.seed);
    for (int i = 0; i < 400; ++i) {
        const unsigned seed = static_cast<unsigned>(steps());
        log.clear();
        const std::string expected = scan.step(Random(seed));
        const Lines expected_messages = messages(log);
        log.clear();
        tvk_platform_fail_tag(run.short_of_memory && seed % 2 == 0 ? "TVK MAP index" : nullptr);
        const std::string actual = index.step(Random(seed));
        tvk_platform_fail_tag(nullptr);
        ASSERT_EQ(expected, actual) << "operation " << i;
        ASSERT_EQ(expected_messages, messages(log)) << "operation " << i;
        if (i % 20 == 0) {
            ASSERT_EQ(scan.shown(), index.shown()) << "after operation " << i;
        }
    }
    EXPECT_EQ(scan.shown(), index.shown());
}

// Many entries, each key several times: the first of them is found whatever the lookup structure looks like inside.
TEST_F(Index, FirstOfSeveralEntries) {
    constexpr int kKeysInUse = 700;
    MappingContext mapping;
    mapping.context.index_children_from = 16;
    Tree tree = root()(node("box", kNs[0]));
    for (int i = 0; i < 3 * kKeysInUse; ++i) {
        const std::string value = std::to_string(i * i % kKeysInUse);
        Record *entry = nullptr;
        tvk_map_datatree_add_subtree(mapping.ctx, tree->subtrees, "list", kNs[0], nullptr, nullptr, &entry, 1);
        tvk_map_datatree_add_subtree(mapping.ctx, entry, "id", kNs[0], value.c_str(), nullptr, nullptr, 0);
        const Record *found = nullptr;
        char path[] = "box/list";
        char key[] = "id";
        std::string wanted = value;
        EXPECT_STATUS(TVK_OK, tvk_map_search_list(mapping.ctx, tree.get(), &found, path, wanted.data(), key, nullptr));
        int first = 0;
        while (first * first % kKeysInUse != i * i % kKeysInUse) {
            ++first;
        }
        ASSERT_EQ(&tree->subtrees->subtrees[first], found) << "entry " << i;
    }
}

// More parents than are remembered come up while one list is gone through.
TEST_F(Index, ManyParentsDuringOneSearch) {
    MappingContext mapping;
    mapping.context.index_children_from = 1;
    std::vector<tvk::test::Node> entries(
        4000, node("list").op(TVK_OPERATION_REMOVE)(node("box"), leaf("id", "1"), leaf("name", "a")));
    Tree tree = root()(node("box", kNs[0]).children(entries));
    tvk_map_node_operation record{};
    record.root = tree.get();
    record.kind = TVK_XPATH_LEAF;
    std::string(kNs[0]).copy(record.ns, sizeof record.ns - 1);
    std::string("/box/list[id=1]/name").copy(record.xpath, sizeof record.xpath - 1);
    record.op = TVK_XPATH_READ;
    for (int i = 0; i < 2; ++i) {
        EXPECT_STATUS(TVK_OK, tvk_map_tree_xpath_operations(mapping.ctx, &record));
    }
    record.op = TVK_XPATH_ADD;  // passes over all that are removed
    EXPECT_STATUS(TVK_OK, tvk_map_tree_xpath_operations(mapping.ctx, &record));
    EXPECT_EQ(4001, tree->subtrees->subtree_count);
}

// Adding entries to a list of one tree, in a request that is not like others.
struct Additions {
    Node top;
    std::function<void(MappingContext &, Record &)> prepare = [](MappingContext &, Record &) {};
    std::string path = "box/list";
    std::string key = "id";
    const char *ns = kNs[0];
};

// What comes of it. The first search makes the index, the second one comes as the request was prepared.
std::string add_entries(Additions list, std::uint32_t index_from) {
    LogCapture log(TVK_LOG_LEVEL_ERR);
    tvk_platform_set_router_type(0);
    const Tree tree = list.top;
    MappingContext mapping;
    mapping.context.index_children_from = index_from;
    std::string ns = list.ns != nullptr ? list.ns : "";
    std::string result;
    for (std::string value : {"8", "9"}) {
        const Record *entry = nullptr;
        const qerrno status =
            tvk_map_search_or_add_list(mapping.ctx, tree.get(), &entry, list.path.data(), value.data(), list.key.data(),
                                       list.ns != nullptr ? ns.data() : nullptr);
        result += std::to_string(status) + " " + (entry != nullptr ? place_of(*tree, entry) : "nothing") + "\n";
        tvk_map_free_trim_path_list_ctx(mapping.ctx);
        list.prepare(mapping, *tree->subtrees);
    }
    const char *error_xpath = mapping.state->error_xpath;
    return result + (error_xpath != nullptr ? error_xpath : "") + joined(messages(log)) + show(tree);
}

// A search that ends without an entry adds one. What adding its path would meet is met with an index, too.
TEST_F(Index, AddsWhereThePathLeads) {
    const auto box = [](const Node &entry = node("list").index(1)(leaf("id", "1"))) {
        return node("box", kNs[0])(entry);
    };
    const auto with_flags = [](std::uint32_t flags) {
        return [flags](MappingContext &mapping, Record &) { mapping.state->build_flags = flags; };
    };
    const auto pending = [](MappingContext &mapping, Record &top) {
        mapping.state->pending_trim_path = tvk_strdup("box", "test");
        mapping.state->pending_list_node = &top.subtrees[0];
    };
    const auto output_entry = [&](MappingContext &mapping, Record &top) {
        pending(mapping, top);
        tvk_add_to_output_list_ctx(mapping.ctx);
    };
    const auto recorded = [](MappingContext &mapping, Record &) {
        mapping.state->path_record_mode = TVK_PATH_RECORD_KEEP_LAST;
    };
    const Tree filter = node("box")(node("item"));
    const auto filtered = [&](MappingContext &mapping, Record &) {
        mapping.state->build_flags = TVK_BUILD_FILTERED;
        mapping.state->datatree = filter.get();
    };
    char interface_name[] = "bundle.0";
    const auto placed = [&](MappingContext &mapping, Record &) {
        mapping.context.intf_config_flag = 1;
        mapping.context.intf_name = interface_name;
    };
    const auto excluded = [](MappingContext &, Record &) { tvk_platform_set_router_type(7); };
    const Node configuration = node("interface-configuration", kNs[0])
                                   .index(1)(leaf("interface-name", interface_name), node("interface-virtual"));
    const Additions kCases[] = {
        {root()(box())},
        {root()(box()(node("list")))},
        {root()(box()(node("list").index(2), node("list")(leaf("id", "2"))))},
        {root()(box()(node("list")(leaf("id", "2"))))},
        {root()(box().index(1), box().index(2))},
        {root()(box().without(TVK_HAS_NS), box())},
        {root()(box().without(TVK_HAS_TAG), box())},
        {.top = root()(box(node("list").index(1)(leaf("", "1")))), .key = ""},
        {root()(node("vrrp", kNs[0])(node("list").index(1)(leaf("id", "1")))), excluded, "vrrp/list"},
        {root()(box().op(TVK_OPERATION_REMOVE)), with_flags(TVK_BUILD_REPLACE_MERGING)},
        {root()(box()), with_flags(TVK_BUILD_ERROR_NODE)},
        {root()(box()), pending},
        {root()(box()), output_entry},
        {root()(box()), recorded},
        {root()(box()), filtered},
        {.top = root()(box(node("list").index(1)(leaf("config/id", "1")))), .key = "config/id"},
        {.top = root()(node("list").index(1)(leaf("id", "1"))), .path = "list", .ns = nullptr},
        {root()(configuration), placed, "interface-configuration", "interface-name"},
    };
    for (const Additions &list : kCases) {
        EXPECT_EQ(add_entries(list, 0), add_entries(list, 1)) << show(list.top) << list.path;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Equivalence, ::testing::ValuesIn([] {
                             std::vector<Setting> runs;
                             for (unsigned seed = 1; seed <= 24; ++seed) {
                                 runs.push_back({seed, seed % 3 == 0 ? 16u : 1u,
                                                 seed % 2 == 0 ? TVK_LOG_LEVEL_TRC : TVK_LOG_LEVEL_ERR, seed % 5 == 0});
                             }
                             return runs;
                         }()),
                         [](const auto &run) { return "seed" + std::to_string(run.param.seed); });
