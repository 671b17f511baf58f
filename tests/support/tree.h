// Data trees for tests, written as they look:
//
//     Tree request = node("interfaces", kNs)(
//         node("interface")(leaf("name", "eth0").key(), node("config").op(TVK_OPERATION_DELETE)));
//
// A child stands in its parent's namespace unless it names one. A field that is given gets its presence bit.
#ifndef TVK_TEST_TREE_H
#define TVK_TEST_TREE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "qidl_tvk_datatree.h"

namespace tvk::test {

using Text = std::optional<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

// The description of a node. It becomes records of the named heap as a Tree.
class Node {
public:
    template <class... Children>
    Node &operator()(const Children &...children) {
        (children_.push_back(children), ...);
        return *this;
    }
    Node &children(std::vector<Node> children) { return set(children_, std::move(children)); }

    Node &ns(const std::string &ns) { return set(ns_, ns); }
    Node &no_ns() { return set(inherits_ns_, false); }
    Node &data(const std::string &data) { return set(data_, data, TVK_HAS_DATA); }
    Node &data_ns(const std::string &data_ns) { return set(data_ns_, data_ns, TVK_HAS_DATA_NS); }
    Node &op(std::uint32_t operation) { return set(plain_.operation, operation, TVK_HAS_OPERATION); }
    Node &key() { return set(plain_.is_key, std::uint8_t{1}, TVK_HAS_IS_KEY); }
    Node &kind(std::uint32_t node_kind) { return set(plain_.node_kind, node_kind, TVK_HAS_NODE_KIND); }
    Node &type(std::uint32_t node_type);  // marked in the group's own flags, as the request walk does
    Node &index(std::int32_t index) { return set(plain_.subtree_index, index, TVK_HAS_SUBTREE_INDEX); }
    Node &attribute(const std::string &name, const std::string &value);
    Node &insert(std::uint32_t position, const Pairs &keys = {}, const Text &value = {}, const Text &keys_str = {});
    // Says that it has so many children, which are not there.
    Node &claims(std::int32_t count) { return set(plain_.subtree_count, count, TVK_HAS_SUBTREES); }
    Node &with(unsigned presence_bits) { return set(set_bits_, set_bits_ | presence_bits); }
    Node &without(unsigned presence_bits) { return set(cleared_bits_, cleared_bits_ | presence_bits); }

private:
    friend Node node(const Text &tag, const Text &ns);
    friend class Tree;

    template <class Field, class Value>
    Node &set(Field &field, Value &&value, unsigned presence_bits = 0) {
        field = std::forward<Value>(value);
        set_bits_ |= presence_bits;
        return *this;
    }
    void fill(qidl_tvk_datatree &record, const Text &inherited_ns) const;

    qidl_tvk_datatree plain_{};  // the fields that are no pointers
    Text tag_, ns_, data_, data_ns_, insert_value_, insert_keys_str_;
    Pairs attributes_, insert_keys_;
    std::vector<Node> children_;
    bool inherits_ns_ = true;
    unsigned set_bits_ = 0;
    unsigned cleared_bits_ = 0;
};

Node node(const Text &tag, const Text &ns = {});
inline Node leaf(const std::string &tag, const std::string &data, const Text &ns = {}) {
    return node(tag, ns).data(data);
}
// A record that stands for no node: the top of a request or of what a mapping builds.
inline Node root() {
    return node({});
}

// Owns a record and what it holds, on the named heap.
class Tree {
public:
    Tree(const Node &description);
    explicit Tree(qidl_tvk_datatree *record) : record_(record) {}

    qidl_tvk_datatree *get() const { return record_.get(); }
    qidl_tvk_datatree *operator->() const { return record_.get(); }
    qidl_tvk_datatree &operator*() const { return *record_; }
    qidl_tvk_datatree *release() { return record_.release(); }

private:
    struct Release {
        void operator()(qidl_tvk_datatree *record) const;
    };
    std::unique_ptr<qidl_tvk_datatree, Release> record_;
};

// The tree as text, a line per node. A namespace stands where it changes. Where a field and its presence bit
// disagree, the line ends in "unmarked:field" (no bit) or "empty:field" (only the bit).
std::string show(const qidl_tvk_datatree &tree);
inline std::string show(const Tree &tree) {
    return show(*tree);
}
inline std::string show(const Node &description) {
    return show(Tree(description));
}

// The tree on one line: "top(a=1,l#1(k=2))". A namespace other than the one sketched is named.
inline constexpr char kSketchedNs[] = "http://openconfig.net/yang/bgp";
std::string sketch(const qidl_tvk_datatree &tree);
std::string text_of(const char *text);  // "(null)" for null

// "list[3]/id[0]" for a node below tree; "?" when it is not there. Looks at addresses alone.
std::string place_of(const qidl_tvk_datatree &tree, const qidl_tvk_datatree *node);

// The node at path below tree, such as "interface[2]/name": the first of its tag, or the one of that number. Throws,
// and so ends the test with the tree in its message, when there is none.
qidl_tvk_datatree *find(qidl_tvk_datatree &tree, const std::string &path);
inline qidl_tvk_datatree *find(const Tree &tree, const std::string &path) {
    return find(*tree, path);
}

}  // namespace tvk::test

// Both sides may be a Node, a Tree or a record.
#define EXPECT_TREE(expected, actual) EXPECT_EQ(::tvk::test::show(expected), ::tvk::test::show(actual))

#endif
