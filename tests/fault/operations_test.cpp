// Every exported operation, with every allocation failing once. docs/out-of-memory.md says the same in words.
#include <cstring>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "operation.h"
#include "tvk_map.h"

using namespace tvk::test;

namespace {

constexpr qerrno kNoMemory = TVK_ERR_NO_MEMORY;
constexpr char kIfPath[] = "/ifs/if";
const char *const kTokens[] = {"/l"};
char kName[] = "k", kOne[] = "1", kNsOfAll[] = "http://openconfig.net/yang/bgp", kOther[] = "other";
char *const kTags[] = {kName, kName};

Node l(const char *key) {
    return node("l").index(1)(leaf("k", key));
}

// For operations that cut it in place.
char *path(const char *text) {
    static char buffer[64];
    return std::strcpy(buffer, text);
}

template <class Answer>
qerrno status_of(Answer answer) {
    if constexpr (std::is_pointer_v<Answer>) {
        return answer != nullptr ? 1 : 0;
    } else {
        return static_cast<qerrno>(answer);
    }
}

// The name of an operation, and a call of it with the World w.
#define ANSWER(operation, ...) #operation, []([[maybe_unused]] World & w) { return status_of(operation(__VA_ARGS__)); }

class Table {
public:
    using Call = std::function<qerrno(World &)>;
    using Beforehand = std::function<void(World &)>;

    void row(const char *name, Call call, const Node &tree, std::vector<Outcome> outcomes, qerrno answers = TVK_OK,
             Beforehand beforehand = {}) {
        all.push_back({name, tree, std::move(call), std::move(outcomes), answers, std::move(beforehand)});
    }
    // An operation that never asks for memory.
    void quiet(const char *name, Call call, qerrno answers = TVK_OK, Beforehand beforehand = {}) {
        row(name, std::move(call), top(leaf("a", "1"), l("1")), {}, answers, std::move(beforehand));
    }

