// The exported operations, each called in a world of its own. docs/out-of-memory.md says what they come to.
#include <cstring>

#include "operation.h"
#include "tvk_map.h"
#include "tvk_string.h"

namespace tvk::test {

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

// Makes a status of a call's result: 1 or 0 of a pointer, success of nothing.
template <class Call>
qerrno status_of(Call call) {
    using Answer = decltype(call());
    if constexpr (std::is_void_v<Answer>) {
        call();
        return TVK_OK;
    } else if constexpr (std::is_pointer_v<Answer>) {
        return call() != nullptr ? 1 : 0;
    } else {
        return static_cast<qerrno>(call());
    }
}

// A row for an operation, and a call of it with the World w.
#define ROW(operation, ...) \
    rows.row(#operation, []([[maybe_unused]] World &w) { return status_of([&] { return operation(__VA_ARGS__); }); })

Node usual() {
    return top(leaf("a", "1"), l("1"));
}

// The rows. A row is of the usual tree, unless it says of which.
class Table {
public:
    struct Row {
        Row &on(const Node &tree) { return operation->tree = tree, *this; }
        Row &after(std::function<void(World &)> beforehand) {
            return operation->beforehand = std::move(beforehand), *this;
        }
        Operation *operation;
    };
    Row row(const char *name, std::function<qerrno(World &)> call) {
        return {&all.emplace_back(Operation{name, usual(), std::move(call), {}})};
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

// Operations that may add to a tree.
void add_adding(Table &rows) {
    ROW(tvk_map_datatree_add_subtree, w.ctx, w.tree.get(), "b", kNs, "1", nullptr, &w.out, 0).on(top(node("a")));
    ROW(tvk_map_datatree_add_subtree, w.ctx, w.tree.get(), "a", kNs, "2", nullptr, &w.out, 0).on(top(leaf("a", "1")));
    ROW(tvk_map_datatree_add_subtree_flagged, w.ctx, w.tree.get(), "c", kNs, "v", w.at("t"), &w.out, 1, 0)
        .on(top(leaf("t", "1").insert(TVK_INSERT_AFTER, {{"k", "1"}})));
    rows.row("tvk_map_datatree_add_subtree_with_data", share_children).on(top(l("1")));
    ROW(tvk_map_datatree_add_path, w.ctx, w.tree.get(), "c/b", kNs, "1", nullptr, &w.out, 0);
    ROW(tvk_map_datatree_add_path_flagged, w.ctx, w.tree.get(), "a", kNs, nullptr, nullptr, &w.out, 1, 0)
        .after([](World &w) { w.state.build_flags = TVK_BUILD_ERROR_NODE; });
    ROW(tvk_map_datatree_add_path, w.ctx, w.tree.get(), "a/b", kNs, "1", nullptr, &w.out, 0).after([](World &w) {
        w.state.build_flags = TVK_BUILD_FILTERED;
        w.state.datatree = w.filter.get();
    });
    ROW(tvk_map_datatree_add_path_common, w.ctx, w.tree.get(), "c/b", kNs, "1", nullptr, &w.out, 0).after([](World &w) {
        w.state.path_record_mode = TVK_PATH_RECORD_KEEP_LAST;
    });
    ROW(tvk_map_datatree_add_path_common_flagged, w.ctx, w.tree.get(), "a", kNs, "2", nullptr, &w.out, 0, 0)
        .on(top(leaf("a", "1")));
    ROW(tvk_map_datatree_add_list_node, w.ctx, w.tree.get(), "l", kNs, "k", "2", &w.out).on(top(l("1")));
    ROW(tvk_map_is_list_node_already_present, w.ctx, w.tree.get(), "c", "", "k", "1", &w.found)
        .on(top(node("c")(l("1"))));
    ROW(tvk_map_datatree_get_last_subtree, w.ctx, w.tree.get(), "c", &w.out);
    ROW(tvk_map_search_or_add_list, w.ctx, w.tree.get(), &w.found, path("l"), kOne, kName, kNsOfAll).on(top(l("1")));
    ROW(tvk_map_search_or_add_list, w.ctx, w.tree.get(), &w.found, path("l"), kOther, kName, kNsOfAll);
    ROW(tvk_map_tree_xpath_operations, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_LEAF, "/a/l[k=2]/x"))
        .on(top(node("a")(l("1"))));
    ROW(tvk_map_tree_xpath_operations, w.ctx, &w.xpath(TVK_XPATH_MODIFY, TVK_XPATH_LEAF, "/a")).on(top(node("a")));
    ROW(tvk_map_add_leaf_from_xpath, w.ctx, w.leaf(), w.tree.get(), nullptr, kNs, kTokens, 1)
        .on(top(node("a")))
        .after(as_get);
    ROW(tvk_map_auto_stitch_list_to_list, w.ctx, nullptr, w.tree.get(), kNs, kTokens, 1)
        .on(top(node("a")))
        .after(as_get);
    ROW(tvk_map_stitch_list_to_list, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_CONTAINER, "/a/x")).on(top(node("a")));
    ROW(tvk_map_stitch_container_to_list, w.ctx, &w.xpath(TVK_XPATH_ADD, TVK_XPATH_CONTAINER, "/a/x"))
        .on(top(node("a")));
    ROW(tvk_map_add_node_to_req_tree_schema, w.ctx, w.request.get(), 1);
    ROW(tvk_map_add_node_to_req_tree_schema, w.ctx, w.request->subtrees, 1).after([](World &w) {
        tvk_map_add_node_to_req_tree_schema(w.ctx, w.request.get(), 1);
    });
}

// Operations that change nodes, or the state of the request.
void add_changing(Table &rows) {
    ROW(tvk_map_update_node_namespace, w.ctx, w.at("a"), kOther).on(top(node("a")));
    ROW(tvk_map_datatree_update_namespace, w.ctx, w.tree.get(), path("a/b"), kOther, 2).on(top(node("a")(node("b"))));
    ROW(tvk_map_datatree_add_data_ns, w.ctx, w.tree.get(), "top/a", kOther).on(top(leaf("a", "1")));
    ROW(tvk_map_copy_trim_path_list_ctx, w.ctx, "a");
    ROW(tvk_map_update_current_list_node, w.ctx, "/a");
    ROW(tvk_map_add_to_node_hierarchy, w.ctx, find(w.request, "if/config"), TVK_LEVEL_CONTAINER);
    ROW(tvk_map_util_itree_stack_push, w.ctx, w.request->subtrees, 1, 0);
    ROW(tvk_oc_error_path, w.ctx);
    ROW(tvk_map_get_list, w.ctx, &w.found, path("x/l"), nullptr).on(top(node("a"))).after([](World &w) {
        w.found = w.tree.get();
    });
    ROW(tvk_map_validate_data_ns, w.ctx, w.at("a"), kOther, 0).on(top(leaf("a", "1")));
    ROW(tvk_map_check_oc_leafref, w.ctx, kIfPath, "config", "k", w.request->subtrees);
    ROW(tmap_high_leaf_parse, w.ctx, w.leaf(), nullptr, "k", 0, nullptr);
    ROW(tvk_map_data_conv, 1, "1", &w.value);
    rows.row("tvk_map_data_conv_cb_tab",
             [](World &w) { return tvk_map_data_conv_cb_tab[0].convert("1", 1, &w.value); });
    ROW(tvk_map_data_kbs_uint32_yang_bps_uint64, "1", 1, &w.value);
    ROW(tvk_map_data_intf_secs_uint32_to_yang_date_and_time, "1", 1, &w.value);
}

// Operations that only ask, or push on a stack.
void add_asking(Table &rows) {
    ROW(tvk_map_datatree_get_subtree_num, w.ctx, w.tree.get(), "top/a", &w.number).on(top(node("a")(node("b"))));
    ROW(tvk_map_get_subtree_from_key, w.ctx, w.tree.get(), "a", "1", nullptr).on(top(leaf("a", "1")));
    ROW(tvk_map_search_list, w.ctx, w.tree.get(), &w.found, path("c/l"), kOne, kName, nullptr)
        .on(top(node("c")(l("1"))));
    ROW(tvk_map_datatree_filter_get_response, w.ctx, w.tree.get(), "a", 0, 0).on(top(node("a")));
    ROW(tvk_map_trace_subtrees, w.ctx, w.tree.get(), 0, 0).on(top(node("a")));
    ROW(tvk_map_dfs_stack_push, w.ctx, &w.stack, w.leaf(), kTags, 0, 1);
    ROW(tvk_map_dfs_mark_stack_push, w.ctx, &w.stack, w.leaf(), w.leaf(), 1, 0);
    ROW(tvk_map_dfs_con_stack_push, w.ctx, &w.stack, w.leaf(), w.leaf(), 1, 0, 0);
    ROW(tvk_map_dfs_sweep_stack_push, w.ctx, &w.stack, w.leaf(), 1);
    ROW(tvk_map_dfs_template, w.ctx, w.tree.get(), tvk_map_dfs_sweep_stack_push, tvk_map_dfs_process_con_node)
        .on(top(leaf("a", "1").type(TVK_NODE_TYPE_CONTENT_MATCH)));
    ROW(tvk_map_con_fil_check_con_node, w.ctx, w.tree.get()).on(top(leaf("a", "1").type(TVK_NODE_TYPE_CONTENT_MATCH)));
    ROW(tvk_map_dfs_process_con_node, w.ctx, &w.stack, &w.element(w.tree.get())).on(top(node("a")));
    rows.row("tvk_map_dfs_process_node",
             [](World &w) {
                 w.element(w.tree.get()).pair.index = 0;
                 return tvk_map_dfs_process_node(w.ctx, &w.stack, &w.work, kTags, 2, 1);
             })
        .on(top(node("k")(node("x"))));
    ROW(tvk_map_dfs_process_mark, w.ctx, &w.stack, &w.element(w.tree.get())).on(top(node("a")));
    ROW(tvk_map_dfs_process_sweep, w.ctx, &w.stack, &w.element(w.tree.get())).on(top().kind(TVK_NODE_KIND_KA));
    ROW(tvk_map_dfs_process_sweep, w.ctx, &w.stack, &w.element(w.tree.get()))
        .on(top(node("a").kind(TVK_NODE_KIND_KN)(leaf("b", "1").kind(TVK_NODE_KIND_KA))));
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

// Leaves something in each field of the state that owns.
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

// Operations that walk whole trees. Without memory a filter keeps less, never more.
void add_walking(Table &rows) {
    const Node whole = top(node("a")(leaf("b", "1"), leaf("c", "2").insert(TVK_INSERT_FIRST)), leaf("d", "3"));
    rows.row("tmap_high_list_parse", [](World &w) { return parse_if(w.ctx, w.request->subtrees, w.tree.get()); });
    rows.row("tmap_high_list_parse", [](World &w) { return parse_if(w.ctx, w.request->subtrees, w.tree.get()); })
        .after([](World &w) {
            tvk_map_datatree_set_operation(w.request->subtrees, TVK_OPERATION_DELETE);
            tvk_map_datatree_remove_last_subtree(w.ctx, w.request->subtrees);
        });
    rows.row("tmap_high_container_parse", [](World &w) {
        static constexpr tmap_child_entry kChildren[] = {{"if", parse_if, 0}};
        static constexpr tmap_node_cont_info kInfo{nullptr, nullptr, kChildren, 1, nullptr, nullptr};
        return tmap_high_container_parse(w.ctx, w.request.get(), w.tree.get(), &kInfo);
    });
    ROW(tvk_map_add_subtrees_from_source_to_target, w.ctx, w.tree.get(), w.request.get());
    ROW(tvk_map_print_subtrees, w.tree.get(), 0, 0).on(whole);
    ROW(tvk_map_dfs_filter_schema, w.ctx, w.filter.get(), "a/b/c", 0);
    rows.row("tvk_map_dfs_filter_mark", [](World &w) { return filtered(w, tvk_map_dfs_filter_mark); }).on(whole);
    rows.row("tvk_map_dfs_filter_con", [](World &w) { return filtered(w, tvk_map_dfs_filter_con); }).on(whole);
    ROW(tvk_map_dfs_filter_sweep, w.ctx, w.tree.get())
        .on(top(node("a").kind(2)(leaf("b", "1").kind(3), leaf("c", "2")), leaf("d", "3")));
}

// Operations that never allocate.
void add_quiet(Table &rows) {
    ROW(print_stack, w.ctx, w.levels, 1, "");
    ROW(qidl_tvk_datatree_free_ext_cpy, &w.at("a")->tag, tvk_gpb_free, nullptr);
    ROW(tmap_high_augment_parse, w.ctx, w.request.get(), w.tree.get(), nullptr);
    ROW(tvk_add_to_output_list_ctx, w.ctx).after([](World &w) { tvk_map_copy_trim_path_list_ctx(w.ctx, "l"); });
    ROW(tvk_datatree_get_insert_attribute_info, w.at("a"), &w.insert);
    ROW(tvk_map_build_xpath_from_tokens, w.ctx, kTokens, 1, 1, w.record.xpath, w.record.trim_path);
    ROW(tvk_map_clear_xpath_ctx, w.ctx);
    ROW(tvk_map_cont_handle_when_statement, w.ctx, w.request.get(), w.tree.get(), nullptr);
    ROW(tvk_map_datatree_compare_keys, w.at("l"), &w.keys, w.at("l"));
    ROW(tvk_map_datatree_get_datatree, w.ctx);
    ROW(tvk_map_datatree_get_keys, w.request->subtrees, &w.keys);
    ROW(tvk_map_datatree_get_subtree, w.tree.get(), &w.found, "l", nullptr, nullptr);
    ROW(tvk_map_datatree_process_list_ctx, w.ctx, &w.out, &w.path).after(open_output);
    ROW(tvk_map_datatree_remove_last_subtree, w.ctx, w.tree.get());
    ROW(tvk_map_datatree_remove_null_subtrees, w.ctx, w.tree.get()).after([](World &w) { w.at("a")->presence = 0; });
    ROW(tvk_map_datatree_reset_trim_path_ctx, w.ctx).after(open_output);
    ROW(tvk_map_datatree_set_operation, w.at("a"), TVK_OPERATION_DELETE);
    ROW(tvk_map_datatree_trim_path, w.ctx, &w.path, "l");
    ROW(tvk_map_dfs_get_child_match, w.ctx, kIfPath, "config", "k", &w.seen, &w.out);
    ROW(tvk_map_dfs_stack_free, &w.stack);
    ROW(tvk_map_dfs_stack_init, &w.stack);
    ROW(tvk_map_do_these_match, "a", "a");
    ROW(tvk_map_does_it_have, "ab", "b");
    ROW(tvk_map_forget_children, w.ctx, nullptr);
    ROW(tvk_map_free_req_tree_schema, w.ctx).after(schema);
    ROW(tvk_map_free_trim_path_list_ctx, w.ctx);
    ROW(tvk_map_get_agent_type, w.ctx);
    ROW(tvk_map_get_backend_session, &w.mapping.req_ctx, &w.session);
    ROW(tvk_map_get_error_option, w.ctx);
    ROW(tvk_map_get_ip_address_info, path("192.0.2.1/24"));
    ROW(tvk_map_get_ip_address_len_info, path("192.0.2.1/24"));
    ROW(tvk_map_get_last_token_from_path, w.ctx, path("a/b"), &w.seen);
    ROW(tvk_map_get_node, w.ctx, kIfPath, "k");
    ROW(tvk_map_get_node_info, w.ctx, kIfPath, "k", &w.seen);
    ROW(tvk_map_get_node_info_inv_thresh_static, w.ctx, "/ifs", "if", "config", "k", &w.seen);
    ROW(tvk_map_get_node_info_mpls_static, w.ctx, kIfPath, "config", "k", &w.seen);
    ROW(tvk_map_get_node_type, w.tree.get());
    ROW(tvk_map_get_resp_tree_instance_root, w.ctx, &w.out);
    ROW(tvk_map_get_subtrees, w.ctx, w.tree.get(), &w.out, &w.count);
    rows.row("tvk_map_get_timestamp", [](World &) { return tvk_map_get_timestamp(), TVK_OK; });
    ROW(tvk_map_get_tree_from_key_data, w.ctx, w.at("a"), "a", "1");
    ROW(tvk_map_get_varn_conn_hdl, w.ctx, VARN_CONN_B, 0, 0);
    ROW(tvk_map_is_node_in_subtrees, w.ctx, w.tree->subtrees, 2, "a", "1", 1, &w.found);
    ROW(tvk_map_is_node_in_subtrees, w.ctx, w.tree->subtrees, 2, "a", "2", 1, &w.found);
    ROW(tvk_map_is_private_model, kOther);
    ROW(tvk_map_is_request_add, w.ctx);
    ROW(tvk_map_is_request_delete, w.tree.get());
    ROW(tvk_map_is_request_replace, w.tree.get());
    ROW(tvk_map_is_valid_ipv4_addr, "192.0.2.1");
    ROW(tvk_map_is_with_defaults_enabled, w.ctx);
    rows.row("tvk_map_iterate_list", [](World &w) {
        w.found = w.tree.get();
        return tvk_map_iterate_list(w.ctx, &w.found, kName, kOne, path("l"), nullptr);
    });
    ROW(tvk_map_list_handle_when_statement, w.ctx, w.request.get(), w.tree.get(), nullptr);
    ROW(tvk_map_mark_visit_parent, w.ctx, w.levels, 1);
    ROW(tvk_map_mark_visit_parent_mark_kc, w.ctx, w.levels, 1);
    ROW(tvk_map_print_datatree_internal, w.ctx, w.tree.get(), "", 0, 0, 0);
    ROW(tvk_map_release_pending_entry, w.ctx).on(top(node("a"))).after(stitch);
    ROW(tvk_map_release_request_state, w.ctx).after(leave_all);
    ROW(tvk_map_remove_from_node_hierarchy, w.ctx, w.request->subtrees);
    ROW(tvk_map_set_bitmap, 0, 0);
    ROW(tvk_map_str_to_array, path("a/b"), &w.seen, 0, &w.number);
    ROW(tvk_map_trim_strcmpbeg, " ab", "a");
    ROW(tvk_map_update_req_tree_schema, w.ctx).after(schema);
    ROW(tvk_map_util_itree_stack_peak, w.ctx, &w.item).after(push_item);
    ROW(tvk_map_util_itree_stack_peak_level, w.ctx, 1, &w.item).after(push_item);
    ROW(tvk_map_util_itree_stack_pop, w.ctx).after(push_item);
    ROW(tvk_map_util_itree_stack_size, w.ctx).after(push_item);
    ROW(tvk_map_validate_replace_subtree, w.ctx, w.at("a"));
    ROW(tvk_map_xpath_list_append, w.ctx, w.record.xpath, w.request->subtrees, "/if");
    ROW(tvk_oc_error_path_list_append, w.record.xpath, w.request->subtrees);
    ROW(tvk_remove_from_output_list_ctx, w.ctx).after(open_output);
    ROW(varn_backend_get_varn_conn, nullptr, VARN_CONN_B, 0, 0);
}

}  // namespace

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

}  // namespace tvk::test
