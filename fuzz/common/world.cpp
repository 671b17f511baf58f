#include "world.h"

#include <iterator>

#include "tree.h"
#include "tvk_map.h"
#include "tvk_platform_control.h"

namespace tvk::fuzz {

namespace {

// What a request walks through: a container, a list entry with two keys, a container and a leaf, and so on down.
Record request_tree() {
    using test::leaf;
    using test::node;
    test::Node below = node("config", kNs)(leaf("name", "eth0"), leaf("mtu", "9000"));
    for (const char *list : {"address", "subinterface", "interface"}) {
        below = node("box", kNs)(node(list)(leaf("name", "eth0").key(), leaf("id", "1/2").key(), below));
    }
    test::Tree tree(test::root()(below));
    const Record record = *tree;
    *tree = Record{};
    return record;
}

constexpr std::size_t kLongest = TVK_MAP_MAX_PATH;

std::string repeated(const char *part, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

const std::string kPaths[] = {"box/list",
                              "box/list/id",
                              "a",
                              "interface-configurations/interface-configuration/bundle/mode",
                              "interface-configurations/interface-configuration",
                              "vrrp/a",
                              "/box/list[id=1]/name",
                              std::string(kLongest - 1, 'p'),
                              repeated("a/", 400) + "b"};

}  // namespace

std::string place_of(const Record &tree, const Record *node) {
    for (std::int32_t i = 0; i < tree.subtree_count; ++i) {
        const Record &child = tree.subtrees[i];
        const std::string step = std::string(tool::tag_of(child)) + "[" + std::to_string(i) + "]";
        if (&child == node) {
            return step;
        }
        if (const std::string below = place_of(child, node); below != "?") {
            return step + "/" + below;
        }
    }
    return "?";
}

std::string read_path(Input &input) {
    constexpr unsigned kWritten = static_cast<unsigned>(std::size(kPaths));
    const unsigned number = input.below(kWritten + 1);
    return number == kWritten ? input.text('\n') : kPaths[number];
}

std::string read_value(Input &input) {
    const unsigned number = input.below(5);
    return number == 4 ? input.text('\n') : number == 3 ? kBundle : std::to_string(number);
}

const char *read_ns(Input &input) {
    return input.flag() ? kOtherNs : kNs;
}

World::World(std::uint32_t request_type, std::uint32_t index_children_from)
    : framework_(false, index_children_from), scope_(framework_, request_type) {
    request_.root() = request_tree();
}

World::~World() {
    tvk_platform_set_router_type(0);
}

Record &World::some_node(Input &input) {
    Record *node = &tree();
    for (unsigned depth = input.below(4); depth > 0 && node->subtree_count > 0; --depth) {
        node = &node->subtrees[input.below(static_cast<unsigned>(node->subtree_count))];
    }
    return *node;
}

std::string World::outcome(qerrno status, const Record *node) {
    return std::to_string(status) + " " + (node != nullptr ? place_of(tree(), node) : "nothing");
}

std::string World::walk(Input &input) {
    if (input.flag()) {
        return outcome(tvk_map_remove_from_node_hierarchy(ctx(), nullptr), nullptr);
    }
    Record *node = &request_.root();
    for (std::uint8_t level = 0; level <= state().hierarchy_depth && node->subtree_count > 0; ++level) {
        node = &node->subtrees[node->subtree_count - 1];
    }
    const std::uint32_t kind = input.below(3);
    return outcome(tvk_map_add_to_node_hierarchy(ctx(), node, kind), nullptr);
}

}  // namespace tvk::fuzz