    std::vector<Operation> all;
};

void as_get(World &w) {
    w.mapping.request.type = TVK_REQUEST_GET;
}

qerrno share_children(World &w) {
    const qerrno status = tvk_map_datatree_add_subtree_with_data(w.ctx, w.tree.get(), w.request->subtrees, 1);
    if (status == TVK_OK) {  // they are in two trees
        w.request->subtrees->subtrees = nullptr;
        w.request->subtrees->subtree_count = 0;
    }
    return status;
}

// What may add to a tree.
void add_adding(Table &rows) {
    rows.row(ANSWER(tvk_map_datatree_add_subtree, w.ctx, w.tree.get(), "b", kNs, "1", nullptr, &w.out, 0),
             top(node("a")), {kNoMemory});
    rows.row(ANSWER(tvk_map_datatree_add_subtree, w.ctx, w.tree.get(), "a", kNs, "2", nullptr, &w.out, 0),
             top(leaf("a", "1")), {{kNoMemory, "top(a) out=a"}});
    rows.row(ANSWER(tvk_map_datatree_add_subtree_flagged, w.ctx, w.tree.get(), "c", kNs, "v", w.at("t"), &w.out, 1, 0),
             top(leaf("t", "1").insert(TVK_INSERT_AFTER, {{"k", "1"}})),
             {kNoMemory, {TVK_OK, "top(t=1+1,c=v#2+0) out=c=v#2+0"}, {TVK_OK, "top(t=1+1,c=v#2+1) out=c=v#2+1"}});
    rows.row("tvk_map_datatree_add_subtree_with_data", share_children, top(l("1")), {kNoMemory});
    rows.row(ANSWER(tvk_map_datatree_add_path, w.ctx, w.tree.get(), "a/b", kNs, "1", nullptr, &w.out, 0), top(),
             {kNoMemory, {kNoMemory, "top(a)"}});
    rows.row(ANSWER(tvk_map_datatree_add_path_flagged, w.ctx, w.tree.get(), "a", kNs, nullptr, nullptr, &w.out, 1, 0),
             top(), {kNoMemory, {kNoMemory, "top error=a"}, {TVK_OK, "top(a#1) out=a#1"}}, TVK_OK,
             [](World &w) { w.state.build_flags = TVK_BUILD_ERROR_NODE; });
    rows.row(ANSWER(tvk_map_datatree_add_path, w.ctx, w.tree.get(), "a/b", kNs, "1", nullptr, &w.out, 0), top(),
             {TVK_OK, kNoMemory, {kNoMemory, "top(a)"}}, TVK_OK, [](World &w) {
                 w.state.build_flags = TVK_BUILD_FILTERED;
                 w.state.datatree = w.filter.get();
             });
    rows.row(ANSWER(tvk_map_datatree_add_path_common, w.ctx, w.tree.get(), "a/b", kNs, "1", nullptr, &w.out, 0), top(),
             {kNoMemory, {kNoMemory, "top recorded=1"}, {kNoMemory, "top(a) recorded=1"}}, TVK_OK,
             [](World &w) { w.state.path_record_mode = TVK_PATH_RECORD_KEEP_LAST; });
    rows.row(
        ANSWER(tvk_map_datatree_add_path_common_flagged, w.ctx, w.tree.get(), "a", kNs, "2", nullptr, &w.out, 0, 0),
        top(leaf("a", "1")), {kNoMemory, {kNoMemory, "top(a) out=a"}});
    rows.row(ANSWER(tvk_map_datatree_add_list_node, w.ctx, w.tree.get(), "l", kNs, "k", "2", &w.out), top(l("1")),
             {kNoMemory});
    rows.row(ANSWER(tvk_map_is_list_node_already_present, w.ctx, w.tree.get(), "c", "", "k", "1", &w.found),
             top(node("c")(l("1"))), {0}, 1);
    rows.row(ANSWER(tvk_map_datatree_get_last_subtree, w.ctx, w.tree.get(), "c", &w.out), top(),
             {kNoMemory, {TVK_ERR_INVALID, "top(c)"}}, TVK_ERR_INVALID);
    rows.row(ANSWER(tvk_map_search_or_add_list, w.ctx, w.tree.get(), &w.found, path("l"), kOne, kName, kNsOfAll),
             top(l("1")),
             {kNoMemory,
              {TVK_ERR_NOT_FOUND, "top(l#1(k=1)) found=l#1(k=1)"},
              {TVK_OK, "top(l#1(k=1),l#2(k=1)) trim=l found=l#2(k=1)"}});
    rows.row(ANSWER(tvk_map_tree_xpath_operations, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_LEAF, "/a/l[k=2]/x")),
             top(node("a")(l("1"))),
             {TVK_ERR_INVALID, {kNoMemory, "top(a(l#1(k=1),l#2))"}, {kNoMemory, "top(a(l#1(k=1),l#2(k=2)))"}});
    rows.row(ANSWER(tvk_map_tree_xpath_operations, w.ctx, &w.xpath(TVK_XPATH_MODIFY, TVK_XPATH_LEAF, "/a")),
             top(node("a")), {kNoMemory});
    rows.row(ANSWER(tvk_map_add_leaf_from_xpath, w.ctx, w.leaf(), w.tree.get(), nullptr, kNs, kTokens, 1),
             top(node("a")), {kNoMemory}, TVK_OK, as_get);
    rows.row(ANSWER(tvk_map_auto_stitch_list_to_list, w.ctx, nullptr, w.tree.get(), kNs, kTokens, 1), top(node("a")),
             {TVK_ERR_INVALID,
              {TVK_ERR_INVALID, "top(a,l#2)"},
              {TVK_ERR_NOT_FOUND, "top(a,l#2(k=1))"},
              {kNoMemory, "top(a,l#2(k=1))"}},
             TVK_OK, as_get);
    rows.row(ANSWER(tvk_map_stitch_list_to_list, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_CONTAINER, "/a/x")),
             top(node("a")), {TVK_ERR_INVALID, {TVK_ERR_NOT_FOUND, "top(a(x))"}, {kNoMemory, "top(a(x))"}});
    rows.row(ANSWER(tvk_map_stitch_container_to_list, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_CONTAINER, "/a/x")),
             top(node("a")), {TVK_ERR_INVALID, {TVK_ERR_NOT_FOUND, "top(a(x))"}, {kNoMemory, "top(a(x))"}});
    rows.row(ANSWER(tvk_map_add_node_to_req_tree_schema, w.ctx, w.request.get(), 1), top(),
             {kNoMemory, {kNoMemory, "top schema=root:-"}});
    rows.row(ANSWER(tvk_map_add_node_to_req_tree_schema, w.ctx, w.request->subtrees, 1), top(), {kNoMemory}, TVK_OK,
             [](World &w) { tvk_map_add_node_to_req_tree_schema(w.ctx, w.request.get(), 1); });
}

