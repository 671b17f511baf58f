// Data trees of libyang, for all its variants. None of them validates anything.
#pragma once

#include <libyang/libyang.h>

#include <cstddef>
#include <memory>
#include <string>

namespace tvk::bench {

// Throws for a status that is no success.
void check(LY_ERR status);

// The models of the benchmarks.
ly_ctx *libyang_context();
const lys_module *libyang_module(const char *name);

struct ReleaseTree {
    void operator()(lyd_node *tree) const { lyd_free_all(tree); }
};
using Tree = std::unique_ptr<lyd_node, ReleaseTree>;

std::size_t count_nodes(const Tree &tree);

// Keeps the nodes that the xpath selects, with their ancestors and the keys of these, and releases the rest.
void prune(Tree &tree, const std::string &xpath);

}  // namespace tvk::bench
