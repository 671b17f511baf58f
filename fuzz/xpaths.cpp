// Operations on xpaths, stitching, and the xpaths that tokens and the node hierarchy give.
#include <algorithm>
#include <vector>

#include "common/world.h"
#include "kel_memory.h"

namespace {

using namespace tvk::fuzz;
using tvk::test::place_of;

bool is_there(World &world, const Record *node) {
    return node == &world.tree() || place_of(world.tree(), node) != "?";
}

// The places that hold nodes of the tree: the output list, then the pending entry.
std::vector<Record **> installed(World &world) {
    std::vector<Record **> places;
    for (std::uint8_t i = 0; i < world.state().output_list_count; ++i) {
        places.push_back(&world.state().output_list[i].list_node);
    }
    places.push_back(&world.state().pending_list_node);
    return places;
}

// Tell whether the nodes that are installed are still the same ones, wherever they moved.
class Marks {
public:
    explicit Marks(World &world) : world_(world) {
        std::uint32_t mark = 0;
        for (Record **place : installed(world)) {
            if (*place != nullptr) {
                (*place)->framework_word = ++mark;
            }
        }
        for (Record **place : installed(world)) {  // one node may be installed several times
            marks_.push_back(*place != nullptr ? (*place)->framework_word : 0);
        }
    }
    // A step adds and removes at the end alone, so the places in front stay comparable.
    void require_followed(bool all) const {
        const std::vector<Record **> places = installed(world_);
        for (std::size_t i = 0; i + (all ? 0 : 1) < std::min(places.size(), marks_.size()); ++i) {
            require(*places[i] == nullptr || is_same(*places[i], i), "an installed node has moved");
        }
    }

private:
    bool is_same(const Record *node, std::size_t number) const {
        return is_there(world_, node) && node->framework_word == marks_[number];
    }

    World &world_;
    std::vector<std::uint32_t> marks_;
};

template <auto kTake, bool kAll>
std::string followed(World &world, Input &input) {
    const Marks marks(world);
    std::string result = kTake(world, input);
    marks.require_followed(kAll);
    return result;
}

void put(char *buffer, std::size_t size, const std::string &text) {
    text.copy(buffer, size - 1);
}

void read_record(World &world, Input &input, tvk_map_node_operation &record) {
    record.root = &world.tree();
    record.op = input.below(6);
    record.kind = input.below(6);
    put(record.xpath, sizeof record.xpath, read_path(input));
    put(record.ns, sizeof record.ns, input.pick(kNs));
    put(record.value, sizeof record.value, read_value(input));
}

// The node whose value a change replaces: the former value is the caller's.
char *former_value(World &world, const tvk_map_node_operation &record) {
    tvk_map_node_operation read = record;
    read.op = TVK_XPATH_READ;
    const bool changes = record.op == TVK_XPATH_MODIFY && tvk_map_tree_xpath_operations(world.ctx(), &read) == TVK_OK;
    return changes ? read.result->data : nullptr;
}

std::string operate(World &world, Input &input) {
    tvk_map_node_operation record{};
    read_record(world, input, record);
    char *former = former_value(world, record);
    const qerrno status = tvk_map_tree_xpath_operations(world.ctx(), &record);
    if (record.op == TVK_XPATH_MODIFY && status == TVK_OK) {
        kel_named_free(former);
    }
    return world.outcome(status, record.result) + " " + record.value;
}

template <auto kOperation>
std::string stitch(World &world, Input &input) {
    tvk_map_node_operation record{};
    read_record(world, input, record);
    put(record.trim_path, sizeof record.trim_path, read_path(input));
    const qerrno status = kOperation(world.ctx(), &record);
    return world.outcome(status, record.result);
}

std::string add_path(World &world, Input &input) {
    constexpr int kFlags[] = {0, TVK_ADD_RELATIVE, TVK_ADD_TRIM_PENDING, TVK_ADD_UNFILTERED};
    const std::string path = read_path(input);
    const int flags = input.pick(kFlags);
    const int append = input.flag() ? 1 : 0;
    Record *added = nullptr;
    const qerrno status = tvk_map_datatree_add_path_flagged(world.ctx(), &world.some_node(input), path.c_str(), kNs[0],
                                                            "1", nullptr, &added, append, flags);
    return world.outcome(status, added);
}

std::string from_tokens(World &world, Input &input) {
    const std::string token = "/" + read_path(input);
    const std::vector<const char *> tokens(input.below(8), token.c_str());
    const auto count = static_cast<std::uint32_t>(tokens.size());
    const std::string value = read_value(input);
    const tvk::test::Tree leaf(tvk::test::leaf("name", value));
    switch (input.below(3)) {
        case 0:
            return world.outcome(tvk_map_add_leaf_from_xpath(world.ctx(), leaf.get(), &world.tree(), nullptr, kNs[0],
                                                             tokens.data(), count));
        case 1:
            return world.outcome(
                tvk_map_auto_stitch_list_to_list(world.ctx(), nullptr, &world.tree(), kNs[0], tokens.data(), count));
        default: {
            char xpath[TVK_MAP_MAX_PATH] = "";
            char trim_path[TVK_MAP_MAX_PATH] = "";
            const int offset = static_cast<int>(input.below(6)) - 2;
            const qerrno status =
                tvk_map_build_xpath_from_tokens(world.ctx(), tokens.data(), count, offset, xpath, trim_path);
            return world.outcome(status) + xpath + " " + trim_path;
        }
    }
}

std::string release(World &world, Input &input) {
    switch (input.below(5)) {
        case 0:
            return world.outcome(tvk_map_free_trim_path_list_ctx(world.ctx()));
        case 1:
            return world.outcome(tvk_remove_from_output_list_ctx(world.ctx(), nullptr, nullptr));
        case 2:
            tvk_map_release_pending_entry(world.ctx());  // the next call would forget its hierarchy path
            return world.outcome(tvk_map_datatree_reset_trim_path_ctx(world.ctx()));
        case 3:
            return change_announced(world, input);
        default:
            world.state().build_flags = input.flag() ? TVK_BUILD_FILTERED : 0;
            return "flags";
    }
}

constexpr Step kSteps[] = {{"xpath", followed<operate, true>},
                           {"xpath", followed<operate, true>},
                           {"stitch list", followed<stitch<tvk_map_stitch_list_to_list>, false>},
                           {"stitch container", followed<stitch<tvk_map_stitch_container_to_list>, false>},
                           {"add path", followed<add_path, true>},
                           {"tokens", followed<from_tokens, false>},
                           {"walk", followed<walk, false>},
                           {"release", followed<release, false>}};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    run_worlds(Input(data, size), kSteps);
    return 0;
}
