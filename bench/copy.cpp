// Deep copy of a tree of N entries, and its release.
#include "inputs.h"
#include "mapping.h"

namespace tvk::bench {

namespace {

void copy_and_free(const Node &source) {
    Node copy;
    const qerrno status = qidl_tvk_datatree_duplicate(&copy, &source, tvk_gpb_alloc, nullptr);
    benchmark::DoNotOptimize(copy.subtree_count);
    qidl_tvk_datatree_free_ext(&copy, tvk_gpb_free, nullptr, 0);
    check(status);
}

std::size_t count_copied(const Node &source) {
    framework::TreeHolder copy;
    check(qidl_tvk_datatree_duplicate(&copy.root(), &source, tvk_gpb_alloc, nullptr));
    return count_nodes(copy.root());
}

const Benchmark copy("copy", "tvk_map", [](benchmark::State &state, std::size_t n) {
    Build build;
    add_entries(build, n);
    measure(
        state, nodes_of(n), [&]() -> const Node & { return build.root(); },
        [](const Node &source) { copy_and_free(source); }, [](const Node &source) { return count_copied(source); });
});

}  // namespace

}  // namespace tvk::bench
