// Pairs of a filter and a response through the schema filter, both marking phases and the sweep.
#include <string>

#include "common/input.h"
#include "common/target.h"
#include "heap.h"
#include "tree.h"
#include "tree_holder.h"
#include "tvk_map.h"

namespace {

using namespace tvk::fuzz;
using tvk::tool::children_of;
using tvk::tool::RequestScope;
using tvk::tool::TreeHolder;

constexpr const char *kTags[] = {"a", "b", "c", "name", "bgp", nullptr};
constexpr const char *kValues[] = {"1", "2", ""};
constexpr unsigned kMaxDepth = 60;  // beyond the levels of the container phase

// Bits of the byte that says what a node has; "@" is none of them.
enum NodeBits : unsigned { kData = 1, kKey = 2, kType = 4, kVerdict = 8, kOddChildren = 16 };

void set_plain_fields(Input &input, unsigned bits, Record &node) {
    unsigned presence = 0;
    if ((bits & kData) != 0) {
        node.data = tvk::tool::copy_text(input.pick(kValues));
        presence |= TVK_HAS_DATA;
    }
    if ((bits & kKey) != 0) {
        node.is_key = 1;
        presence |= TVK_HAS_IS_KEY;
    }
    if ((bits & kType) != 0) {
        node.schema_info.node_type = input.below(8);
        node.schema_info.flags = TVK_SCHEMA_INFO_HAS_NODE_TYPE;
    }
    if ((bits & kVerdict) != 0) {
        node.node_kind = input.below(7);
        presence |= TVK_HAS_NODE_KIND;
    }
    node.presence = static_cast<std::uint16_t>(node.presence | presence);
}

void read_node(Input &input, unsigned depth, Record &node) {
    if (const char *tag = input.pick(kTags)) {
        node.tag = tvk::tool::copy_text(tag);
        node.presence = TVK_HAS_TAG;
    }
    const unsigned bits = input.byte();
    set_plain_fields(input, bits, node);
    const unsigned count = depth < kMaxDepth ? input.below(6) : 0;
    const bool is_odd = (bits & kOddChildren) != 0;
    if (count == 0) {
        node.subtree_count = is_odd ? static_cast<std::int32_t>(input.below(4)) - 1 : 0;  // claimed, not there
        node.presence = static_cast<std::uint16_t>(node.presence | (is_odd ? TVK_HAS_SUBTREES : 0u));
        return;
    }
    node.subtrees = tvk::tool::zeroed_array<Record>(count);
    node.presence = static_cast<std::uint16_t>(node.presence | (is_odd ? 0u : TVK_HAS_SUBTREES));
    while (node.subtree_count < static_cast<std::int32_t>(count)) {
        read_node(input, depth + 1, node.subtrees[node.subtree_count++]);
    }
}

void copy_tree(const Record &source, TreeHolder &copy) {
    require(qidl_tvk_datatree_duplicate(&copy.root(), &source, tvk_gpb_alloc, nullptr) == TVK_OK, "no memory");
}

void require_swept(const Record &node) {
    if ((node.presence & TVK_HAS_NODE_KIND) != 0 && node.node_kind == TVK_NODE_KIND_KA) {
        return;
    }
    for (const Record &child : children_of(node)) {
        const std::uint32_t verdict = (child.presence & TVK_HAS_NODE_KIND) != 0 ? child.node_kind : 0;
        require(verdict == TVK_NODE_KIND_KN || verdict == TVK_NODE_KIND_KA, "a child that is not kept is left");
        require_swept(child);
    }
}

struct Pair {
    TreeHolder filter;
    TreeHolder response;
    std::string path;
    int accept_last;
    bool matches_content;
    std::uint64_t failing_allocation;
};

void read_pair(Input &input, Pair &pair) {
    pair.accept_last = static_cast<int>(input.below(3));
    pair.matches_content = input.flag();
    pair.failing_allocation = input.below(40);
    pair.path = input.text('\n');
    read_node(input, 0, pair.filter.root());
    read_node(input, 0, pair.response.root());
}

// Which children a lookup finds, by place. What an index remembers of them must not outlive a sweep.
std::string lookups(tvk_map_ctx ctx, const Record &tree) {
    std::string found;
    for (const char *key : {"a", "name"}) {
        for (const char *value : {"1", "2"}) {
            std::string list = "b";
            std::string name = key;
            std::string wanted = value;
            const Record *entry = &tree;
            const qerrno status = tvk_map_iterate_list(ctx, &entry, name.data(), wanted.data(), list.data(), nullptr);
            found += status == TVK_OK ? std::to_string(entry - tree.subtrees) + " " : "- ";
        }
    }
    return found;
}

using Phase = std::uint32_t (*)(tvk_map_ctx ctx, Record *filter, Record *response);

std::string prune(const Pair &pair, Phase phase, std::uint32_t index_children_from) {
    tvk::tool::Framework framework(false, index_children_from);
    TreeHolder filter;
    TreeHolder response;
    copy_tree(pair.filter.root(), filter);
    copy_tree(pair.response.root(), response);
    RequestScope scope(framework, TVK_REQUEST_GET);
    scope.state().walk_flags = pair.matches_content ? TVK_WALK_CONTENT_MATCH_IN_REQUEST : 0;
    std::string result = lookups(scope.ctx(), response.root());
    {
        const AllocationFailure failure(pair.failing_allocation);
        phase(scope.ctx(), &filter.root(), &response.root());
        tvk_map_dfs_filter_sweep(scope.ctx(), &response.root());
    }
    require_swept(response.root());
    result += lookups(scope.ctx(), response.root());
    return result + "\n" + tvk::test::show(response.root());
}

void prune_both_ways(const Pair &pair, Phase phase) {
    const std::string expected = prune(pair, phase, 0);
    if (pair.failing_allocation == 0) {
        require_equal(expected, prune(pair, phase, 1), "with an index");
    }
}

void ask(Pair &pair) {
    tvk::tool::Framework framework(false);
    RequestScope scope(framework, TVK_REQUEST_GET);
    scope.state().walk_flags = pair.matches_content ? TVK_WALK_CONTENT_MATCH_IN_REQUEST : 0;
    const AllocationFailure failure(pair.failing_allocation);
    Record &filter = pair.filter.root();
    tvk_map_dfs_filter_schema(scope.ctx(), &filter, pair.path.c_str(), pair.accept_last);
    tvk_map_con_fil_check_con_node(scope.ctx(), &filter);
    tvk_map_datatree_filter_get_response(scope.ctx(), &filter, pair.path.c_str(), pair.accept_last, 0);
    tvk_map_key_info keys;
    tvk_map_datatree_get_keys(&filter, &keys);
    tvk_map_datatree_compare_keys(&filter, &keys, &pair.response.root());
    tvk_map_datatree_filter_get_response(scope.ctx(), &filter, pair.path.c_str(), pair.accept_last, 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Surroundings surroundings;
    Input input(data, size);
    Pair pair{};
    read_pair(input, pair);
    prune_both_ways(pair, tvk_map_dfs_filter_mark);
    prune_both_ways(pair, tvk_map_dfs_filter_con);
    ask(pair);
    return 0;
}
