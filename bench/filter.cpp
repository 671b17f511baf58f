// Pruning a built response of N entries by a subtree filter, and asking the filter about paths while a response is
// built.

#include "inputs.h"
#include "mapping.h"
#include "tvk_map_datatree.h"
#include "tvk_map_filter.h"

namespace tvk::bench {

namespace {

// A filter in the state in which the walk of a request leaves it: nodes carry their types, key leaves are marked.
class FilterTree {
public:
    FilterTree(Filter filter, std::size_t entries) : build_(Index::kOn, TVK_REQUEST_GET) {
        Node &top = add_top(build_);
        Node &list = add(top, "interface", TVK_NODE_TYPE_LIST);
        const char *key = filter == Filter::kKey ? value_of(0, selected_entry(entries)) : nullptr;
        Node &name = add(list, "name", TVK_NODE_TYPE_SELECTION, key);
        name.is_key = 1;
        set_present(name, TVK_HAS_IS_KEY);
        if (filter == Filter::kLeaf) {
            add(add(list, "config", TVK_NODE_TYPE_CONTAINER), "mtu", TVK_NODE_TYPE_SELECTION);
        } else if (filter == Filter::kContent) {
            add(add(list, "config", TVK_NODE_TYPE_CONTAINER), "mtu", TVK_NODE_TYPE_CONTENT_MATCH, "9000");
        }
        set_type(top, TVK_NODE_TYPE_CONTAINER);
    }

    Node &top() { return build_.top(); }

private:
    Node &add(Node &parent, const char *tag, uint32_t type, const char *value = nullptr) {
        Node *child = nullptr;
        check(tvk_map_datatree_add_subtree(build_.ctx(), &parent, tag, kNs, value, nullptr, &child, 0));
        set_type(*child, type);
        return *child;
    }
    static void set_type(Node &node, uint32_t type) {
        node.schema_info.node_type = type;
        node.schema_info.flags = TVK_SCHEMA_INFO_HAS_NODE_TYPE;
    }
    static void set_present(Node &node, unsigned bit) { node.presence = static_cast<uint16_t>(node.presence | bit); }

    Build build_;
};

struct Response : Build {
    Response(Index index, std::size_t n) : Build(index, TVK_REQUEST_GET) { add_entries(*this, n); }
};

using MarkPhase = decltype(&tvk_map_dfs_filter_mark);

void measure_prune(benchmark::State &state, std::size_t n, Index index, Filter filter, MarkPhase mark,
                   std::size_t selected) {
    names(n);
    FilterTree filter_tree(filter, n);
    measure(
        state, selected, [&] { return Response(index, n); },
        [&](Response &response) {
            mark(response.ctx(), &filter_tree.top(), &response.top());
            tvk_map_dfs_filter_sweep(response.ctx(), &response.top());
        },
        [](Response &response) { return count_nodes(response.root()); });
}

// The container phase compares values; it keeps an entry of which config was dropped, with its key.
constexpr std::size_t nodes_of_content_match(std::size_t n) {
    return 1 + 2 * n + 6 * ((n + 9) / 10);
}

const bool prune_registered = [] {
    for (const Variant &variant : kVariants) {
        const Index index = variant.index;
        const auto prune = [&](const char *work, Filter filter, MarkPhase mark, auto selected) {
            Benchmark(work, variant.name, [=](benchmark::State &state, std::size_t n) {
                measure_prune(state, n, index, filter, mark, selected(n));
            });
        };
        prune("filter_key", Filter::kKey, tvk_map_dfs_filter_mark,
              [](std::size_t n) { return nodes_selected(Filter::kKey, n); });
        if (index == Index::kOff) {
            continue;  // only keys are looked up
        }
        prune("filter_leaf", Filter::kLeaf, tvk_map_dfs_filter_mark,
              [](std::size_t n) { return nodes_selected(Filter::kLeaf, n); });
        prune("filter_content", Filter::kContent, tvk_map_dfs_filter_con, nodes_of_content_match);
    }
    return true;
}();

// ---- The schema filter ----

constexpr const char *kAskedPaths[] = {
    "interface/name",          "interface/config/name",
    "interface/config/mtu",    "interface/config/description",
    "interface/state/counter", "interface/subinterfaces/subinterface/config/enabled"};
constexpr std::size_t kSelectedPaths = 2;

struct Asked {
    std::size_t selected = 0;
};

// A response grows to N entries, and six paths are asked about beside each. Only the asking is timed.
void measure_schema_filter(benchmark::State &state, std::size_t n) {
    names(n);
    FilterTree filter(Filter::kLeaf, n);
    for (auto _ : state) {
        Build response(Index::kOn, TVK_REQUEST_GET);
        add_top(response);
        Asked asked;
        auto ask = [&](Asked &answers) {
            for (const char *path : kAskedPaths) {
                answers.selected += tvk_map_dfs_filter_schema(response.ctx(), &filter.top(), path, 0);
            }
        };
        double seconds = 0;
        for (std::size_t i = 0; i < n; ++i) {
            add_entry(response, response.top(), i);
            const Stopwatch watch;
            timed_work(ask, asked);
            seconds += watch.seconds();
        }
        state.SetIterationTime(seconds);
        expect_nodes(nodes_of(n), count_nodes(response.root()));
        expect_nodes(kSelectedPaths * n, asked.selected);
    }
    state.counters["nodes"] = static_cast<double>(std::size(kAskedPaths) * n);
}

const Benchmark schema_filter("filter_schema", "tvk_map", measure_schema_filter);

}  // namespace

}  // namespace tvk::bench
