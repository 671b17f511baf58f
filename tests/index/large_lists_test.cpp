// The index with many entries, and with many parents. That it changes nothing else, the fuzz targets see.
#include <gtest/gtest.h>

#include <utility>

#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map.h"

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
