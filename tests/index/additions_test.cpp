// Adding entries by an index: they come to stand where their paths lead, as without one.
#include <gtest/gtest.h>

#include <functional>

#include "context.h"
#include "tree.h"
#include "tvk_map.h"
#include "tvk_platform_control.h"
#include "tvk_string.h"

using namespace tvk::test;
using Record = qidl_tvk_datatree;

namespace {

constexpr char kNs[] = "urn:one";

class Additions : public HeapTest {};

// To a list of one tree, in a request that is not like others.
struct Case {
    Node top;
    std::function<void(MappingContext &, Record &)> prepare = [](MappingContext &, Record &) {};
    std::string path = "box/list";
    std::string key = "id";
    const char *ns = kNs;
};

// Returns the outcome of the additions. The first search makes the index, the second one finds it made.
std::string add_entries(Case list, std::uint32_t index_from) {
    LogCapture log(TVK_LOG_LEVEL_ERR);
    tvk_platform_set_router_type(0);
    const Tree tree = list.top;
    MappingContext mapping;
    mapping.context.index_children_from = index_from;
    std::string ns = list.ns != nullptr ? list.ns : "";
    std::string result;
    for (std::string value : {"8", "9"}) {
        const Record *entry = nullptr;
        const qerrno status =
            tvk_map_search_or_add_list(mapping.ctx, tree.get(), &entry, list.path.data(), value.data(), list.key.data(),
                                       list.ns != nullptr ? ns.data() : nullptr);
        result += std::to_string(status) + field(" entry", entry != nullptr ? place_of(*tree, entry).c_str() : nullptr);
        tvk_map_free_trim_path_list_ctx(mapping.ctx);
        list.prepare(mapping, *tree->subtrees);
    }
    const char *error_xpath = mapping.state->error_xpath;
    return result + (error_xpath != nullptr ? error_xpath : "") + joined(log.errors()) + show(tree);
}

// A search that ends without an entry adds one. What adding its path would meet is met with an index, too.
TEST_F(Additions, GoWhereThePathLeads) {
    const auto box = [](const Node &entry = node("list").index(1)(leaf("id", "1"))) { return node("box", kNs)(entry); };
    const auto merging = [](MappingContext &mapping, Record &) {
        mapping.state->build_flags = TVK_BUILD_REPLACE_MERGING;
    };
    const auto error_node = [](MappingContext &mapping, Record &) {
        mapping.state->build_flags = TVK_BUILD_ERROR_NODE;
    };
    const auto pending = [](MappingContext &mapping, Record &top) {
        mapping.state->pending_trim_path = tvk_strdup("box", "test");
        mapping.state->pending_list_node = &top.subtrees[0];
    };
    const auto output_entry = [&](MappingContext &mapping, Record &top) {
        pending(mapping, top);
        tvk_add_to_output_list_ctx(mapping.ctx);
    };
    const auto recorded = [](MappingContext &mapping, Record &) {
        mapping.state->path_record_mode = TVK_PATH_RECORD_KEEP_LAST;
    };
    const Tree filter = node("box")(node("item"));
    const auto filtered = [&](MappingContext &mapping, Record &) {
        mapping.state->build_flags = TVK_BUILD_FILTERED;
        mapping.state->datatree = filter.get();
    };
    char interface_name[] = "bundle.0";
    const auto placed = [&](MappingContext &mapping, Record &) {
        mapping.context.intf_config_flag = 1;
        mapping.context.intf_name = interface_name;
    };
    const auto excluded = [](MappingContext &, Record &) { tvk_platform_set_router_type(7); };
    const Node configuration = node("interface-configuration", kNs)
                                   .index(1)(leaf("interface-name", interface_name), node("interface-virtual"));
    const Case kCases[] = {
        {root()(box())},
        {root()(box()(node("list")))},
        {root()(box()(node("list").index(2), node("list")(leaf("id", "2"))))},
        {root()(box()(node("list")(leaf("id", "2"))))},
        {root()(box().index(1), box().index(2))},
        {root()(box().without(TVK_HAS_NS), box())},
        {root()(box().without(TVK_HAS_TAG), box())},
        {.top = root()(box(node("list").index(1)(leaf("", "1")))), .key = ""},
        {root()(node("vrrp", kNs)(node("list").index(1)(leaf("id", "1")))), excluded, "vrrp/list"},
        {root()(box().op(TVK_OPERATION_REMOVE)), merging},
        {root()(box()), error_node},
        {root()(box()), pending},
        {root()(box()), output_entry},
        {root()(box()), recorded},
        {root()(box()), filtered},
        {.top = root()(box(node("list").index(1)(leaf("config/id", "1")))), .key = "config/id"},
        {.top = root()(node("list").index(1)(leaf("id", "1"))), .path = "list", .ns = nullptr},
        {root()(configuration), placed, "interface-configuration", "interface-name"},
        {.top = root()(box()), .path = "box/none/list"},
        {.top = root()(box()), .path = "none/list"},
    };
    for (const Case &list : kCases) {
        EXPECT_EQ(add_entries(list, 0), add_entries(list, 1)) << show(list.top) << list.path;
    }
}

// A search by key among entries of one name, and one among all children, each find what a scan finds.
TEST_F(Additions, SearchesOfOneNameAndOfAllAreKeptApart) {
    const Tree tree = root()(
        node("box", kSketchedNs)(node("list").index(1)(leaf("id", "1")), node("item").index(2)(leaf("id", "2"))));
    const auto find_named = [&](MappingContext &mapping, std::string value) {
        std::string key = "id", path = "list";
        const Record *entry = find(tree, "box");
        return tvk_map_iterate_list(mapping.ctx, &entry, key.data(), value.data(), path.data(), nullptr) == TVK_OK;
    };
    const auto find_any = [&](MappingContext &mapping, const char *value) {
        return tvk_map_is_list_node_already_present(mapping.ctx, tree.get(), "box", "", "id", value, nullptr) == 1;
    };
    for (const bool named_first : {true, false}) {
        MappingContext mapping;
        mapping.context.index_children_from = 1;
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(!named_first || find_named(mapping, "1"));
            EXPECT_TRUE(find_any(mapping, "1"));
            EXPECT_TRUE(find_any(mapping, "2"));
            EXPECT_FALSE(find_any(mapping, "3"));
            EXPECT_TRUE(find_named(mapping, "1"));
            EXPECT_FALSE(find_named(mapping, "2")) << "an entry of another name";
        }
    }
}

}  // namespace
