// Every exported operation, with every allocation failing once. docs/out-of-memory.md says the same in words.
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "allocation_failures.h"
#include "operation.h"
#include "tvk_map.h"
#include "tvk_string.h"

using namespace tvk::test;

namespace {

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

Node usual() {
    return top(leaf("a", "1"), l("1"));
}

class Table {
public:
    void row(const char *name, std::function<qerrno(World &)> call, const Node &tree = usual(),
             std::function<void(World &)> beforehand = {}) {
        all.push_back({name, tree, std::move(call), std::move(beforehand)});
    }
    std::vector<Operation> all;
};

void as_get(World &w) {
    w.mapping.request.type = TVK_REQUEST_GET;
}

qerrno add_leaf(tvk_map_ctx ctx, const qidl_tvk_datatree *leaf, qidl_tvk_datatree *target) {
    return tvk_map_datatree_add_subtree(ctx, target, leaf->tag, kNs, leaf->data, nullptr, nullptr, 1);
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
             top(node("a")));
    rows.row(ANSWER(tvk_map_datatree_add_subtree, w.ctx, w.tree.get(), "a", kNs, "2", nullptr, &w.out, 0),
             top(leaf("a", "1")));
    rows.row(ANSWER(tvk_map_datatree_add_subtree_flagged, w.ctx, w.tree.get(), "c", kNs, "v", w.at("t"), &w.out, 1, 0),
             top(leaf("t", "1").insert(TVK_INSERT_AFTER, {{"k", "1"}})));
    rows.row("tvk_map_datatree_add_subtree_with_data", share_children, top(l("1")));
    rows.row(ANSWER(tvk_map_datatree_add_path, w.ctx, w.tree.get(), "c/b", kNs, "1", nullptr, &w.out, 0));
    rows.row(ANSWER(tvk_map_datatree_add_path_flagged, w.ctx, w.tree.get(), "a", kNs, nullptr, nullptr, &w.out, 1, 0),
             usual(), [](World &w) { w.state.build_flags = TVK_BUILD_ERROR_NODE; });
    rows.row(ANSWER(tvk_map_datatree_add_path, w.ctx, w.tree.get(), "a/b", kNs, "1", nullptr, &w.out, 0), usual(),
             [](World &w) {
                 w.state.build_flags = TVK_BUILD_FILTERED;
                 w.state.datatree = w.filter.get();
             });
    rows.row(ANSWER(tvk_map_datatree_add_path_common, w.ctx, w.tree.get(), "c/b", kNs, "1", nullptr, &w.out, 0),
             usual(), [](World &w) { w.state.path_record_mode = TVK_PATH_RECORD_KEEP_LAST; });
    rows.row(
        ANSWER(tvk_map_datatree_add_path_common_flagged, w.ctx, w.tree.get(), "a", kNs, "2", nullptr, &w.out, 0, 0),
        top(leaf("a", "1")));
    rows.row(ANSWER(tvk_map_datatree_add_list_node, w.ctx, w.tree.get(), "l", kNs, "k", "2", &w.out), top(l("1")));
    rows.row(ANSWER(tvk_map_is_list_node_already_present, w.ctx, w.tree.get(), "c", "", "k", "1", &w.found),
             top(node("c")(l("1"))));
    rows.row(ANSWER(tvk_map_datatree_get_last_subtree, w.ctx, w.tree.get(), "c", &w.out));
    rows.row(ANSWER(tvk_map_search_or_add_list, w.ctx, w.tree.get(), &w.found, path("l"), kOne, kName, kNsOfAll),
             top(l("1")));
    rows.row(ANSWER(tvk_map_search_or_add_list, w.ctx, w.tree.get(), &w.found, path("l"), kOther, kName, kNsOfAll));
    rows.row(ANSWER(tvk_map_tree_xpath_operations, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_LEAF, "/a/l[k=2]/x")),
             top(node("a")(l("1"))));
    rows.row(ANSWER(tvk_map_tree_xpath_operations, w.ctx, &w.xpath(TVK_XPATH_MODIFY, TVK_XPATH_LEAF, "/a")),
             top(node("a")));
    rows.row(ANSWER(tvk_map_add_leaf_from_xpath, w.ctx, w.leaf(), w.tree.get(), nullptr, kNs, kTokens, 1),
             top(node("a")), as_get);
    rows.row(ANSWER(tvk_map_auto_stitch_list_to_list, w.ctx, nullptr, w.tree.get(), kNs, kTokens, 1), top(node("a")),
             as_get);
    rows.row(ANSWER(tvk_map_stitch_list_to_list, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_CONTAINER, "/a/x")),
             top(node("a")));
    rows.row(ANSWER(tvk_map_stitch_container_to_list, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_CONTAINER, "/a/x")),
             top(node("a")));
    rows.row(ANSWER(tvk_map_add_node_to_req_tree_schema, w.ctx, w.request.get(), 1));
    rows.row(ANSWER(tvk_map_add_node_to_req_tree_schema, w.ctx, w.request->subtrees, 1), usual(),
             [](World &w) { tvk_map_add_node_to_req_tree_schema(w.ctx, w.request.get(), 1); });
}

