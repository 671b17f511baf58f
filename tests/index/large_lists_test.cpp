// The index with many entries, and with many parents. That it changes nothing else, the fuzz targets see.
#include <gtest/gtest.h>

#include <utility>

#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map.h"
#include "tvk_platform_control.h"

using namespace tvk::test;
using Record = qidl_tvk_datatree;

namespace {

constexpr char kNs[] = "urn:one";

class Index : public HeapTest {};

// Many entries, each key several times: the first of them is found whatever the lookup structure looks like inside.
TEST_F(Index, FirstOfSeveralEntries) {
    constexpr int kKeysInUse = 700;
    MappingContext mapping;
    mapping.context.index_children_from = 16;
    Tree tree = root()(node("box", kNs));
    for (int i = 0; i < 3 * kKeysInUse; ++i) {
        const std::string value = std::to_string(i * i % kKeysInUse);
        Record *entry = nullptr;
        tvk_map_datatree_add_subtree(mapping.ctx, tree->subtrees, "list", kNs, nullptr, nullptr, &entry, 1);
        tvk_map_datatree_add_subtree(mapping.ctx, entry, "id", kNs, value.c_str(), nullptr, nullptr, 0);
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

// What is found while entries are given other keys, lose them or go, one at a time; and the allocations for it.
std::pair<std::string, std::uint64_t> change_entries(std::uint32_t index_children_from) {
    constexpr int kEntries = 1000, kSteps = 4000;
    std::vector<Node> entries;
    for (int i = 0; i < kEntries; ++i) {
        entries.push_back(node("list").index(i + 1)(leaf("id", std::to_string(i % 300))));
    }
    const Tree tree = node("box", kNs).children(entries);
    MappingContext mapping;
    mapping.context.index_children_from = index_children_from;
    std::string found;
    tvk_platform_fail_allocation(0, 0);  // counts from here
    unsigned number = 1;
    for (int step = 0; step < kSteps; ++step) {
        number = number * 1103515245 + 12345;
        std::string value = std::to_string(number / 65536 % 300);
        Record *entry = &tree->subtrees[number / 256 % static_cast<unsigned>(tree->subtree_count)];
        if (step % 4 == 0) {
            tvk_map_datatree_remove_last_subtree(mapping.ctx, tree.get());
        } else if (step % 8 == 1) {
            tvk_map_datatree_add_subtree(mapping.ctx, tree.get(), "list", kNs, nullptr, nullptr, &entry, 1);
            tvk_map_datatree_add_subtree(mapping.ctx, entry, "id", kNs, value.c_str(), nullptr, nullptr, 0);
        } else {
            tvk_map_forget_children(mapping.ctx, entry);
            std::swap(entry->subtrees->tag[0], entry->subtrees->tag[1]);  // the key is lost, or found again
            tvk_map_datatree_add_subtree(mapping.ctx, entry, "id", kNs, value.c_str(), nullptr, nullptr, 0);
        }
        const Record *first = nullptr;
        char path[] = "list", key[] = "id";
        tvk_map_search_list(mapping.ctx, tree.get(), &first, path, value.data(), key, nullptr);
        found += (first != nullptr ? place_of(*tree, first) : "none") + " ";
    }
    return {found, tvk_platform_allocation_count()};
}

TEST_F(Index, EntriesThatChangeAreLookedAtAloneAgain) {
    const auto scanned = change_entries(0), indexed = change_entries(16);
    EXPECT_EQ(scanned.first, indexed.first);
    EXPECT_LT(indexed.second, scanned.second + 200) << "no table is made anew for one entry";
}

// More parents than are remembered: those that are dropped are gone through again. None of them comes up while entries
// of one list are compared, which could drop that list.
TEST_F(Index, ManyParents) {
    constexpr int kParents = 1100;
    MappingContext mapping;
    mapping.context.index_children_from = 1;
    const Node box = node("box").op(TVK_OPERATION_REMOVE)(leaf("id", "0"), node("list")(leaf("id", "0")),
                                                          node("list")(leaf("id", "1")));
    Tree tree = node("top", kNs).children(std::vector<Node>(kParents, box));
    for (int i = 0; i < 3 * kParents; ++i) {
        Record &parent = tree->subtrees[i % kParents];
        const Record *found = nullptr;
        char path[] = "list", key[] = "id", wanted[] = "1";
        EXPECT_STATUS(TVK_OK, tvk_map_search_list(mapping.ctx, &parent, &found, path, wanted, key, nullptr));
        ASSERT_EQ(&parent.subtrees[2], found) << "search " << i;
    }
    tvk_map_node_operation record{};
    record.root = tree.get();
    record.kind = TVK_XPATH_LEAF;
    std::string(kNs).copy(record.ns, sizeof record.ns - 1);
    std::string("/box[id=0]/id").copy(record.xpath, sizeof record.xpath - 1);
    for (const std::uint32_t op : {TVK_XPATH_READ, TVK_XPATH_READ, TVK_XPATH_ADD}) {
        record.op = op;
        EXPECT_STATUS(TVK_OK, tvk_map_tree_xpath_operations(mapping.ctx, &record));
    }
    EXPECT_EQ(kParents + 1, tree->subtree_count) << "all that are removed were passed over";
}

}  // namespace
