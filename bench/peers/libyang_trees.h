// Data trees of libyang, and what its variants share. Nothing is validated anywhere.
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

// Keeps what the xpath selects, with its ancestors and their keys: the rest is released.
void prune(Tree &tree, const std::string &xpath);

}  // namespace tvk::bench
