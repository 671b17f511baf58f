// One exported operation at a time, with memory running out in it.
#ifndef TVK_TEST_OPERATION_H
#define TVK_TEST_OPERATION_H

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "context.h"
#include "kel_queue.h"
#include "tree.h"
#include "tvk_map.h"

namespace tvk::test {

inline constexpr const char *kNs = kSketchedNs;  // the one that some operations bring along

template <class... Children>
Node top(const Children &...children) {
    return node("top", kNs)(children...);
}

struct Operation;

// The surroundings of a call: a tree, a request whose walk is inside /ifs/if, and room for the operation's answers.
class World {
public:
    World(const Operation &operation, std::uint32_t index_children_from);
    ~World();
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    // The tree and what the state holds beside it, on one line: "top(a=1,l#1(k=2)) trim=top/l". All nodes are in kNs
    // unless they say otherwise.
    std::string text() const;
    qidl_tvk_datatree *at(const std::string &place) const { return find(tree, place); }
    tvk_map_node_operation &xpath(std::uint32_t op, std::uint32_t kind, const std::string &place);
    // The work element for a node, in the two-tree phases with itself.
    tvk_map_dfs_elem &element(qidl_tvk_datatree *node);
    qidl_tvk_datatree *leaf() const { return find(request, "if/k"); }

    Tree tree;
    Tree request =
        node("ifs", kNs)(node("if")(tvk::test::leaf("k", "1").key(), node("config")(tvk::test::leaf("k", "2"))));
    Tree filter = node("top", kNs)(node("a").type(TVK_NODE_TYPE_CONTAINER)(node("b").type(1)));
    MappingContext mapping;
    const tvk_map_ctx ctx = mapping.ctx;
    tvk_map_request_state &state = *mapping.state;
    // For arguments. What is shown by text() comes first.
    kel_queue stack{};
    const qidl_tvk_datatree *found = nullptr;
    qidl_tvk_datatree *out = nullptr;
    char *value = nullptr;  // owned
    std::uint32_t number = 0;
    tvk_map_node_operation record{};
    tvk_map_dfs_elem work{};
    tvk_map_cnt_hier levels[TVK_MAP_MAX_FILTER_LEVELS]{};
    tvk_map_key_info keys{};
    tvk_map_insert_info insert{};
    tvk_map_itree_item *item = nullptr;
    me_backend_session_ctx_t *session = nullptr;
    const char *path = "a/l/b";
    char *seen = nullptr;  // borrowed
    std::int32_t count = 0;
};

struct Operation {
    const char *name;
    Node tree;
    std::function<qerrno(World &)> call;
    std::function<void(World &)> beforehand;  // what must have happened, memory at hand
};

// A row for each exported operation, or several.
const std::vector<Operation> &operations();

// The answers of an operation and the world after them: with all memory, and with each allocation failing in turn.
struct Outcomes {
    std::string whole;
    std::set<std::string> without_memory;
};
Outcomes sweep(const Operation &operation, std::uint32_t index_children_from);

}  // namespace tvk::test

#endif