// What changes nodes, or the state of the request.
void add_changing(Table &rows) {
    rows.row(ANSWER(tvk_map_update_node_namespace, w.ctx, w.at("a"), kOther), top(node("a")));
    rows.row(ANSWER(tvk_map_datatree_update_namespace, w.ctx, w.tree.get(), path("a/b"), kOther, 2),
             top(node("a")(node("b"))));
    rows.row(ANSWER(tvk_map_datatree_add_data_ns, w.ctx, w.tree.get(), "top/a", kOther), top(leaf("a", "1")));
    rows.row(ANSWER(tvk_map_copy_trim_path_list_ctx, w.ctx, "a"));
    rows.row(ANSWER(tvk_map_update_current_list_node, w.ctx, "/a"));
    rows.row(ANSWER(tvk_map_add_to_node_hierarchy, w.ctx, find(w.request, "if/config"), TVK_LEVEL_CONTAINER));
    rows.row(ANSWER(tvk_map_util_itree_stack_push, w.ctx, w.request->subtrees, 1, 0));
    rows.row(ANSWER(tvk_oc_error_path, w.ctx));
    rows.row(ANSWER(tvk_map_get_list, w.ctx, &w.found, path("x/l"), nullptr), top(node("a")),
             [](World &w) { w.found = w.tree.get(); });
    rows.row(ANSWER(tvk_map_validate_data_ns, w.ctx, w.at("a"), kOther, 0), top(leaf("a", "1")));
    rows.row(ANSWER(tvk_map_check_oc_leafref, w.ctx, kIfPath, "config", "k", w.request->subtrees));
    rows.row(ANSWER(tmap_high_leaf_parse, w.ctx, w.leaf(), nullptr, "k", 0, nullptr));
    rows.row(ANSWER(tvk_map_data_conv, 1, "1", &w.value));
    rows.row("tvk_map_data_conv_cb_tab",
             [](World &w) { return status_of(tvk_map_data_conv_cb_tab[0].convert("1", 1, &w.value)); });
    rows.row(ANSWER(tvk_map_data_kbs_uint32_yang_bps_uint64, "1", 1, &w.value));
    rows.row(ANSWER(tvk_map_data_intf_secs_uint32_to_yang_date_and_time, "1", 1, &w.value));
}

