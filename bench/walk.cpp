// Walking a request whose handlers do nothing: N levels of containers and list entries in turn, or N children of one
// container.
#include "inputs.h"
#include "mapping.h"
#include "tvk_map_datatree.h"
#include "tvk_map_walk.h"

namespace tvk::bench {

namespace {

std::size_t visited = 0;

qerrno parse_container(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_entry(tvk_map_ctx ctx, const Node *node, Node *target);
qerrno parse_leaf(tvk_map_ctx ctx, const Node *node, Node *target);

qerrno visit(tvk_map_ctx, const Node *, Node *) {
    ++visited;
    return TVK_OK;
}
qerrno visit_container(tvk_map_ctx ctx, const Node *node, uint32_t, Node *target) {
    return visit(ctx, node, target);
}

constexpr tmap_child_entry kContainerChildren[] = {{"entry", parse_entry, 0}, {"leaf", parse_leaf, 0}};
constexpr tmap_node_cont_info kContainer{visit_container, nullptr, kContainerChildren, 2, nullptr, nullptr};

constexpr tmap_child_entry kEntryChildren[] = {{"name", parse_leaf, TMAP_CHILD_KEY}, {"level", parse_container, 0}};
constexpr tmap_key_entry kEntryKeys[] = {{"name", "/level/entry", "level"}};
constexpr tmap_node_list_info kEntry{visit, nullptr, kEntryChildren, kEntryKeys, 2, 1, "/level/entry", nullptr};

qerrno parse_container(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_container_parse(ctx, node, target, &kContainer);
}
qerrno parse_entry(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_list_parse(ctx, node, target, &kEntry);
}
qerrno parse_leaf(tvk_map_ctx ctx, const Node *node, Node *target) {
    return tmap_high_leaf_parse(ctx, node, target, node->tag, 0, visit);
}

// The request, and the target of a mapping that builds nothing.
struct Walk : Build {
    Node &add(Node &parent, const char *tag, const char *value = nullptr) {
        Node *child = nullptr;
        check(tvk_map_datatree_add_subtree(ctx(), &parent, tag, kNs, value, nullptr, &child, 1));
        return *child;
    }

    framework::TreeHolder target;
};

struct DeepWalk : Walk {
    explicit DeepWalk(std::size_t levels) {
        Node *node = &add(root(), "level");
        for (std::size_t level = 2; level <= levels; ++level) {
            const bool is_entry = level % 2 == 0;
            node = &add(*node, is_entry ? "entry" : "level");
            if (is_entry) {
                add(*node, "name", "1");
            }
        }
    }
};

struct WideWalk : Walk {
    explicit WideWalk(std::size_t children) {
        Node &top = add(root(), "level");
        for (std::size_t i = 0; i < children; ++i) {
            add(top, "leaf", "1");
        }
    }
};

template <class Request>
void measure_walk(benchmark::State &state, std::size_t n, std::size_t nodes) {
    measure(
        state, nodes,
        [&] {
            visited = 0;
            return Request(n);
        },
        [](Request &request) { check(parse_container(request.ctx(), &request.top(), &request.target.root())); },
        [](Request &) { return visited; });
}

// Every second level is a list entry with its key leaf.
const Benchmark deep("walk_deep", "tvk_map",
                     [](benchmark::State &state, std::size_t n) { measure_walk<DeepWalk>(state, n, n + n / 2); },
                     {10, 20, 30, 40, TVK_MAP_MAX_HIERARCHY_LEVELS});
const Benchmark wide("walk_wide", "tvk_map",
                     [](benchmark::State &state, std::size_t n) { measure_walk<WideWalk>(state, n, n + 1); });

}  // namespace

}  // namespace tvk::bench
