// The variants of libyang.
#include <libyang/libyang.h>

#include <stdexcept>

#include "harness.h"
#include "inputs.h"
#include "libyang_trees.h"

namespace tvk::bench {

namespace {

struct Schema {
    ly_ctx *context = libyang_context();
    const lys_module *module = libyang_module("bench-interfaces");
    const lysc_node *list = lys_find_path(context, nullptr, "/bench-interfaces:interfaces/interface", 0);

    static const Schema &get() {
        static const Schema schema;
        return schema;
    }
};

Tree new_top() {
    lyd_node *top = nullptr;
    check(lyd_new_inner(nullptr, Schema::get().module, "interfaces", 0, &top));
    return Tree(top);
}

lyd_node *new_inner(lyd_node *parent, const char *name) {
    lyd_node *node = nullptr;
    check(lyd_new_inner(parent, nullptr, name, 0, &node));
    return node;
}

lyd_node *new_entry(lyd_node *parent, const char *name, const char *key) {
    lyd_node *node = nullptr;
    check(lyd_new_list(parent, nullptr, name, 0, &node, key));
    return node;
}

void new_leaf(lyd_node *parent, const char *name, const char *value) {
    check(lyd_new_term(parent, nullptr, name, value, 0, nullptr));
}

// Builds the tree without looking for anything among the entries.
Tree build_by_handle(std::size_t n) {
    Tree tree = new_top();
    for (std::size_t i = 0; i < n; ++i) {
        lyd_node *entry = new_entry(tree.get(), "interface", value_of(0, i));
        lyd_node *config = new_inner(entry, "config");
        for (std::size_t leaf = 0; !kLeaves[leaf].is_of_subinterface; ++leaf) {
            new_leaf(config, kLeaves[leaf].path + sizeof "config", value_of(leaf, i));
        }
        lyd_node *subinterface = new_entry(new_inner(entry, "subinterfaces"), "subinterface", "0");
        new_leaf(new_inner(subinterface, "config"), "enabled", "true");
    }
    return tree;
}

// ---- Finding or creating entries ----

void find_or_create(Tree &tree, std::size_t n) {
    const Texts &keys = names(n);
    const Texts &wanted = predicates(n);
    for (std::size_t i = 0; i < n; ++i) {
        lyd_node *entry = nullptr;
        const LY_ERR found = lyd_find_sibling_val(lyd_child(tree.get()), Schema::get().list, wanted[i].c_str(),
                                                  static_cast<uint32_t>(wanted[i].size()), &entry);
        if (found == LY_ENOTFOUND) {
            new_entry(tree.get(), "interface", keys[i].c_str());
        } else {
            check(found);
        }
    }
}

const Benchmark entries("entries_search_or_add", "libyang", [](benchmark::State &state, std::size_t n) {
    predicates(n);
    Schema::get();
    measure(
        state, nodes_of_bare(n), new_top, [&](Tree &tree) { find_or_create(tree, n); }, count_nodes);
});

// ---- Building by path ----

void build_by_path(Tree &tree, std::size_t n) {
    const Texts &paths = quoted_paths(n);
    for (std::size_t i = 0; i < n * kLeavesPerEntry; ++i) {
        lyd_node *first = nullptr;
        check(lyd_new_path(tree.get(), Schema::get().context, paths[i].c_str(),
                           value_of(i % kLeavesPerEntry, i / kLeavesPerEntry), 0, &first));
        if (tree == nullptr) {
            tree.reset(first);
        }
    }
}

const Benchmark paths("paths_xpath", "libyang", [](benchmark::State &state, std::size_t n) {
    quoted_paths(n);
    Schema::get();
    measure(
        state, nodes_of(n), [] { return Tree(); }, [&](Tree &tree) { build_by_path(tree, n); }, count_nodes);
});

// ---- Copying ----

Tree copy(const Tree &source) {
    lyd_node *copy = nullptr;
    check(lyd_dup_siblings(source.get(), nullptr, LYD_DUP_RECURSIVE, &copy));
    return Tree(copy);
}

const Benchmark copies("copy", "libyang", [](benchmark::State &state, std::size_t n) {
    names(n);
    const Tree source = build_by_handle(n);
    measure(
        state, nodes_of(n), [&]() -> const Tree & { return source; }, [](const Tree &tree) { copy(tree); },
        [](const Tree &tree) { return count_nodes(copy(tree)); });
});

// ---- Pruning ----

std::string xpath_of(Filter filter, std::size_t n) {
    const std::string list = "/bench-interfaces:interfaces/interface";
    switch (filter) {
        case Filter::kKey:
            return list + predicates(n)[selected_entry(n)];
        case Filter::kLeaf:
            return list + "/config/mtu";
        default:
            return list + "/config[mtu='9000']";
    }
}

void measure_prune(benchmark::State &state, std::size_t n, Filter filter) {
    const std::string xpath = xpath_of(filter, n);
    const Tree source = build_by_handle(n);
    measure(
        state, nodes_selected(filter, n), [&] { return copy(source); }, [&](Tree &tree) { prune(tree, xpath); },
        count_nodes);
}

const Benchmark filters[] = {
    {"filter_key", "libyang", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kKey); }},
    {"filter_leaf", "libyang", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kLeaf); }},
    {"filter_content", "libyang", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kContent); }}};

}  // namespace

}  // namespace tvk::bench
