// Building N entries with six leaves each by paths. Either each leaf is added by its full path from the root, with keys
// that tell the entries apart; or each leaf is added below its entry, which is looked for by its key.
#include <cstring>

#include "relative_paths.h"
#include "tvk_map_xpath.h"

namespace tvk::bench {

namespace {

template <std::size_t kSize>
void copy(char (&field)[kSize], const char *value) {
    std::memcpy(field, value, std::strlen(value) + 1);
}

void build_by_xpaths(Build &build, std::size_t n) {
    const Texts &paths = plain_paths(n);
    tvk_map_node_operation record{};
    record.root = &build.root();
    record.op = TVK_XPATH_ADD;
    record.kind = TVK_XPATH_LEAF;
    copy(record.ns, kNs);
    for (std::size_t i = 0; i < n * kLeavesPerEntry; ++i) {
        copy(record.value, value_of(i % kLeavesPerEntry, i / kLeavesPerEntry));
        copy(record.xpath, paths[i].c_str());
        check(tvk_map_tree_xpath_operations(build.ctx(), &record));
    }
}

template <class Work>
void measure_build(benchmark::State &state, std::size_t n, Index index, Work work) {
    plain_paths(n);
    measure(
        state, nodes_of(n), [&] { return Build(index); }, [&](Build &build) { work(build, n); },
        [](Build &build) { return count_nodes(build.root()); });
}

const bool registered = [] {
    for (const Variant &variant : kVariants) {
        const Index index = variant.index;
        Benchmark(
            "paths_xpath", variant.name,
            [index](benchmark::State &state, std::size_t n) { measure_build(state, n, index, build_by_xpaths); },
            variant.sizes());
        Benchmark(
            "paths_relative", variant.name,
            [index](benchmark::State &state, std::size_t n) {
                measure_build(state, n, index,
                              [](Build &build, std::size_t entries) { build_by_relative_paths({}, build, entries); });
            },
            variant.sizes());
    }
    return true;
}();

}  // namespace

}  // namespace tvk::bench
