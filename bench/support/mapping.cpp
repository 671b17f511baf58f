// The trees of the library's benchmarks, made by the handles of their nodes.
#include "mapping.h"

#include <cstdio>
#include <stdexcept>

#include "inputs.h"
#include "tvk_map_datatree.h"

namespace tvk::bench {

namespace {

Node &add_child(tvk_map_ctx ctx, Node &parent, const char *tag, const char *value = nullptr, int append = 0) {
    Node *child = nullptr;
    check(tvk_map_datatree_add_subtree(ctx, &parent, tag, kNs, value, nullptr, &child, append));
    return *child;
}

}  // namespace

void check(qerrno status) {
    if (status != TVK_OK) {
        char message[40];
        std::snprintf(message, sizeof message, "an operation returned %#x", status);
        throw std::runtime_error(message);
    }
}

Node &add_top(Build &build) {
    return add_child(build.ctx(), build.root(), "interfaces");
}

void add_entry(Build &build, Node &top, std::size_t entry) {
    const tvk_map_ctx ctx = build.ctx();
    Node &interface = add_child(ctx, top, "interface", nullptr, 1);
    add_child(ctx, interface, "name", value_of(0, entry));
    Node &config = add_child(ctx, interface, "config");
    for (std::size_t leaf = 0; !kLeaves[leaf].is_of_subinterface; ++leaf) {
        add_child(ctx, config, kLeaves[leaf].path + sizeof "config", value_of(leaf, entry));
    }
    Node &subinterface = add_child(ctx, add_child(ctx, interface, "subinterfaces"), "subinterface", nullptr, 1);
    add_child(ctx, subinterface, "index", "0");
    add_child(ctx, add_child(ctx, subinterface, "config"), "enabled", "true");
}

void add_entries(Build &build, std::size_t entries) {
    Node &top = add_top(build);
    for (std::size_t i = 0; i < entries; ++i) {
        add_entry(build, top, i);
    }
}

std::size_t count_nodes(const Node &root) {
    std::size_t count = 0;
    for (const Node &child : children(root)) {
        count += 1 + count_nodes(child);
    }
    return count;
}

}  // namespace tvk::bench
