// Adding paths, finding and adding list entries, and what else reads or changes a tree by a path.
#include <utility>
#include <vector>

#include "common/world.h"
#include "kel_memory.h"
#include "tvk_platform_control.h"

namespace {

using namespace tvk::fuzz;
using tvk::test::leaf;
using tvk::test::node;
using tvk::test::place_of;
using tvk::test::Tree;

std::string add_subtree(World &world, Input &input) {
    Record &parent = world.some_node(input);
    const std::string value = read_value(input);
    Record as_removed{};
    as_removed.operation = input.below(5);
    as_removed.presence = TVK_HAS_OPERATION;
    const char *tag = input.pick(kTags);
    const char *ns = input.pick(kNs);
    const unsigned ways = input.below(256);
    Record *added = nullptr;
    const qerrno status = tvk_map_datatree_add_subtree_flagged(
        world.ctx(), &parent, tag, ns, (ways & 1) != 0 ? value.c_str() : nullptr,
        (ways & 2) != 0 ? &as_removed : nullptr, &added, (ways & 4) != 0 ? 1 : 0, static_cast<int>(input.below(256)));
    return world.outcome(status, added);
}

template <auto kOperation>
std::string add_path(World &world, Input &input) {
    Record &parent = world.some_node(input);
    const std::string path = read_path(input);
    const std::string value = read_value(input);
    const char *ns = input.pick(kNs);
    const unsigned ways = input.below(256);
    const unsigned flags = input.below(256) | ((ways & 4) != 0 ? TVK_ADD_MARK_TREE_TRAVERSE : 0u);
    Record *added = nullptr;
    const qerrno status = kOperation(world.ctx(), &parent, path.c_str(), ns, (ways & 1) != 0 ? value.c_str() : nullptr,
                                     nullptr, &added, (ways & 2) != 0 ? 1 : 0, static_cast<int>(flags));
    return world.outcome(status, added);
}

// The arguments of a search, which are writable.
struct Wanted {
    explicit Wanted(Input &input)
        : path(read_path(input)), key(input.pick(kTags)), value(read_value(input)), ns(input.pick(kNs)) {}

    template <typename Operation>
    qerrno search(World &world, Record &root, Operation operation, bool any_ns = false) {
        return operation(world.ctx(), &root, &entry, path.data(), value.data(), key.data(),
                         any_ns ? nullptr : ns.data());
    }

