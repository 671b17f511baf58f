// Resident memory of a tree of N entries, per node. Each measurement is a process of its own.
//
//     tvk_bench_memory N
//
// It prints one JSON object: the growth of the resident set while the tree is built, and the size of a node without any
// spare room, which is its record and the malloc blocks of its strings.
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "relative_paths.h"

namespace tvk::bench {

namespace {

std::size_t resident_bytes() {
    std::ifstream statistics("/proc/self/statm");
    std::size_t pages = 0;
    statistics >> pages >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// The size of a block: its usable size and malloc's own word before it.
std::size_t block_bytes(char *block) {
    return block != nullptr ? malloc_usable_size(block) + sizeof(std::size_t) : 0;
}

std::size_t bare_bytes(const Node &root) {
    std::size_t bytes = 0;
    for (const Node &child : tvk::children(root)) {
        bytes += sizeof child + block_bytes(child.tag) + block_bytes(child.ns) + block_bytes(child.data);
        bytes += bare_bytes(child);
    }
    return bytes;
}

void measure_memory(std::size_t n) {
    plain_paths(n);
    Build build;
    malloc_trim(0);
    const std::size_t before = resident_bytes();
    build_by_relative_paths({}, build, n);
    const std::size_t grown = resident_bytes() - before;
    expect_nodes(nodes_of(n), count_nodes(build.root()));
    const auto nodes = static_cast<double>(nodes_of(n));
    std::printf("{\"n\": %zu, \"resident\": %.1f, \"bare\": %.1f}\n", n, static_cast<double>(grown) / nodes,
                static_cast<double>(bare_bytes(build.root())) / nodes);
}

}  // namespace

}  // namespace tvk::bench

int main(int argc, char **argv) {
    const std::size_t n = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (n == 0) {
        std::fprintf(stderr, "usage: tvk_bench_memory N\n");
        return 2;
    }
    try {
        tvk::bench::measure_memory(n);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