// What changes nodes, or the state of the request.
void add_changing(Table &rows) {
    rows.row(ANSWER(tvk_map_update_node_namespace, w.ctx, w.at("a"), kOther), top(node("a")),
             {{kNoMemory, "top(a:-)"}});
    rows.row(ANSWER(tvk_map_datatree_update_namespace, w.ctx, w.tree.get(), path("a/b"), kOther, 2),
             top(node("a")(node("b"))), {{kNoMemory, "top(a:-(b))"}, {kNoMemory, "top(a:other(b:-))"}});
    rows.row(ANSWER(tvk_map_datatree_add_data_ns, w.ctx, w.tree.get(), "top/a", kOther), top(leaf("a", "1")),
             {kNoMemory});
    rows.row(ANSWER(tvk_map_copy_trim_path_list_ctx, w.ctx, "a"), top(), {TVK_ERR_NOT_FOUND});
    rows.row(ANSWER(tvk_map_update_current_list_node, w.ctx, "/a"), top(), {kNoMemory});
    rows.row(ANSWER(tvk_map_add_to_node_hierarchy, w.ctx, find(w.request, "if/config"), TVK_LEVEL_CONTAINER), top(),
             {{TVK_OK, "top level=-:config"}, {TVK_OK, "top level=/ifs/if/:-"}, {TVK_OK, "top level=-:-"}});
    rows.row(ANSWER(tvk_map_util_itree_stack_push, w.ctx, w.request->subtrees, 1, 0), top(), {TVK_OK});
    rows.row(ANSWER(tvk_oc_error_path, w.ctx), top(), {kNoMemory});
    rows.row(ANSWER(tvk_map_get_list, w.ctx, &w.found, path("x/l"), nullptr), top(node("a")), {TVK_ERR_INVALID},
             TVK_ERR_INVALID, [](World &w) { w.found = w.tree.get(); });
    rows.row(ANSWER(tvk_map_validate_data_ns, w.ctx, w.at("a"), kOther, 0), top(leaf("a", "1")), {TVK_ERR_NAMESPACE},
             TVK_ERR_NAMESPACE);
    rows.row(ANSWER(tvk_map_check_oc_leafref, w.ctx, kIfPath, "config", "k", w.request->subtrees), top(),
             {TVK_ERR_NAMESPACE,
              {TVK_ERR_NAMESPACE, "top culprit=2"},
              {TVK_ERR_NAMESPACE, "top error=ns1:ifs/ns1:if[k = '1']/"}},
             TVK_ERR_NAMESPACE);
    rows.row(ANSWER(tmap_high_leaf_parse, w.ctx, w.leaf(), nullptr, "k", 0, nullptr), top(), {TVK_ERR_INVALID},
             TVK_ERR_INVALID);
    rows.row(ANSWER(tvk_map_data_conv, 1, "1", &w.value), top(), {kNoMemory});
    rows.row("tvk_map_data_conv_cb_tab",
             [](World &w) { return status_of(tvk_map_data_conv_cb_tab[0].convert("1", 1, &w.value)); }, top(),
             {kNoMemory});
    rows.row(ANSWER(tvk_map_data_kbs_uint32_yang_bps_uint64, "1", 1, &w.value), top(), {kNoMemory});
    rows.row(ANSWER(tvk_map_data_intf_secs_uint32_to_yang_date_and_time, "1", 1, &w.value), top(), {kNoMemory});
}