// What only asks, and what it pushes on a stack.
void add_asking(Table &rows) {
    rows.row(ANSWER(tvk_map_datatree_get_subtree_num, w.ctx, w.tree.get(), "top/a", &w.number),
             top(node("a")(node("b"))));
    rows.row(ANSWER(tvk_map_get_subtree_from_key, w.ctx, w.tree.get(), "a", "1", nullptr), top(leaf("a", "1")));
    rows.row(ANSWER(tvk_map_search_list, w.ctx, w.tree.get(), &w.found, path("c/l"), kOne, kName, nullptr),
             top(node("c")(l("1"))));
    rows.row(ANSWER(tvk_map_datatree_filter_get_response, w.ctx, w.tree.get(), "a", 0, 0), top(node("a")));
    rows.row(ANSWER(tvk_map_trace_subtrees, w.ctx, w.tree.get(), 0, 0), top(node("a")));
    rows.row(ANSWER(tvk_map_dfs_stack_push, w.ctx, &w.stack, w.leaf(), kTags, 0, 1));
    rows.row(ANSWER(tvk_map_dfs_mark_stack_push, w.ctx, &w.stack, w.leaf(), w.leaf(), 1, 0));
    rows.row(ANSWER(tvk_map_dfs_con_stack_push, w.ctx, &w.stack, w.leaf(), w.leaf(), 1, 0, 0));
    rows.row(ANSWER(tvk_map_dfs_sweep_stack_push, w.ctx, &w.stack, w.leaf(), 1));
    rows.row(
        ANSWER(tvk_map_dfs_template, w.ctx, w.tree.get(), tvk_map_dfs_sweep_stack_push, tvk_map_dfs_process_con_node),
        top(leaf("a", "1").type(TVK_NODE_TYPE_CONTENT_MATCH)));
    rows.row(ANSWER(tvk_map_con_fil_check_con_node, w.ctx, w.tree.get()),
             top(leaf("a", "1").type(TVK_NODE_TYPE_CONTENT_MATCH)));
    rows.row(ANSWER(tvk_map_dfs_process_con_node, w.ctx, &w.stack, &w.element(w.tree.get())), top(node("a")));
    rows.row(
        "tvk_map_dfs_process_node",
        [](World &w) {
            w.element(w.tree.get()).pair.index = 0;
            return tvk_map_dfs_process_node(w.ctx, &w.stack, &w.work, kTags, 2, 1);
        },
        top(node("k")(node("x"))));
    rows.row(ANSWER(tvk_map_dfs_process_mark, w.ctx, &w.stack, &w.element(w.tree.get())), top(node("a")));
    rows.row(ANSWER(tvk_map_dfs_process_sweep, w.ctx, &w.stack, &w.element(w.tree.get())),
             top().kind(TVK_NODE_KIND_KA));
    rows.row(ANSWER(tvk_map_dfs_process_sweep, w.ctx, &w.stack, &w.element(w.tree.get())),
             top(node("a").kind(TVK_NODE_KIND_KN)(leaf("b", "1").kind(TVK_NODE_KIND_KA))));
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

void stitch(World &w) {
    tvk_map_stitch_list_to_list(w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_CONTAINER, "/a/x"));
}

// What a request may leave behind, with something in each field that owns.
void leave_all(World &w) {
    open_output(w);
    stitch(w);
    schema(w);
    push_item(w);
    tvk_map_util_itree_stack_push(w.ctx, nullptr, 0, 0);
    tvk_map_update_current_list_node(w.ctx, "/a");
    w.state.error_node_tag = tvk_strdup("k", "test");
    tvk_oc_error_path(w.ctx);
}

qerrno parse_if(tvk_map_ctx ctx, const qidl_tvk_datatree *node, qidl_tvk_datatree *target) {
    static constexpr tmap_child_entry kChildren[] = {{"k", add_leaf, TMAP_CHILD_KEY}};
    static constexpr tmap_key_entry kKeys[] = {{"k", nullptr, nullptr}};
    static constexpr tmap_node_list_info kInfo{nullptr, nullptr, kChildren, kKeys, 1, 1, "/ifs/if", nullptr};
    return tmap_high_list_parse(ctx, node, target, &kInfo);
}

qerrno filtered(World &w, decltype(tvk_map_dfs_filter_mark) *mark) {
    mark(w.ctx, w.filter.get(), w.tree.get());
    return tvk_map_dfs_filter_sweep(w.ctx, w.tree.get());
}

// What walks whole trees. Of what is filtered less is kept, never more.
void add_walking(Table &rows) {
    const Node whole = top(node("a")(leaf("b", "1"), leaf("c", "2").insert(TVK_INSERT_FIRST)), leaf("d", "3"));
    rows.row("tmap_high_list_parse", [](World &w) { return parse_if(w.ctx, w.request->subtrees, w.tree.get()); });
    rows.row(  // by keys alone, without which nobody could tell which entry is meant
        "tmap_high_list_parse", [](World &w) { return parse_if(w.ctx, w.request->subtrees, w.tree.get()); }, usual(),
        [](World &w) {
            tvk_map_datatree_set_operation(w.request->subtrees, TVK_OPERATION_DELETE);
            tvk_map_datatree_remove_last_subtree(w.ctx, w.request->subtrees);
        });
    rows.row("tmap_high_container_parse", [](World &w) {
        static constexpr tmap_child_entry kChildren[] = {{"if", parse_if, 0}};
        static constexpr tmap_node_cont_info kInfo{nullptr, nullptr, kChildren, 1, nullptr, nullptr};
        return tmap_high_container_parse(w.ctx, w.request.get(), w.tree.get(), &kInfo);
    });
    rows.row(ANSWER(tvk_map_add_subtrees_from_source_to_target, w.ctx, w.tree.get(), w.request.get()));
    rows.row(ANSWER(tvk_map_print_subtrees, w.tree.get(), 0, 0), whole);
    rows.row(ANSWER(tvk_map_dfs_filter_schema, w.ctx, w.filter.get(), "a/b/c", 0));
    rows.row(
        "tvk_map_dfs_filter_mark", [](World &w) { return filtered(w, tvk_map_dfs_filter_mark); }, whole);
    rows.row(
        "tvk_map_dfs_filter_con", [](World &w) { return filtered(w, tvk_map_dfs_filter_con); }, whole);
    rows.row(ANSWER(tvk_map_dfs_filter_sweep, w.ctx, w.tree.get()),
             top(node("a").kind(2)(leaf("b", "1").kind(3), leaf("c", "2")), leaf("d", "3")));
}

