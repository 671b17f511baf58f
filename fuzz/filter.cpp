// Pairs of a filter and a response through the schema filter, both marking phases and the sweep, some beside an oracle.
#include <algorithm>
#include <cstring>
#include <string>

#include "allocation_failures.h"
#include "common/filter_oracle.h"
#include "common/input.h"
#include "common/target.h"
#include "tvk_map.h"

namespace {

using namespace tvk::fuzz;
using tvk::test::MappingContext;
using tvk::test::Tree;

constexpr const char *kTags[] = {"a", "b", "c", "name", "bgp", nullptr};
constexpr const char *kValues[] = {"1", "2", ""};
constexpr int kCounts[] = {0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 12};
constexpr unsigned kMaxDepth = 60;  // beyond the levels of the container phase
constexpr unsigned kBushyDepth = 3;

// Bits of the byte that says what a node has; "@" is none of them, "P" the presence bit for children turned round.
enum NodeBits : unsigned { kData = 1, kKey = 2, kType = 4, kVerdict = 8, kOddChildren = 16, kPlainChildren = 32 };

Model read_tree(Input &input, unsigned depth = 0) {
    Model model;
    if (const char *tag = input.pick(kTags)) {
        model.tag = tag;
    }
    const unsigned bits = input.byte();
    if ((bits & kData) != 0) {
        model.data = input.pick(kValues);
    }
    model.key = (bits & kKey) != 0;
    if ((bits & kType) != 0) {
        model.type = input.below(8);
    }
    if ((bits & kVerdict) != 0) {
        model.verdict = input.below(7);
    }
    const int count = depth < kMaxDepth ? input.pick(kCounts) : 0;
    const bool is_odd = (bits & (kOddChildren | kPlainChildren)) == kOddChildren;
    model.has_children = (count > 0) != is_odd;
    if (count == 0) {
        model.claimed = is_odd ? static_cast<std::int32_t>(input.below(4)) - 1 : 0;
    }
    for (int i = 0; i < (depth < kBushyDepth ? count : std::min(count, 1)); ++i) {
        model.children.push_back(read_tree(input, depth + 1));
    }
    return model;
}

// Tells whether a node's presence bit is wrong about its children. The oracle does not look into such nodes.
bool is_odd(const Model &model) {
    return model.claimed != 0 || (!model.has_children && !model.children.empty()) ||
           std::any_of(model.children.begin(), model.children.end(), is_odd);
}

void require_swept(const Record &node) {
    if ((node.presence & TVK_HAS_NODE_KIND) != 0 && node.node_kind == TVK_NODE_KIND_KA) {
        return;
    }
    const bool has_children = (node.presence & TVK_HAS_SUBTREES) != 0 && node.subtrees != nullptr;
    for (std::int32_t i = 0; has_children && i < node.subtree_count; ++i) {
        const Record &child = node.subtrees[i];
        const std::uint32_t verdict = (child.presence & TVK_HAS_NODE_KIND) != 0 ? child.node_kind : 0;
        require(verdict == TVK_NODE_KIND_KN || verdict == TVK_NODE_KIND_KA, "a child that is not kept is left");
        require_swept(child);
    }
}

struct Pair {
    explicit Pair(Input &input)
        : accept_last(static_cast<int>(input.below(3))),
          matches_content(input.flag()),
          failing_allocation(input.below(40)),
          path(input.text('\n')),
          filter(read_tree(input)),
          response(read_tree(input)) {}

    void begin(MappingContext &mapping) const {
        mapping.state->walk_flags = matches_content ? TVK_WALK_CONTENT_MATCH_IN_REQUEST : 0;
    }