// What only asks, and what it pushes on a stack.
void add_asking(Table &rows) {
    rows.row(ANSWER(tvk_map_datatree_get_subtree_num, w.ctx, w.tree.get(), "top/a", &w.number),
             top(node("a")(node("b"))), {kNoMemory});
    rows.row(ANSWER(tvk_map_get_subtree_from_key, w.ctx, w.tree.get(), "a", "1", nullptr), top(leaf("a", "1")),
             {kNoMemory});
    rows.row(ANSWER(tvk_map_search_list, w.ctx, w.tree.get(), &w.found, path("c/l"), kOne, kName, nullptr),
             top(node("c")(l("1"))), {TVK_ERR_NOT_FOUND});
    rows.row(ANSWER(tvk_map_datatree_filter_get_response, w.ctx, w.tree.get(), "a", 0, 0), top(node("a")), {kNoMemory});
    rows.row(ANSWER(tvk_map_trace_subtrees, w.ctx, w.tree.get(), 0, 0), top(node("a")), {kNoMemory});
    rows.row(ANSWER(tvk_map_dfs_stack_push, w.ctx, &w.stack, w.leaf(), kTags, 0, 1), top(), {0}, 1);
    rows.row(ANSWER(tvk_map_dfs_mark_stack_push, w.ctx, &w.stack, w.leaf(), w.leaf(), 1, 0), top(), {0}, 1);
    rows.row(ANSWER(tvk_map_dfs_con_stack_push, w.ctx, &w.stack, w.leaf(), w.leaf(), 1, 0, 0), top(), {0}, 1);
    rows.row(ANSWER(tvk_map_dfs_sweep_stack_push, w.ctx, &w.stack, w.leaf(), 1), top(), {0}, 1);
    rows.row(
        ANSWER(tvk_map_dfs_template, w.ctx, w.tree.get(), tvk_map_dfs_sweep_stack_push, tvk_map_dfs_process_con_node),
        top(leaf("a", "1").type(TVK_NODE_TYPE_CONTENT_MATCH)), {0}, 1);
    rows.row(ANSWER(tvk_map_con_fil_check_con_node, w.ctx, w.tree.get()),
             top(leaf("a", "1").type(TVK_NODE_TYPE_CONTENT_MATCH)), {0}, 1);
    rows.row(ANSWER(tvk_map_dfs_process_con_node, w.ctx, &w.stack, &w.element(w.tree.get())), top(node("a")), {0});
    rows.row("tvk_map_dfs_process_node",
             [](World &w) {
                 w.element(w.tree.get()).pair.index = 0;
                 return tvk_map_dfs_process_node(w.ctx, &w.stack, &w.work, kTags, 2, 1);
             },
             top(node("k")(node("x"))), {0});
    rows.row(ANSWER(tvk_map_dfs_process_mark, w.ctx, &w.stack, &w.element(w.tree.get())), top(node("a")), {0});
    rows.row(ANSWER(tvk_map_dfs_process_sweep, w.ctx, &w.stack, &w.element(w.tree.get())),
             top(node("a").kind(TVK_NODE_KIND_KN)(leaf("b", "1").kind(TVK_NODE_KIND_KA))), {{1, "top(a)"}}, 1);
}

void open_output(World &w) {
    tvk_map_copy_trim_path_list_ctx(w.ctx, "l");
    w.state.pending_list_node = w.at("l");
    tvk_add_to_output_list_ctx(w.ctx);
}

void schema(World &w) {
    tvk_map_add_node_to_req_tree_schema(w.ctx, w.request.get(), 1);
}

void push_item(World &w) {
    tvk_map_util_itree_stack_push(w.ctx, w.request->subtrees, 1, 0);
}