// What never asks for memory.
void add_quiet(Table &rows) {
    rows.row("print_stack", [](World &w) { return print_stack(w.ctx, w.levels, 1, ""), TVK_OK; });
    rows.row("qidl_tvk_datatree_free_ext_cpy",
             [](World &w) { return qidl_tvk_datatree_free_ext_cpy(&w.at("a")->tag, tvk_gpb_free, nullptr), TVK_OK; });
    rows.row(ANSWER(tmap_high_augment_parse, w.ctx, w.request.get(), w.tree.get(), nullptr));
    rows.row(ANSWER(tvk_add_to_output_list_ctx, w.ctx), usual(),
             [](World &w) { tvk_map_copy_trim_path_list_ctx(w.ctx, "l"); });
    rows.row(ANSWER(tvk_datatree_get_insert_attribute_info, w.at("a"), &w.insert));
    rows.row(ANSWER(tvk_map_build_xpath_from_tokens, w.ctx, kTokens, 1, 1, w.record.xpath, w.record.trim_path));
    rows.row(ANSWER(tvk_map_clear_xpath_ctx, w.ctx));
    rows.row(ANSWER(tvk_map_cont_handle_when_statement, w.ctx, w.request.get(), w.tree.get(), nullptr));
    rows.row(ANSWER(tvk_map_datatree_compare_keys, w.at("l"), &w.keys, w.at("l")));
    rows.row(ANSWER(tvk_map_datatree_get_datatree, w.ctx));
    rows.row(ANSWER(tvk_map_datatree_get_keys, w.request->subtrees, &w.keys));
    rows.row(ANSWER(tvk_map_datatree_get_subtree, w.tree.get(), &w.found, "l", nullptr, nullptr));
    rows.row(ANSWER(tvk_map_datatree_process_list_ctx, w.ctx, &w.out, &w.path), usual(), open_output);
    rows.row(ANSWER(tvk_map_datatree_remove_last_subtree, w.ctx, w.tree.get()));
    rows.row(ANSWER(tvk_map_datatree_remove_null_subtrees, w.ctx, w.tree.get()), usual(),
             [](World &w) { w.at("a")->presence = 0; });
    rows.row(ANSWER(tvk_map_datatree_reset_trim_path_ctx, w.ctx), usual(), open_output);
    rows.row("tvk_map_datatree_set_operation",
             [](World &w) { return tvk_map_datatree_set_operation(w.at("a"), TVK_OPERATION_DELETE), TVK_OK; });
    rows.row(ANSWER(tvk_map_datatree_trim_path, w.ctx, &w.path, "l"));
    rows.row(ANSWER(tvk_map_dfs_get_child_match, w.ctx, kIfPath, "config", "k", &w.seen, &w.out));
    rows.row("tvk_map_dfs_stack_free", [](World &w) { return tvk_map_dfs_stack_free(&w.stack), TVK_OK; });
    rows.row(ANSWER(tvk_map_dfs_stack_init, &w.stack));
    rows.row(ANSWER(tvk_map_do_these_match, "a", "a"));
    rows.row(ANSWER(tvk_map_does_it_have, "ab", "b"));
    rows.row(ANSWER(tvk_map_forget_children, w.ctx, nullptr));
    rows.row(
        "tvk_map_free_req_tree_schema", [](World &w) { return tvk_map_free_req_tree_schema(w.ctx), TVK_OK; }, usual(),
        schema);
    rows.row(ANSWER(tvk_map_free_trim_path_list_ctx, w.ctx));
    rows.row(ANSWER(tvk_map_get_agent_type, w.ctx));
    rows.row(ANSWER(tvk_map_get_backend_session, &w.mapping.req_ctx, &w.session));
    rows.row(ANSWER(tvk_map_get_error_option, w.ctx));
    rows.row(ANSWER(tvk_map_get_ip_address_info, path("192.0.2.1/24")));
    rows.row(ANSWER(tvk_map_get_ip_address_len_info, path("192.0.2.1/24")));
    rows.row(ANSWER(tvk_map_get_last_token_from_path, w.ctx, path("a/b"), &w.seen));
    rows.row(ANSWER(tvk_map_get_node, w.ctx, kIfPath, "k"));
    rows.row(ANSWER(tvk_map_get_node_info, w.ctx, kIfPath, "k", &w.seen));
    rows.row(ANSWER(tvk_map_get_node_info_inv_thresh_static, w.ctx, "/ifs", "if", "config", "k", &w.seen));
    rows.row(ANSWER(tvk_map_get_node_info_mpls_static, w.ctx, kIfPath, "config", "k", &w.seen));
    rows.row(ANSWER(tvk_map_get_node_type, w.tree.get()));
    rows.row(ANSWER(tvk_map_get_resp_tree_instance_root, w.ctx, &w.out));
    rows.row(ANSWER(tvk_map_get_subtrees, w.ctx, w.tree.get(), &w.out, &w.count));
    rows.row("tvk_map_get_timestamp", [](World &) { return tvk_map_get_timestamp(), TVK_OK; });
    rows.row(ANSWER(tvk_map_get_tree_from_key_data, w.ctx, w.at("a"), "a", "1"));
    rows.row(ANSWER(tvk_map_get_varn_conn_hdl, w.ctx, VARN_CONN_B, 0, 0));
    rows.row(ANSWER(tvk_map_is_node_in_subtrees, w.ctx, w.tree->subtrees, 2, "a", "1", 1, &w.found));
    rows.row(ANSWER(tvk_map_is_node_in_subtrees, w.ctx, w.tree->subtrees, 2, "a", "2", 1, &w.found));
    rows.row(ANSWER(tvk_map_is_private_model, kOther));
    rows.row(ANSWER(tvk_map_is_request_add, w.ctx));
    rows.row(ANSWER(tvk_map_is_request_delete, w.tree.get()));
    rows.row(ANSWER(tvk_map_is_request_replace, w.tree.get()));
    rows.row(ANSWER(tvk_map_is_valid_ipv4_addr, "192.0.2.1"));
    rows.row(ANSWER(tvk_map_is_with_defaults_enabled, w.ctx));
    rows.row("tvk_map_iterate_list", [](World &w) {
        w.found = w.tree.get();
        return tvk_map_iterate_list(w.ctx, &w.found, kName, kOne, path("l"), nullptr);
    });
    rows.row(ANSWER(tvk_map_list_handle_when_statement, w.ctx, w.request.get(), w.tree.get(), nullptr));
    rows.row(ANSWER(tvk_map_mark_visit_parent, w.ctx, w.levels, 1));
    rows.row(ANSWER(tvk_map_mark_visit_parent_mark_kc, w.ctx, w.levels, 1));
    rows.row(ANSWER(tvk_map_print_datatree_internal, w.ctx, w.tree.get(), "", 0, 0, 0));
    rows.row(ANSWER(tvk_map_release_pending_entry, w.ctx), top(node("a")), stitch);
    rows.row(ANSWER(tvk_map_release_request_state, w.ctx), usual(), leave_all);
    rows.row(ANSWER(tvk_map_remove_from_node_hierarchy, w.ctx, w.request->subtrees));
    rows.row(ANSWER(tvk_map_set_bitmap, 0, 0));
    rows.row(ANSWER(tvk_map_str_to_array, path("a/b"), &w.seen, 0, &w.number));
    rows.row(ANSWER(tvk_map_trim_strcmpbeg, " ab", "a"));
    rows.row(ANSWER(tvk_map_update_req_tree_schema, w.ctx), usual(), schema);
    rows.row(ANSWER(tvk_map_util_itree_stack_peak, w.ctx, &w.item), usual(), push_item);
    rows.row(ANSWER(tvk_map_util_itree_stack_peak_level, w.ctx, 1, &w.item), usual(), push_item);
    rows.row(ANSWER(tvk_map_util_itree_stack_pop, w.ctx), usual(), push_item);
    rows.row(ANSWER(tvk_map_util_itree_stack_size, w.ctx), usual(), push_item);
    rows.row(ANSWER(tvk_map_validate_replace_subtree, w.ctx, w.at("a")));
    rows.row(ANSWER(tvk_map_xpath_list_append, w.ctx, w.record.xpath, w.request->subtrees, "/if"));
    rows.row(ANSWER(tvk_oc_error_path_list_append, w.record.xpath, w.request->subtrees));
    rows.row(ANSWER(tvk_remove_from_output_list_ctx, w.ctx), usual(), open_output);
    rows.row(ANSWER(varn_backend_get_varn_conn, nullptr, VARN_CONN_B, 0, 0));
}

