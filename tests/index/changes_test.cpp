// Children that change while they are indexed: whatever is done, the same is found as by going through them.
#include <random>

#include "context.h"
#include "kel_memory.h"
#include "status.h"
#include "tree.h"
#include "tvk_map.h"
#include "tvk_string.h"

using namespace tvk::test;
using Record = qidl_tvk_datatree;

namespace {

constexpr char kNs[] = "urn:one";

// A list with children of other names among its entries, in a request of its own. One of two runs has an index; both
// draw the same changes.
class Changes {
public:
    Changes(unsigned seed, std::uint32_t index_children_from) : random_(seed) {
        mapping_.context.index_children_from = index_children_from;
    }

    std::string run(int steps) {
        for (int step = 0; step < steps; ++step) {
            found_ += std::to_string(step) + ":";
            change();
            search();
        }
        return found_ + "\n" + show(*tree_);
    }

private:
    static constexpr unsigned kKeys = 40;

    unsigned below(unsigned count) { return static_cast<unsigned>(random_() % count); }
    std::string some_value() { return std::to_string(below(kKeys)); }
    std::string some_tag() { return "tag" + std::to_string(below(60)); }
    Record &box() { return *tree_->subtrees; }
    Record *some_child() {
        return box().subtree_count > 0 ? &box().subtrees[below(static_cast<unsigned>(box().subtree_count))] : nullptr;
    }
    void tell(const Record *node) { found_ += (node != nullptr ? place_of(*tree_, node) : "none") + " "; }

    void add(Record &parent, const std::string &tag, const char *value, int append) {
        Record *added = nullptr;
        tvk_map_datatree_add_subtree(mapping_.ctx, &parent, tag.c_str(), kNs, value, nullptr, &added, append);
        tell(added);
    }
    void add_entry(const std::string &value) {
        Record *entry = nullptr;
        const char *ns = below(4) != 0 ? kNs : "urn:two";
        tvk_map_datatree_add_list_node(mapping_.ctx, &box(), "list", ns, "id", value.c_str(), &entry);
        tell(entry);
        if (entry->subtree_count == 0) {
            add(*entry, "id", value.c_str(), 0);
        }
    }
    // By the caller itself, of a node about which the index has been told.
    void put(Record *parent, const char *tag) {
        if (parent == nullptr || parent->subtree_count == 0) {
            return;
        }
        Record &leaf = parent->subtrees[0];
        kel_named_free(leaf.data);
        leaf.data = tvk_strdup(some_value().c_str(), "test");
        leaf.presence |= TVK_HAS_DATA;
        if (tag != nullptr) {
            kel_named_free(leaf.tag);
            leaf.tag = tvk_strdup(tag, "test");
        }
    }
    void modify_by_xpath() {
        tvk_map_node_operation record{};
        record.root = tree_.get();
        record.op = TVK_XPATH_READ;
        record.kind = TVK_XPATH_LEAF;
        std::string(kNs).copy(record.ns, sizeof record.ns - 1);
        ("/box/list[id=" + some_value() + "]/id").copy(record.xpath, sizeof record.xpath - 1);
        if (tvk_map_tree_xpath_operations(mapping_.ctx, &record) != TVK_OK) {
            return;
        }
        tell(record.result);
        char *former = record.result->data;
        record.op = TVK_XPATH_MODIFY;
        some_value().copy(record.value, sizeof record.value);
        record.value[2] = '\0';
        EXPECT_EQ(TVK_OK, tvk_map_tree_xpath_operations(mapping_.ctx, &record));
        kel_named_free(former);
    }
    void sweep_some() {
        for (std::int32_t i = 0; i < box().subtree_count; ++i) {
            box().subtrees[i].node_kind = below(8) != 0 ? TVK_NODE_KIND_KA : TVK_NODE_KIND_NONE;
            box().subtrees[i].presence |= TVK_HAS_NODE_KIND;
        }
        tvk_map_dfs_filter_sweep(mapping_.ctx, &box());
    }
    void change_something() {
        Record *child = some_child();
        switch (below(12)) {
            case 0:
                add_entry("last");
                look_for("id", "last");
                tvk_map_datatree_remove_last_subtree(mapping_.ctx, &box());
                return add_entry(below(2) != 0 ? "last" : some_value());
            case 1:
                return modify_by_xpath();
            case 2:
                tvk_map_forget_children(mapping_.ctx, child);
                return put(child, "id");
            case 3:
                tvk_map_forget_children(mapping_.ctx, child);
                return put(child, below(2) != 0 ? "name" : nullptr);
            case 4:
                return below(10) == 0 ? sweep_some() : void();
            case 5:
                return child != nullptr ? add(*child, below(2) != 0 ? "id" : "name", some_value().c_str(), 0) : void();
            case 6:
                return child != nullptr ? add(*child, "id", some_value().c_str(), 1) : void();  // a second key
            default:
                return add_entry(some_value());
        }
    }
    void change() {
        for (unsigned count = below(4); count > 0; --count) {  // several between two searches
            change_something();
        }
        switch (below(4)) {
            case 0:
                return add(box(), some_tag(), nullptr, 1);
            case 1:
                return add(box(), some_tag(), nullptr, 0);
            default:
                return;
        }
    }
    void look_for(std::string key, std::string value) {
        std::string path = "list";
        const Record *entry = &box();
        tvk_map_iterate_list(mapping_.ctx, &entry, key.data(), value.data(), path.data(), nullptr);
        tell(entry);
    }
    void search() {
        for (const char *key : {"id", "name"}) {
            look_for(key, some_value());
        }
        for (const std::string &tag : {some_tag(), std::string("list")}) {
            std::string path = "box/" + tag + "/x";
            const Record *node = tree_.get();
            tvk_map_get_list(mapping_.ctx, &node, path.data(), nullptr);
            tell(node);
        }
        for (const char *tag : {"id", "name"}) {  // below an entry, whose children are indexed as well
            std::string path = tag;
            const Record *child = some_child();
            if (child != nullptr && tvk_map_get_list(mapping_.ctx, &child, path.data(), nullptr) == TVK_OK) {
                const Record *leaf = nullptr;
                tvk_map_datatree_get_subtree(child, &leaf, tag, nullptr, nullptr);
                tell(leaf);
            }
        }
    }