// What never asks for memory.
void add_quiet(Table &rows) {
    rows.quiet("print_stack", [](World &w) { return print_stack(w.ctx, w.levels, 1, ""), TVK_OK; });
    rows.quiet("qidl_tvk_datatree_free_ext_cpy",
               [](World &w) { return qidl_tvk_datatree_free_ext_cpy(&w.at("a")->tag, tvk_gpb_free, nullptr), TVK_OK; });
    rows.quiet(ANSWER(tmap_high_augment_parse, w.ctx, w.request.get(), w.tree.get(), nullptr));
    rows.quiet(ANSWER(tvk_add_to_output_list_ctx, w.ctx), TVK_OK,
               [](World &w) { tvk_map_copy_trim_path_list_ctx(w.ctx, "l"); });
    rows.quiet(ANSWER(tvk_datatree_get_insert_attribute_info, w.at("a"), &w.insert));
    rows.quiet(ANSWER(tvk_map_build_xpath_from_tokens, w.ctx, kTokens, 1, 1, w.record.xpath, w.record.trim_path));
    rows.quiet(ANSWER(tvk_map_clear_xpath_ctx, w.ctx));
    rows.quiet(ANSWER(tvk_map_cont_handle_when_statement, w.ctx, w.request.get(), w.tree.get(), nullptr));
    rows.quiet(ANSWER(tvk_map_datatree_compare_keys, w.at("l"), &w.keys, w.at("l")), 1);
    rows.quiet(ANSWER(tvk_map_datatree_get_datatree, w.ctx));
    rows.quiet(ANSWER(tvk_map_datatree_get_keys, w.request->subtrees, &w.keys), 1);
    rows.quiet(ANSWER(tvk_map_datatree_get_subtree, w.tree.get(), &w.found, "l", nullptr, nullptr));
    rows.quiet(ANSWER(tvk_map_datatree_process_list_ctx, w.ctx, &w.out, &w.path), TVK_OK, open_output);
    rows.quiet(ANSWER(tvk_map_datatree_remove_last_subtree, w.ctx, w.tree.get()));
    rows.quiet(ANSWER(tvk_map_datatree_remove_null_subtrees, w.ctx, w.tree.get()), TVK_OK,
               [](World &w) { w.at("a")->presence = 0; });
    rows.quiet(ANSWER(tvk_map_datatree_reset_trim_path_ctx, w.ctx), TVK_ERR_INVALID, open_output);
    rows.quiet("tvk_map_datatree_set_operation",
               [](World &w) { return tvk_map_datatree_set_operation(w.at("a"), TVK_OPERATION_DELETE), TVK_OK; });
    rows.quiet(ANSWER(tvk_map_datatree_trim_path, w.ctx, &w.path, "l"));
    rows.quiet(ANSWER(tvk_map_dfs_get_child_match, w.ctx, kIfPath, "config", "k", &w.seen, &w.out));
    rows.quiet("tvk_map_dfs_stack_free", [](World &w) { return tvk_map_dfs_stack_free(&w.stack), TVK_OK; });
    rows.quiet(ANSWER(tvk_map_dfs_stack_init, &w.stack), 1);
    rows.quiet(ANSWER(tvk_map_do_these_match, "a", "a"), 1);
    rows.quiet(ANSWER(tvk_map_does_it_have, "ab", "b"), 1);
    rows.quiet(ANSWER(tvk_map_forget_children, w.ctx, nullptr));
    rows.quiet(
        "tvk_map_free_req_tree_schema", [](World &w) { return tvk_map_free_req_tree_schema(w.ctx), TVK_OK; }, TVK_OK,
        schema);
    rows.quiet(ANSWER(tvk_map_free_trim_path_list_ctx, w.ctx));
    rows.quiet(ANSWER(tvk_map_get_agent_type, w.ctx), TVK_AGENT_NETCONF);
    rows.quiet(ANSWER(tvk_map_get_backend_session, &w.mapping.req_ctx, &w.session), TVK_ERR_INVALID);
    rows.quiet(ANSWER(tvk_map_get_error_option, w.ctx));
    rows.quiet(ANSWER(tvk_map_get_ip_address_info, path("192.0.2.1/24")), 1);
    rows.quiet(ANSWER(tvk_map_get_ip_address_len_info, path("192.0.2.1/24")), 1);
    rows.quiet(ANSWER(tvk_map_get_last_token_from_path, w.ctx, path("a/b"), &w.seen));
    rows.quiet(ANSWER(tvk_map_get_node, w.ctx, kIfPath, "k"), 1);
    rows.quiet(ANSWER(tvk_map_get_node_info, w.ctx, kIfPath, "k", &w.seen));
    rows.quiet(ANSWER(tvk_map_get_node_info_inv_thresh_static, w.ctx, "/ifs", "if", "config", "k", &w.seen));
    rows.quiet(ANSWER(tvk_map_get_node_info_mpls_static, w.ctx, kIfPath, "config", "k", &w.seen));
    rows.quiet(ANSWER(tvk_map_get_node_type, w.tree.get()));
    rows.quiet(ANSWER(tvk_map_get_resp_tree_instance_root, w.ctx, &w.out));
    rows.quiet(ANSWER(tvk_map_get_subtrees, w.ctx, w.tree.get(), &w.out, &w.count));
    rows.quiet("tvk_map_get_timestamp", [](World &) { return tvk_map_get_timestamp(), TVK_OK; });
    rows.quiet(ANSWER(tvk_map_get_tree_from_key_data, w.ctx, w.at("a"), "a", "1"));
    rows.quiet(ANSWER(tvk_map_get_varn_conn_hdl, w.ctx, VARN_CONN_B, 0, 0));
    rows.quiet(ANSWER(tvk_map_is_node_in_subtrees, w.ctx, w.tree->subtrees, 2, "a", "1", 1, &w.found), 1);
    rows.quiet(ANSWER(tvk_map_is_private_model, kOther));
    rows.quiet(ANSWER(tvk_map_is_request_add, w.ctx), 1);
    rows.quiet(ANSWER(tvk_map_is_request_delete, w.tree.get()));
    rows.quiet(ANSWER(tvk_map_is_request_replace, w.tree.get()));
    rows.quiet(ANSWER(tvk_map_is_valid_ipv4_addr, "192.0.2.1"), 1);
    rows.quiet(ANSWER(tvk_map_is_with_defaults_enabled, w.ctx));
    rows.quiet("tvk_map_iterate_list", [](World &w) {
        w.found = w.tree.get();
        return tvk_map_iterate_list(w.ctx, &w.found, kName, kOne, path("l"), nullptr);
    });
    rows.quiet(ANSWER(tvk_map_list_handle_when_statement, w.ctx, w.request.get(), w.tree.get(), nullptr));
    rows.quiet(ANSWER(tvk_map_mark_visit_parent, w.ctx, w.levels, 1), 1);
    rows.quiet(ANSWER(tvk_map_mark_visit_parent_mark_kc, w.ctx, w.levels, 1), 1);
    rows.quiet(ANSWER(tvk_map_print_datatree_internal, w.ctx, w.tree.get(), "", 0, 0, 0));
    rows.quiet(ANSWER(tvk_map_remove_from_node_hierarchy, w.ctx, w.request->subtrees));
    rows.quiet(ANSWER(tvk_map_set_bitmap, 0, 0), 1);
    rows.quiet(ANSWER(tvk_map_str_to_array, path("a/b"), &w.seen, 0, &w.number));
    rows.quiet(ANSWER(tvk_map_trim_strcmpbeg, " ab", "a"), 1);
    rows.quiet(ANSWER(tvk_map_update_req_tree_schema, w.ctx), TVK_OK, schema);
    rows.quiet(ANSWER(tvk_map_util_itree_stack_peak, w.ctx, &w.item), TVK_OK, push_item);
    rows.quiet(ANSWER(tvk_map_util_itree_stack_peak_level, w.ctx, 1, &w.item), TVK_OK, push_item);
    rows.quiet(ANSWER(tvk_map_util_itree_stack_pop, w.ctx), TVK_OK, push_item);
    rows.quiet(ANSWER(tvk_map_util_itree_stack_size, w.ctx), 1, push_item);
    rows.quiet(ANSWER(tvk_map_validate_replace_subtree, w.ctx, w.at("a")));
    rows.quiet(ANSWER(tvk_map_xpath_list_append, w.ctx, w.record.xpath, w.request->subtrees, "/if"));
    rows.quiet(ANSWER(tvk_oc_error_path_list_append, w.record.xpath, w.request->subtrees));
    rows.quiet(ANSWER(tvk_remove_from_output_list_ctx, w.ctx), TVK_OK, open_output);
    rows.quiet(ANSWER(varn_backend_get_varn_conn, nullptr, VARN_CONN_B, 0, 0));
}

