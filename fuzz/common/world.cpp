#include "world.h"

#include <iterator>
#include <new>

#include "allocation_failures.h"
#include "kel_memory.h"
#include "status.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"

namespace tvk::fuzz {

namespace {

// Makes the tree of a request: a container, a list entry with two keys, a container and a leaf, and so on down.
test::Node request_tree() {
    using test::leaf;
    using test::node;
    test::Node below = node("config", kNs[0])(leaf("name", "eth0"), leaf("mtu", "9000"));
    for (const char *list : {"address", "subinterface", "interface"}) {
        below = node("box", kNs[0])(node(list)(leaf("name", "eth0").key(), leaf("id", "1/2").key(), below));
    }
    return test::root()(below);
}

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
                              std::string(TVK_MAP_MAX_PATH - 1, 'p'),
                              repeated("a/", 400) + "b"};

// The lines on one, without the addresses and the line breaks in them.
std::string messages(const test::Lines &lines) {
    std::string text;
    for (const std::string &line : lines) {
        text += " | " + line;
    }
    std::erase(text, '\n');
    for (std::size_t at = text.find("0x"); at != std::string::npos; at = text.find("0x", at)) {
        text.erase(at, std::min(text.find_first_not_of("0123456789abcdef", at + 2), text.size()) - at);
    }
    return text;
}

void put(char *&text, const char *value) {
    kel_named_free(text);
    text = tvk_strdup(value, "fuzz");
}

void take_with_failure(World &world, Input &input, const Step &step) {
    test::AllocationFailure failure(input.below(32), false);
    try {
        failure.during([&] { return step.take(world, input); });
    } catch (const std::bad_alloc &) {
    }
}

}  // namespace

std::string read_path(Input &input) {
    constexpr unsigned kWritten = static_cast<unsigned>(std::size(kPaths));
    const unsigned number = input.below(kWritten + 1);
    return number == kWritten ? input.text('\n') : kPaths[number];
}

std::string read_value(Input &input) {
    const unsigned number = input.below(5);
    return number == 4 ? input.text('\n') : number == 3 ? kBundle : std::to_string(number);
}

World::World(std::uint32_t request_type, std::uint32_t index_children_from)
    : request_(request_tree()), mapping_(request_type) {
    mapping_.context.index_children_from = index_children_from;
    state().datatree = request_.get();
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
    const std::string place = node == nullptr ? "" : node == &tree() ? " top" : " " + test::place_of(tree(), node);
    return test::Status{status}.text() + place + mapping_.text(tree(), 0);
}

std::string walk(World &world, Input &input) {
    if (input.flag()) {
        return world.outcome(tvk_map_remove_from_node_hierarchy(world.ctx(), nullptr));
    }
    Record *node = world.state().datatree;
    for (std::uint8_t level = 0; level <= world.state().hierarchy_depth && node->subtree_count > 0; ++level) {
        node = &node->subtrees[node->subtree_count - 1];
    }
    return world.outcome(tvk_map_add_to_node_hierarchy(world.ctx(), node, input.below(3)));
}

std::string change_announced(World &world, Input &input) {
    Record &parent = world.some_node(input);
    if (parent.subtree_count == 0) {
        return "no children";
    }
    Record &child = parent.subtrees[input.below(static_cast<unsigned>(parent.subtree_count))];
    tvk_map_forget_children(world.ctx(), input.flag() ? nullptr : &parent);
    const unsigned what = input.below(3);
    if (what == 0) {
        put(child.data, read_value(input).c_str());
        child.presence |= TVK_HAS_DATA;
    } else {
        put(child.tag, what == 1 ? input.pick(kTags) : nullptr);
    }
    return test::place_of(world.tree(), &child);
}

void run_worlds(Input input, std::span<const Step> steps) {
    constexpr int kMaxSteps = 60;
    constexpr std::uint32_t kTypes[] = {TVK_REQUEST_EDIT_CONFIG, TVK_REQUEST_GET};
    constexpr std::uint32_t kIndexed[] = {1, 16};
    Surroundings surroundings;
    const std::string line = input.text('\n');
    Input choices(line);
    const bool is_failing = choices.flag();
    const std::uint32_t type = choices.pick(kTypes);
    World world(type, choices.pick(kIndexed)), scanning(type, 0);
    const bool is_index_starved = choices.flag();  // every other step is short of memory for it
    for (int i = 0; i < kMaxSteps && !input.at_end(); ++i) {
        const unsigned number = input.below(static_cast<unsigned>(steps.size()));
        const Step &step = steps[number];
        if (is_failing) {
            take_with_failure(world, input, step);
            continue;
        }
        input.all_read();
        Input same = input;
        surroundings.log.clear();
        const std::string expected = step.take(scanning, same);
        const std::string expected_messages = messages(surroundings.log.logs());
        note(step.name + same.all_read() + ": " + expected + messages(surroundings.log.errors()));
        surroundings.log.clear();
        tvk_platform_fail_tag(is_index_starved && i % 2 == 0 ? "TVK MAP index" : nullptr);
        require_equal(expected, step.take(world, input), step.name + std::string(" with an index"));
        tvk_platform_fail_tag(nullptr);
        require_equal(expected_messages, messages(surroundings.log.logs()), step.name + std::string(" with an index"));
    }
    if (!is_failing) {
        require_equal(test::show(scanning.tree()), test::show(world.tree()), "the tree with an index");
        note(test::sketch(world.tree()));
    }
}

}  // namespace tvk::fuzz