    std::string path, key, value, ns;
    const Record *entry = nullptr;
};

template <auto kOperation>
std::string search(World &world, Input &input) {
    Record &root = world.some_node(input);
    Wanted wanted(input);
    const qerrno status = wanted.search(world, root, kOperation, input.flag());
    return world.outcome(status, wanted.entry);
}

// Adds an entry's leaves by their full path until the trim path is freed, as the documentation of the operation says.
std::string search_and_fill(World &world, Input &input) {
    Wanted wanted(input);
    tvk_map_datatree_reset_trim_path_ctx(world.ctx());
    const qerrno status = wanted.search(world, world.tree(), tvk_map_search_or_add_list);
    std::string result = world.outcome(status, wanted.entry);
    if (status == TVK_OK && wanted.entry != nullptr) {
        world.state().pending_list_node = const_cast<Record *>(wanted.entry);
        Record *added = nullptr;
        const qerrno added_status = tvk_map_datatree_add_path(
            world.ctx(), &world.tree(), (wanted.path + "/leaf").c_str(), wanted.ns.c_str(), "1", nullptr, &added, 0);
        result += ", " + world.outcome(added_status, added);
    }
    tvk_map_datatree_reset_trim_path_ctx(world.ctx());
    return result;
}

std::string list_node(World &world, Input &input) {
    Record &parent = world.some_node(input);
    const char *key = input.pick(kTags);
    const std::string value = read_value(input);
    const char *ns = input.pick(kNs);
    Record *entry = nullptr;
    const qerrno status = tvk_map_datatree_add_list_node(world.ctx(), &parent, "list", ns, key, value.c_str(), &entry);
    std::string result = world.outcome(status, entry);
    if (entry != nullptr) {
        tvk_map_datatree_add_subtree(world.ctx(), entry, key, ns, value.c_str(), nullptr, nullptr, 0);
    }
    return result;
}

std::string ask(World &world, Input &input) {
    Record &from = world.some_node(input);
    const std::string path = read_path(input);
    const std::string value = read_value(input);
    const Record *entry = nullptr;
    Record *last = nullptr;
    std::uint32_t count = 0;
    switch (input.below(5)) {
        case 0: {
            const int is_present =
                tvk_map_is_list_node_already_present(world.ctx(), &from, path.c_str(), "", "id", value.c_str(), &entry);
            return world.outcome(static_cast<qerrno>(is_present), entry);
        }
        case 1: {
            const qerrno status = tvk_map_datatree_get_subtree_num(world.ctx(), &from, path.c_str(), &count);
            return world.outcome(status) + std::to_string(count);
        }
        case 2:
            return world.outcome(tvk_map_datatree_get_last_subtree(world.ctx(), &from, path.c_str(), &last), last);
        case 3:
            return world.outcome(
                tvk_map_get_subtree_from_key(world.ctx(), &from, path.c_str(), value.c_str(), nullptr));
        default:
            return world.outcome(tvk_map_datatree_get_subtree(&from, &entry, "id", value.c_str(), nullptr), entry);
    }
}

void collect(Record &top, std::vector<std::pair<Record *, char *>> &values) {
    values.emplace_back(&top, top.data_ns);
    for (std::int32_t i = 0; i < top.subtree_count; ++i) {
        collect(top.subtrees[i], values);
    }
}

std::string change_namespace(World &world, Input &input) {
    Record &top = world.some_node(input);
    std::string path = read_path(input);
    std::string ns = input.pick(kNs);
    if (input.flag()) {
        const int mode = static_cast<int>(input.below(4)) - 1;
        return world.outcome(tvk_map_datatree_update_namespace(world.ctx(), &top, path.data(), ns.data(), mode));
    }
    std::vector<std::pair<Record *, char *>> before;
    collect(top, before);
    std::string result = world.outcome(tvk_map_datatree_add_data_ns(world.ctx(), &top, path.c_str(), ns.c_str()));
    for (const auto &[changed, former] : before) {  // is left to the caller
        if (changed->data_ns != former) {
            kel_named_free(former);
        }
    }
    return result + world.outcome(tvk_map_validate_data_ns(world.ctx(), &top, ns.data(), input.flag() ? 1 : 0));
}

std::string move_subtrees(World &world, Record &target) {
    Tree source(node("box", kNs[0])(node("list")(leaf("id", "1")), node("list")(leaf("id", "2"), leaf("name", "2"))));
    return world.outcome(tvk_map_add_subtrees_from_source_to_target(world.ctx(), &target, source.get()));
}

// Marks what an entry's key selects, and sweeps the rest at times.
std::string filter(World &world, Input &input) {
    const char *key = input.pick(kTags);
    const Tree wanted(tvk::test::root()(
        node("box")(node("list").type(TVK_NODE_TYPE_LIST)(leaf(key, read_value(input)).key(), node("name").key()))));
    tvk_map_dfs_filter_mark(world.ctx(), wanted.get(), &world.tree());
    if (input.flag()) {
        tvk_map_dfs_filter_sweep(world.ctx(), &world.tree());
    }
    return "filtered";
}

std::string disturb(World &world, Input &input) {
    Record &disturbed = world.some_node(input);
    switch (input.below(5)) {
        case 0:
            return world.outcome(tvk_map_datatree_remove_last_subtree(world.ctx(), &disturbed));
        case 1:
            tvk_map_datatree_set_operation(&disturbed, input.below(6));
            return "operation";
        case 2:
            return move_subtrees(world, disturbed);
        case 3:
            return change_announced(world, input);
        default:
            return filter(world, input);
    }
}

// Changes the state in which a request adds its paths.
std::string change_state(World &world, Input &input) {
    static std::string names[] = {kBundle, "b1"};
    constexpr std::uint32_t kBuildFlags[] = {0, TVK_BUILD_REPLACE_MERGING, TVK_BUILD_ERROR_NODE,
                                             TVK_BUILD_REPLACE_REMOVING, TVK_BUILD_UNFILTERED};
    tvk_map_request_state &state = world.state();
    switch (input.below(6)) {
        case 0:
            state.path_record_mode = input.below(3);
            break;
        case 1:
            return world.outcome(tvk_map_clear_xpath_ctx(world.ctx()));
        case 2:
            state.build_flags = input.pick(kBuildFlags);
            break;
        case 3:
            world.ctx()->intf_config_flag = input.below(2);
            world.ctx()->intf_name = names[input.below(2)].data();
            break;
        case 4:
            tvk_platform_set_router_type(input.flag() ? 7 : 0);  // which has no VRRP
            break;
        default:
            return world.outcome(tvk_map_datatree_reset_trim_path_ctx(world.ctx()));
    }
    return "state";
}

std::string look_up(World &world, Input &input) {
    const std::string path = read_path(input);
    const char *tag = input.pick(kTags);
    char *value = nullptr;
    std::string result = world.outcome(tvk_map_get_node_info(world.ctx(), path.c_str(), tag, &value));
    tvk_map_get_node(world.ctx(), path.c_str(), tag);
    Record *found = nullptr;
    tvk_map_dfs_get_child_match(world.ctx(), path.c_str(), "config", tag, &value, &found);
    tvk_map_get_node_info_inv_thresh_static(world.ctx(), path.c_str(), tag, "config", tag, &value);
    result += world.outcome(tvk_oc_error_path(world.ctx()));
    return result + (value != nullptr ? value : "") +
           (world.state().error_xpath != nullptr ? world.state().error_xpath : "");
}

constexpr Step kSteps[] = {{"add subtree", add_subtree},
                           {"add path", add_path<tvk_map_datatree_add_path_flagged>},
                           {"add common path", add_path<tvk_map_datatree_add_path_common_flagged>},
                           {"search", search<tvk_map_search_list>},
                           {"search or add", search<tvk_map_search_or_add_list>},
                           {"search and fill", search_and_fill},
                           {"list node", list_node},
                           {"ask", ask},
                           {"namespace", change_namespace},
                           {"state", change_state},
                           {"disturb", disturb},
                           {"walk", walk},
                           {"look up", look_up}};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    run_worlds(Input(data, size), kSteps);
    return 0;
}
