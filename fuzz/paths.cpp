// Adding paths, finding and adding list entries, and what else reads or changes a tree by a path.
#include <vector>

#include "common/world.h"
#include "kel_memory.h"
#include "tree.h"
#include "tvk_map.h"
#include "tvk_platform_control.h"

namespace {

using namespace tvk::fuzz;
using tvk::tool::children_of;

constexpr const char *kTags[] = {
    "box", "list", "id", "name", "a", "vrrp", "interface-configuration", "interface-name", "interface-virtual"};

std::string add_subtree(World &world, Input &input) {
    Record &parent = world.some_node(input);
    const std::string value = read_value(input);
    Record as_removed{};
    as_removed.operation = input.below(5);
    as_removed.presence = TVK_HAS_OPERATION;
    const char *tag = input.pick(kTags);
    const char *ns = read_ns(input);
    const unsigned ways = input.byte();
    Record *added = nullptr;
    const qerrno status = tvk_map_datatree_add_subtree_flagged(
        world.ctx(), &parent, tag, ns, (ways & 1) != 0 ? value.c_str() : nullptr,
        (ways & 2) != 0 ? &as_removed : nullptr, &added, (ways & 4) != 0 ? 1 : 0, input.byte());
    return world.outcome(status, added);
}

using AddPath = decltype(&tvk_map_datatree_add_path_flagged);

std::string add_path(World &world, Input &input, AddPath operation) {
    Record &parent = world.some_node(input);
    const std::string path = read_path(input);
    const std::string value = read_value(input);
    const char *ns = read_ns(input);
    const unsigned ways = input.byte();
    const int flags = input.byte() | ((ways & 4) != 0 ? TVK_ADD_MARK_TREE_TRAVERSE : 0);
    Record *added = nullptr;
    const qerrno status = operation(world.ctx(), &parent, path.c_str(), ns, (ways & 1) != 0 ? value.c_str() : nullptr,
                                    nullptr, &added, (ways & 2) != 0 ? 1 : 0, flags);
    return world.outcome(status, added);
}

using Search = decltype(&tvk_map_search_or_add_list);

std::string search(World &world, Input &input, Search operation) {
    Record &root = world.some_node(input);
    std::string path = read_path(input);
    std::string key = input.pick(kTags);
    std::string value = read_value(input);
    std::string ns = read_ns(input);
    const bool any_ns = input.flag();
    const Record *entry = nullptr;
    const qerrno status =
        operation(world.ctx(), &root, &entry, path.data(), value.data(), key.data(), any_ns ? nullptr : ns.data());
    return world.outcome(status, entry);
}

// As the documentation of the operation has it: the entry's leaves by their full path, until the trim path is freed.
std::string search_and_fill(World &world, Input &input) {
    std::string path = read_path(input);
    std::string key = input.pick(kTags);
    std::string value = read_value(input);
    std::string ns = read_ns(input);
    tvk_map_datatree_reset_trim_path_ctx(world.ctx());
    const Record *entry = nullptr;
    const qerrno status = tvk_map_search_or_add_list(world.ctx(), &world.tree(), &entry, path.data(), value.data(),
                                                     key.data(), ns.data());
    std::string result = world.outcome(status, entry);
    if (status == TVK_OK && entry != nullptr) {
        world.state().pending_list_node = const_cast<Record *>(entry);
        Record *leaf = nullptr;
        const qerrno leaf_status = tvk_map_datatree_add_path(world.ctx(), &world.tree(), (path + "/leaf").c_str(),
                                                             ns.c_str(), "1", nullptr, &leaf, 0);
        result += " " + world.outcome(leaf_status, leaf);
    }
    tvk_map_datatree_reset_trim_path_ctx(world.ctx());
    return result;
}

std::string list_node(World &world, Input &input) {
    Record &parent = world.some_node(input);
    const char *key = input.pick(kTags);
    const std::string value = read_value(input);
    const char *ns = read_ns(input);
    Record *entry = nullptr;
    const qerrno status = tvk_map_datatree_add_list_node(world.ctx(), &parent, "list", ns, key, value.c_str(), &entry);
    const std::string result = world.outcome(status, entry);
    if (entry != nullptr) {
        tvk_map_datatree_add_subtree(world.ctx(), entry, key, ns, value.c_str(), nullptr, nullptr, 0);
    }
    return result;
}

std::string ask(World &world, Input &input) {
    Record &node = world.some_node(input);
    std::string path = read_path(input);
    const std::string value = read_value(input);
    const Record *entry = nullptr;
    Record *last = nullptr;
    switch (input.below(5)) {
        case 0:
            return world.outcome(static_cast<qerrno>(tvk_map_is_list_node_already_present(
                                     world.ctx(), &node, path.c_str(), "", "id", value.c_str(), &entry)),
                                 entry);
        case 1: {
            std::uint32_t count = 0;
            const qerrno status = tvk_map_datatree_get_subtree_num(world.ctx(), &node, path.c_str(), &count);
            return world.outcome(status, nullptr) + std::to_string(count);
        }
        case 2:
            return world.outcome(tvk_map_datatree_get_last_subtree(world.ctx(), &node, path.c_str(), &last), last);
        case 3:
            return world.outcome(tvk_map_get_subtree_from_key(world.ctx(), &node, path.c_str(), value.c_str(), nullptr),
                                 nullptr);
        default:
            return world.outcome(tvk_map_datatree_get_subtree(&node, &entry, "id", value.c_str(), nullptr), entry);
    }
}

void collect(Record &node, std::vector<std::pair<Record *, char *>> &values) {
    values.emplace_back(&node, node.data_ns);
    for (std::int32_t i = 0; i < node.subtree_count; ++i) {
        collect(node.subtrees[i], values);
    }
}

std::string change_namespace(World &world, Input &input) {
    Record &node = world.some_node(input);
    std::string path = read_path(input);
    std::string ns = read_ns(input);
    if (input.flag()) {
        const int mode = static_cast<int>(input.below(4)) - 1;
        return world.outcome(tvk_map_datatree_update_namespace(world.ctx(), &node, path.data(), ns.data(), mode),
                             nullptr);
    }
    std::vector<std::pair<Record *, char *>> before;
    collect(node, before);
    const qerrno status = tvk_map_datatree_add_data_ns(world.ctx(), &node, path.c_str(), ns.c_str());
    for (const auto &[changed, former] : before) {  // is left to the caller
        if (changed->data_ns != former) {
            kel_named_free(former);
        }
    }
    tvk_map_validate_data_ns(world.ctx(), &node, ns.data(), input.flag() ? 1 : 0);
    return world.outcome(status, nullptr);
}

std::string disturb(World &world, Input &input) {
    Record &node = world.some_node(input);
    switch (input.below(3)) {
        case 0:
            return world.outcome(tvk_map_datatree_remove_last_subtree(world.ctx(), &node), nullptr);
        case 1:
            tvk_map_datatree_set_operation(&node, input.below(6));
            return "operation";
        default: {
            using tvk::test::leaf;
            tvk::test::Tree source(tvk::test::node("box", kNs)(
                tvk::test::node("list")(leaf("id", "1")), tvk::test::node("list")(leaf("id", "2"), leaf("name", "2"))));
            return world.outcome(tvk_map_add_subtrees_from_source_to_target(world.ctx(), &node, source.get()), nullptr);
        }
    }
}

// How a request stands when its paths are added.
std::string change_state(World &world, Input &input) {
    static std::string interface_name = kBundle;
    constexpr std::uint32_t kBuildFlags[] = {0, TVK_BUILD_REPLACE_MERGING, TVK_BUILD_ERROR_NODE,
                                             TVK_BUILD_REPLACE_REMOVING, TVK_BUILD_UNFILTERED};
    tvk_map_request_state &state = world.state();
    switch (input.below(6)) {
        case 0:
            state.path_record_mode = input.below(3);
            break;
        case 1:
            return world.outcome(tvk_map_clear_xpath_ctx(world.ctx()), nullptr);
        case 2:
            state.build_flags = input.pick(kBuildFlags);
            break;
        case 3:
            world.ctx()->intf_config_flag = input.below(2);
            world.ctx()->intf_name = interface_name.data();
            break;
        case 4:
            tvk_platform_set_router_type(input.flag() ? 7 : 0);  // which has no VRRP
            break;
        default:
            return world.outcome(tvk_map_datatree_reset_trim_path_ctx(world.ctx()), nullptr);
    }
    return "state";
}

std::string look_up(World &world, Input &input) {
    const std::string path = read_path(input);
    const char *tag = input.pick(kTags);
    char *value = nullptr;
    std::string result = std::to_string(tvk_map_get_node_info(world.ctx(), path.c_str(), tag, &value));
    tvk_map_get_node(world.ctx(), path.c_str(), tag);
    Record *node = nullptr;
    tvk_map_dfs_get_child_match(world.ctx(), path.c_str(), "config", tag, &value, &node);
    tvk_map_get_node_info_inv_thresh_static(world.ctx(), path.c_str(), tag, "config", tag, &value);
    result += " " + std::to_string(tvk_oc_error_path(world.ctx()));
    return result + (value != nullptr ? value : "");
}

std::string step(World &world, Input &input) {
    switch (input.below(13)) {
        case 0:
            return add_subtree(world, input);
        case 1:
            return add_path(world, input, tvk_map_datatree_add_path_flagged);
        case 2:
            return add_path(world, input, tvk_map_datatree_add_path_common_flagged);
        case 3:
            return search(world, input, tvk_map_search_list);
        case 4:
            return search(world, input, tvk_map_search_or_add_list);
        case 5:
            return search_and_fill(world, input);
        case 6:
            return list_node(world, input);
        case 7:
            return ask(world, input);
        case 8:
            return change_namespace(world, input);
        case 9:
            return change_state(world, input);
        case 10:
            return disturb(world, input);
        case 11:
            return world.walk(input);
        default:
            return look_up(world, input);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Surroundings surroundings;
    run_worlds<World>(Input(data, size), step);
    return 0;
}
