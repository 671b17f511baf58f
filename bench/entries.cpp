// Finding or creating N entries of one list by their keys, from an empty tree on.
#include "inputs.h"
#include "mapping.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"

namespace tvk::bench {

namespace {

constexpr char kList[] = "interfaces/interface";

void search_or_add(Build &build, std::size_t n) {
    const Texts &keys = names(n);
    for (std::size_t i = 0; i < n; ++i) {
        const Node *entry = nullptr;
        check(tvk_map_search_or_add_list(build.ctx(), &build.root(), &entry, text(kList), text(keys[i].c_str()),
                                         text("name"), text(kNs)));
        check(tvk_map_free_trim_path_list_ctx(build.ctx()));
    }
}

// The caller of the operation adds the key leaf.
void add_list_node(Build &build, std::size_t n) {
    const Texts &keys = names(n);
    const tvk_map_ctx ctx = build.ctx();
    for (std::size_t i = 0; i < n; ++i) {
        Node *entry = nullptr;
        check(tvk_map_datatree_add_list_node(ctx, &build.top(), "interface", kNs, "name", keys[i].c_str(), &entry));
        if (entry->subtree_count == 0) {
            check(tvk_map_datatree_add_subtree(ctx, entry, "name", kNs, keys[i].c_str(), nullptr, nullptr, 0));
        }
    }
}

void measure_search_or_add(benchmark::State &state, std::size_t n, Index index) {
    names(n);
    measure(
        state, nodes_of_bare(n), [&] { return Build(index); }, [&](Build &build) { search_or_add(build, n); },
        [](Build &build) { return count_nodes(build.root()); });
}

struct WithTop : Build {
    explicit WithTop(Index index) : Build(index) { add_top(*this); }
};

void measure_add_list_node(benchmark::State &state, std::size_t n, Index index) {
    names(n);
    measure(
        state, nodes_of_bare(n), [&] { return WithTop(index); }, [&](Build &build) { add_list_node(build, n); },
        [](Build &build) { return count_nodes(build.root()); });
}

const bool registered = [] {
    for (const Variant &variant : kVariants) {
        const Index index = variant.index;
        Benchmark(
            "entries_search_or_add", variant.name,
            [index](benchmark::State &state, std::size_t n) { measure_search_or_add(state, n, index); },
            variant.sizes());
        Benchmark(
            "entries_add_list_node", variant.name,
            [index](benchmark::State &state, std::size_t n) { measure_add_list_node(state, n, index); },
            variant.sizes());
    }
    return true;
}();

}  // namespace

}  // namespace tvk::bench