const std::vector<Operation> &operations() {
    static const std::vector<Operation> all = [] {
        Table rows;
        add_adding(rows);
        add_changing(rows);
        add_asking(rows);
        add_walking(rows);
        add_quiet(rows);
        return rows.all;
    }();
    return all;
}

class OperationOutOfMemory : public HeapTest {};

// A paragraph per row: the operation, what it comes to, and below it what else it may when memory runs out. Set
// TVK_REFRESH to write them anew, and read the diff.
TEST_F(OperationOutOfMemory, ComesToWhatIsRecorded) {
    std::string actual;
    for (const Operation &operation : operations()) {
        SCOPED_TRACE(operation.name);
        const Outcomes outcomes = sweep(operation, 0);
        actual += operation.name + ("\n  " + outcomes.whole) + "\n";
        for (const std::string &outcome : outcomes.without_memory) {
            actual += "    " + outcome + "\n";
        }
    }
    if (std::getenv("TVK_REFRESH") != nullptr) {
        std::ofstream(OUTCOMES) << actual;
    }
    std::ostringstream recorded;
    recorded << std::ifstream(OUTCOMES).rdbuf();
    EXPECT_EQ(recorded.str(), actual);
}

// Allocations of the index may fail without effect.
TEST_F(OperationOutOfMemory, ComesToTheSameWithAnIndex) {
    for (const Operation &operation : operations()) {
        SCOPED_TRACE(operation.name);
        Outcomes scanned = sweep(operation, 0);
        const Outcomes indexed = sweep(operation, 1);
        EXPECT_EQ(scanned.whole, indexed.whole);
        scanned.without_memory.insert(scanned.whole);
        for (const std::string &outcome : indexed.without_memory) {
            EXPECT_TRUE(scanned.without_memory.contains(outcome)) << outcome;
        }
    }
}

