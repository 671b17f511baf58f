// Operations on xpaths, stitching, and the xpaths that tokens and the node hierarchy give.
#include <algorithm>
#include <vector>

#include "common/world.h"
#include "kel_memory.h"
#include "tree.h"
#include "tvk_map.h"

namespace {

using namespace tvk::fuzz;

void put(char *buffer, std::size_t size, const std::string &text) {
    text.copy(buffer, size - 1);
}

// A world in which nodes may be installed: the pending entry and the output list point into its tree.
class StitchedWorld : public World {
public:
    using World::World;

    // Whoever changes the tree otherwise has to look after what is installed: here, to take it out.
    void drop_moved() {
        drop_if_moved(state().pending_list_node);
        for (std::uint8_t i = 0; i < state().output_list_count; ++i) {
            drop_if_moved(state().output_list[i].list_node);
        }
    }

    // Stitching and adding xpaths follow the installed nodes. Their marks tell that they are the same ones.
    void mark_installed() {
        std::uint32_t mark = 0;
        for (Record *node : installed()) {
            if (node != nullptr) {
                node->framework_word = ++mark;
            }
        }
        marks_.clear();
        for (const Record *node : installed()) {  // one node may be installed several times
            marks_.push_back(node != nullptr ? node->framework_word : 0);
        }
    }
    // What a step takes off or puts on stands at the end.
    void require_followed(bool all) {
        const std::vector<Record *> nodes = installed();
        for (std::size_t i = 0; i + (all ? 0 : 1) < std::min(nodes.size(), marks_.size()); ++i) {
            require(nodes[i] == nullptr || is_there(nodes[i]), "an installed node has moved");
            require(nodes[i] == nullptr || nodes[i]->framework_word == marks_[i], "another node is installed");
        }
    }

private:
    std::vector<Record *> installed() {
        std::vector<Record *> nodes;
        for (std::uint8_t i = 0; i < state().output_list_count; ++i) {
            nodes.push_back(state().output_list[i].list_node);
        }
        nodes.push_back(state().pending_list_node);
        return nodes;
    }
    bool is_there(const Record *node) { return node == &tree() || place_of(tree(), node) != "?"; }
    void drop_if_moved(Record *&node) {
        if (node != nullptr && !is_there(node)) {
            node = nullptr;
        }
    }

    std::vector<std::uint32_t> marks_;
};

void read_record(StitchedWorld &world, Input &input, tvk_map_node_operation &record) {
    record.root = &world.tree();
    record.op = input.below(6);
    record.kind = input.below(6);
    put(record.xpath, sizeof record.xpath, read_path(input));
    put(record.ns, sizeof record.ns, read_ns(input));
    put(record.value, sizeof record.value, read_value(input));
}

// The node whose value a change replaces: the former value is the caller's.
char *former_value(StitchedWorld &world, const tvk_map_node_operation &record) {
    tvk_map_node_operation read = record;
    read.op = TVK_XPATH_READ;
    const bool changes = record.op == TVK_XPATH_MODIFY && tvk_map_tree_xpath_operations(world.ctx(), &read) == TVK_OK;
    return changes ? read.result->data : nullptr;
}

std::string operate(StitchedWorld &world, Input &input) {
    tvk_map_node_operation record{};
    read_record(world, input, record);
    char *former = former_value(world, record);
    const qerrno status = tvk_map_tree_xpath_operations(world.ctx(), &record);
    if (record.op == TVK_XPATH_MODIFY && status == TVK_OK) {
        kel_named_free(former);
    }
    return world.outcome(status, record.result) + " " + record.value;
}

std::string stitch(StitchedWorld &world, Input &input, decltype(&tvk_map_stitch_list_to_list) operation) {
    tvk_map_node_operation record{};
    read_record(world, input, record);
    put(record.trim_path, sizeof record.trim_path, read_path(input));
    const qerrno status = operation(world.ctx(), &record);
    return world.outcome(status, record.result);
}

std::string add_path(StitchedWorld &world, Input &input) {
    constexpr int kFlags[] = {0, TVK_ADD_RELATIVE, TVK_ADD_TRIM_PENDING, TVK_ADD_UNFILTERED};
    const std::string path = read_path(input);
    const int flags = input.pick(kFlags);
    Record *added = nullptr;
    const qerrno status = tvk_map_datatree_add_path_flagged(world.ctx(), &world.some_node(input), path.c_str(), kNs,
                                                            "1", nullptr, &added, input.flag() ? 1 : 0, flags);
    world.drop_moved();
    return world.outcome(status, added);
}

std::string from_tokens(StitchedWorld &world, Input &input) {
    const std::string token = "/" + read_path(input);
    const std::vector<const char *> tokens(input.below(8), token.c_str());
    const auto count = static_cast<std::uint32_t>(tokens.size());
    const std::string value = read_value(input);
    const tvk::test::Tree leaf(tvk::test::leaf("name", value));
    switch (input.below(3)) {
        case 0:
            return world.outcome(
                tvk_map_add_leaf_from_xpath(world.ctx(), leaf.get(), &world.tree(), nullptr, kNs, tokens.data(), count),
                nullptr);
        case 1:
            return world.outcome(
                tvk_map_auto_stitch_list_to_list(world.ctx(), nullptr, &world.tree(), kNs, tokens.data(), count),
                nullptr);
        default: {
            char xpath[TVK_MAP_MAX_PATH] = "";
            char trim_path[TVK_MAP_MAX_PATH] = "";
            const int offset = static_cast<int>(input.below(6)) - 2;
            const qerrno status =
                tvk_map_build_xpath_from_tokens(world.ctx(), tokens.data(), count, offset, xpath, trim_path);
            return world.outcome(status, nullptr) + xpath + " " + trim_path;
        }
    }
}

std::string release(StitchedWorld &world, Input &input) {
    switch (input.below(4)) {
        case 0:
            return world.outcome(tvk_map_free_trim_path_list_ctx(world.ctx()), nullptr);
        case 1:
            return world.outcome(tvk_remove_from_output_list_ctx(world.ctx()), nullptr);
        case 2:
            if (world.state().pending_hierarchy_kind != 0) {  // the next call forgets it
                kel_named_free(world.state().pending_hierarchy_path);
            }
            return world.outcome(tvk_map_datatree_reset_trim_path_ctx(world.ctx()), nullptr);
        default:
            world.state().build_flags = input.flag() ? TVK_BUILD_FILTERED : 0;
            return "flags";
    }
}

std::string take_step(StitchedWorld &world, Input &input, unsigned number) {
    switch (number) {
        case 0:
        case 1:
            return operate(world, input);
        case 2:
            return stitch(world, input, tvk_map_stitch_list_to_list);
        case 3:
            return stitch(world, input, tvk_map_stitch_container_to_list);
        case 4:
            return add_path(world, input);
        case 5:
            return from_tokens(world, input);
        case 6:
            return world.walk(input);
        default:
            return release(world, input);
    }
}

std::string step(StitchedWorld &world, Input &input) {
    const unsigned number = input.below(8);
    world.mark_installed();
    const std::string result = take_step(world, input, number);
    world.require_followed(number < 2);
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Surroundings surroundings;
    run_worlds<StitchedWorld>(Input(data, size), step);
    return 0;
}
