// Loading the models into libyang, and pruning its trees.
#include "libyang_trees.h"

#include <stdexcept>

namespace tvk::bench {

namespace {

struct ReleaseContext {
    void operator()(ly_ctx *context) const { ly_ctx_destroy(context); }
};

std::unique_ptr<ly_ctx, ReleaseContext> new_context() {
    ly_log_options(0);
    ly_ctx *context = nullptr;
    check(ly_ctx_new(TVK_BENCH_MODELS, LY_CTX_NO_YANGLIBRARY, &context));
    std::unique_ptr<ly_ctx, ReleaseContext> owner(context);
    for (const char *name : {"bench-interfaces", "bench-bgp"}) {
        if (ly_ctx_load_module(context, name, nullptr, nullptr) == nullptr) {
            throw std::runtime_error(std::string("libyang cannot load ") + name);
        }
    }
    return owner;
}

// The addresses mark the nodes that an xpath selects, and their ancestors. All other nodes are released.
char selected_mark, ancestor_mark;

// Releases the children that carry no mark, but for keys.
void release_unmarked(lyd_node *parent) {
    lyd_node *next = nullptr;
    for (lyd_node *child = lyd_child(parent); child != nullptr; child = next) {
        next = child->next;
        if (child->priv == &ancestor_mark) {
            release_unmarked(child);
        } else if (child->priv == nullptr && !lysc_is_key(child->schema)) {
            lyd_free_tree(child);
        }
    }
}

}  // namespace

void check(LY_ERR status) {
    if (status != LY_SUCCESS) {
        throw std::runtime_error("libyang returned " + std::to_string(status));
    }
}

ly_ctx *libyang_context() {
    static const std::unique_ptr<ly_ctx, ReleaseContext> context = new_context();
    return context.get();
}

const lys_module *libyang_module(const char *name) {
    return ly_ctx_get_module_implemented(libyang_context(), name);
}

std::size_t count_nodes(const Tree &tree) {
    std::size_t count = 0;
    lyd_node *node = nullptr;
    LYD_TREE_DFS_BEGIN(tree.get(), node) {
        ++count;
        LYD_TREE_DFS_END(tree.get(), node)
    }
    return count;
}

void prune(Tree &tree, const std::string &xpath) {
    ly_set *selected = nullptr;
    check(lyd_find_xpath(tree.get(), xpath.c_str(), &selected));
    for (uint32_t i = 0; i < selected->count; ++i) {
        lyd_node *node = selected->dnodes[i];
        node->priv = &selected_mark;
        for (lyd_node_inner *parent = node->parent; parent != nullptr && parent->priv == nullptr;
             parent = parent->parent) {
            parent->priv = &ancestor_mark;
        }
    }
    ly_set_free(selected, nullptr);
    release_unmarked(tree.get());
}

}  // namespace tvk::bench