std::set<std::string> exported() {
    std::set<std::string> names;
    std::ifstream map(EXPORTS);
    for (std::string word; map >> word;) {
        if (word.ends_with(';') && word != "*;" && word != "};") {
            names.insert(word.substr(0, word.size() - 1));
        }
    }
    return names;
}

TEST_F(OperationOutOfMemory, IsLookedAtInEveryExport) {
    std::set<std::string> swept;
    for (const Operation &operation : operations()) {
        swept.insert(operation.name);
    }
    EXPECT_EQ(exported(), swept);
}

// Operators read traces: each line names an exported operation, or a step whose name tells as much.
TEST_F(OperationOutOfMemory, IsTracedByNamesThatSayWhatIsDone) {
    std::set<std::string> known = exported();
    known.insert({"find_child_handler", "refuse_unsupported_child", "check_stitching_record", "add_stitch_node",
                  "install_stitch_node", "give_up_stitching", "tvk_map_is_path_present"});
    std::map<std::string, std::string> unknown;
    std::size_t lines = 0;
    for (const Operation &operation : operations()) {
        const auto trace = [&](AllocationFailure &failure) {
            const LogCapture log(TVK_LOG_LEVEL_ERR);
            World world(operation, 0);
            world.mapping.context.trace_enabled = world.mapping.framework.trace_enabled = 1;
            failure.during([&] { return operation.call(world); });
            for (const std::string &line : log.traces()) {
                const std::size_t name = line.find("C: ") != std::string::npos ? line.find("C: ") : line.find("R: ");
                const std::string step = line.substr(name + 3, line.find(':', name + 3) - name - 3);
                ++lines;
                if (!known.contains(step)) {
                    unknown[step] = line;
                }
            }
        };
        AllocationFailure none(0, false);
        trace(none);
        if (none.allocations() != 0) {
            for_each_allocation_failure(trace);
        }
    }
    EXPECT_EQ((std::map<std::string, std::string>{}), unknown);
    EXPECT_LT(1000u, lines);
}

}  // namespace