    std::mt19937 random_;
    const Tree tree_ = root()(node("box", kNs));
    MappingContext mapping_;
    std::string found_;
};

class IndexedChanges : public HeapTest {};

TEST_F(IndexedChanges, AreFoundAsByGoingThroughThem) {
    for (unsigned seed = 0; seed < 12; ++seed) {
        const std::string expected = Changes(seed, 0).run(300);
        for (const std::uint32_t from : {1u, 16u}) {
            ASSERT_EQ(expected, Changes(seed, from).run(300)) << "seed " << seed << ", from " << from;
        }
    }
}

// While a container is replaced it has no children, and then it has them again.
TEST_F(IndexedChanges, ChildrenThatComeBackAreFound) {
    static Record *list = nullptr;
    static int found = 0;
    const auto search = [](tvk_map_ctx ctx, const Record *, std::uint32_t, Record *) {
        std::string path = "entry", key = "id", value = "1";
        const Record *entry = list;
        found += tvk_map_iterate_list(ctx, &entry, key.data(), value.data(), path.data(), nullptr) == TVK_OK ? 1 : 0;
        return qerrno{TVK_OK};
    };
    const tmap_node_cont_info info{search, nullptr, nullptr, 0, nullptr, nullptr};
    const Tree tree = node("list", kNs)(node("entry").op(TVK_OPERATION_REPLACE)(leaf("id", "1"))), target = root();
    list = tree.get();
    MappingContext mapping;
    mapping.context.index_children_from = 1;
    EXPECT_EQ(TVK_OK, tmap_high_container_parse(mapping.ctx, tree->subtrees, target.get(), &info));
    EXPECT_EQ(1, found) << "in the second pass";
    search(mapping.ctx, nullptr, 0, nullptr);
    EXPECT_EQ(2, found);
}

// More parents than are remembered: those that are dropped are gone through again. None of them comes up while entries
// of one list are compared, which could drop that list.
TEST_F(IndexedChanges, ManyParents) {
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