// Swept where they are tested.
const struct {
    const char *operation, *file, *test;
} kElsewhere[] = {
    {"tmap_high_container_parse", "walk/list_test.cpp", "InstanceTest, SurviveAnyFailedAllocation"},
    {"tmap_high_list_parse", "walk/list_test.cpp", "InstanceTest, SurviveAnyFailedAllocation"},
    {"tvk_map_add_subtrees_from_source_to_target", "datatree/add_subtree_test.cpp",
     "AddSubtree, SharesOrMovesChildren"},
    {"tvk_map_print_subtrees", "datatree/read_tree_test.cpp", "Print, ListsWhatIsSetWithBlanksAsTheyAre"},
    {"tvk_map_dfs_filter_schema", "filter/paths_test.cpp", "FilterPaths, SchemaFilterSelectsNothingWhenMemoryRunsOut"},
    {"tvk_map_dfs_filter_mark", "filter/limits_test.cpp", "Limits, WhenMemoryRunsOutLessIsKeptAndNeverMore"},
    {"tvk_map_dfs_filter_con", "filter/limits_test.cpp", "Limits, WhenMemoryRunsOutLessIsKeptAndNeverMore"},
    {"tvk_map_dfs_filter_sweep", "filter/limits_test.cpp", "Limits, WhenMemoryRunsOutLessIsKeptAndNeverMore"},
};