    int accept_last;
    bool matches_content;
    std::uint64_t failing_allocation;
    std::string path;
    Model filter, response;
};

// Lists the children that lookups find, by place. The index must not remember them beyond a sweep.
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

// These trees have no namespaces.
std::string tags_of(const Record &tree) {
    std::string text = tvk::test::sketch(tree);
    for (std::size_t at = 0; (at = text.find(":(null)", at)) != std::string::npos;) {
        text.erase(at, std::strlen(":(null)"));
    }
    return text;
}

using Phase = std::uint32_t (*)(tvk_map_ctx ctx, Record *filter, Record *response);

std::string prune(const Pair &pair, Phase phase, std::uint32_t index_children_from) {
    MappingContext mapping(TVK_REQUEST_GET);
    const Tree filter(pair.filter.describe()), response(pair.response.describe());
    mapping.context.index_children_from = index_children_from;
    pair.begin(mapping);
    std::string result = lookups(mapping.ctx, *response);
    tvk::test::AllocationFailure failure(pair.failing_allocation, false);
    failure.during([&] {
        phase(mapping.ctx, filter.get(), response.get());
        tvk_map_dfs_filter_sweep(mapping.ctx, response.get());
    });
    require_swept(*response);
    result += lookups(mapping.ctx, *response);
    tvk_map_forget_children(mapping.ctx, nullptr);
    if (phase == tvk_map_dfs_filter_con && index_children_from == 0) {
        note("the container phase leaves " + tags_of(*response));
    }
    return result + "\n" + show(response);
}

void prune_both_ways(const Pair &pair, Phase phase) {
    const std::string expected = prune(pair, phase, 0);
    if (pair.failing_allocation == 0) {
        require_equal(expected, prune(pair, phase, 1), "with an index");
    }
}

void compare_with_oracle(const Pair &pair) {
    MappingContext mapping(TVK_REQUEST_GET);
    const Tree filter(pair.filter.describe()), response(pair.response.describe()), judged(pair.response.describe());
    pair.begin(mapping);
    std::vector<std::string> components;
    for (Input path(pair.path); !path.at_end();) {
        components.push_back(path.text('/'));
    }
    std::erase(components, "");
    const bool selects = oracle_selects(pair.filter, components, pair.accept_last, pair.matches_content);
    require(!pair.filter.tag || (tvk_map_dfs_filter_schema(mapping.ctx, filter.get(), pair.path.c_str(),
                                                           pair.accept_last) == 1) == selects,
            "selection of " + pair.path + " by\n" + show(filter));
    Model model = pair.response;
    oracle_mark(pair.filter, model, pair.matches_content);
    tvk_map_dfs_filter_mark(mapping.ctx, filter.get(), response.get());
    require_equal(show(model.describe()), show(response), "marks of\n" + show(judged) + "by\n" + show(filter));
    for (const auto &[swept, tree] : {std::pair(model, &response), std::pair(pair.response, &judged)}) {
        const std::string given = show(*tree);
        Model left = swept;
        oracle_sweep(left);
        tvk_map_dfs_filter_sweep(mapping.ctx, tree->get());
        require_equal(show(left.describe()), show(*tree), "sweep of\n" + given);
    }
}

void ask(const Pair &pair) {
    MappingContext mapping(TVK_REQUEST_GET);
    const Tree filter(pair.filter.describe()), response(pair.response.describe());
    pair.begin(mapping);
    tvk::test::AllocationFailure failure(pair.failing_allocation, false);
    failure.during([&] {
        tvk_map_dfs_filter_schema(mapping.ctx, filter.get(), pair.path.c_str(), pair.accept_last);
        tvk_map_con_fil_check_con_node(mapping.ctx, filter.get());
        for (const int mark_leaf : {0, 1}) {
            tvk_map_datatree_filter_get_response(mapping.ctx, filter.get(), pair.path.c_str(), pair.accept_last,
                                                 mark_leaf);
        }
        tvk_map_key_info keys;
        tvk_map_datatree_get_keys(filter.get(), &keys);
        tvk_map_datatree_compare_keys(filter.get(), &keys, response.get());
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Surroundings surroundings;
    Input input(data, size);
    const Pair pair(input);
    prune_both_ways(pair, tvk_map_dfs_filter_mark);
    prune_both_ways(pair, tvk_map_dfs_filter_con);
    if (!is_odd(pair.filter) && !is_odd(pair.response)) {
        compare_with_oracle(pair);
    }
    ask(pair);
    return 0;
}