std::string read_source(const std::string &name) {
    std::ifstream file(std::string(SOURCE_DIR) + name);
    EXPECT_TRUE(file) << name;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

const std::vector<Operation> &operations() {
    static const std::vector<Operation> all = [] {
        Table rows;
        add_adding(rows);
        add_changing(rows);
        add_asking(rows);
        add_quiet(rows);
        return rows.all;
    }();
    return all;
}

class OutOfMemory : public HeapTest, public ::testing::WithParamInterface<std::tuple<std::size_t, std::uint32_t>> {};

TEST_P(OutOfMemory, Leaves) {
    const auto &[row, index_children_from] = GetParam();
    const Operation &operation = operations()[row];
    (operation.outcomes.empty() ? expect_no_allocation : sweep)(operation, index_children_from);
}

std::string name_of(const ::testing::TestParamInfo<OutOfMemory::ParamType> &run) {
    const auto &[row, index_children_from] = run.param;
    return std::string(operations()[row].name) + "_" + std::to_string(row) +
           (index_children_from != 0 ? "_indexed" : "");
}

INSTANTIATE_TEST_SUITE_P(Operations, OutOfMemory,
                         ::testing::Combine(::testing::Range<std::size_t>(0, operations().size()),
                                            ::testing::Values(0u, 1u)),
                         name_of);

TEST(OutOfMemoryTables, NameEveryExport) {
    std::set<std::string> exported, swept;
    const std::string map = read_source("manageability/yang/framework/mapping/src/exports.map");
    const std::regex symbol("(\\w+);");
    for (std::sregex_iterator it(map.begin(), map.end(), symbol), end; it != end; ++it) {
        exported.insert((*it)[1]);
    }
    for (const Operation &operation : operations()) {
        swept.insert(operation.name);
    }
    for (const auto &[operation, file, test] : kElsewhere) {
        const std::string source = read_source(std::string("tests/") + file);
        const std::size_t begin = source.find(std::string("TEST_F(") + test + ")");
        ASSERT_NE(std::string::npos, begin) << file << " has no test " << test;
        EXPECT_NE(std::string::npos, source.substr(begin, source.find("\n}\n", begin) - begin).find("for_each_alloc"));
        EXPECT_TRUE(swept.insert(operation).second) << operation << " is in a table as well";
    }
    EXPECT_EQ(exported, swept);
}

}  // namespace
