/* The surface as a C program sees it: a container and a list walked into a native tree, and a failing request. */
#include <stdio.h>
#include <string.h>

#include "kel_memory.h"
#include "tvk_map.h"
#include "tvk_string.h"

#define NS "http://openconfig.net/yang/c"
#define CHECK(condition)                                                    \
    do {                                                                    \
        if (!(condition)) {                                                 \
            fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
            return 1;                                                       \
        }                                                                   \
    } while (0)

static qerrno map_leaf(tvk_map_ctx ctx, const struct qidl_tvk_datatree *leaf, struct qidl_tvk_datatree *target) {
    return tvk_map_datatree_add_path(ctx, target, "native/value", NS, leaf->data, leaf, NULL, 1);
}

static qerrno handle_leaf(tvk_map_ctx ctx, const struct qidl_tvk_datatree *leaf, struct qidl_tvk_datatree *target) {
    return tmap_high_leaf_parse(ctx, leaf, target, leaf->tag, 0, map_leaf);
}

static const struct tmap_child_entry entry_children[] = {{"id", handle_leaf, TMAP_CHILD_KEY}};
static const struct tmap_key_entry entry_keys[] = {{"id", "/top/entry", "config"}};
static const struct tmap_node_list_info entry = {.child_conts = entry_children,
                                                 .keys = entry_keys,
                                                 .child_cont_count = 1,
                                                 .key_count = 1,
                                                 .list_path = "/top/entry"};

static qerrno parse_entry(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, struct qidl_tvk_datatree *target) {
    return tmap_high_list_parse(ctx, node, target, &entry);
}

static const struct tmap_child_entry top_children[] = {{"entry", parse_entry, 0}};
static const struct tmap_node_cont_info top = {
    .child_handler = handle_leaf, .child_conts = top_children, .child_cont_count = 1};

static int run(tvk_map_ctx ctx, struct qidl_tvk_datatree *request, struct qidl_tvk_datatree *target) {
    struct qidl_tvk_datatree *node = NULL;
    uint32_t count = 0;

    CHECK(tvk_map_datatree_add_path(ctx, request, "top/leaf", NS, "1", NULL, NULL, 0) == TVK_OK);
    CHECK(tvk_map_datatree_add_path(ctx, request, "top/entry/id", NS, "2", NULL, &node, 0) == TVK_OK);
    CHECK(tmap_high_container_parse(ctx, request->subtrees, target, &top) == TVK_OK);
    CHECK(tvk_map_datatree_get_subtree_num(ctx, target->subtrees, "native", &count) == TVK_OK && count == 2);
    CHECK(strcmp(target->subtrees->subtrees[1].data, "2") == 0 && target->subtrees->subtrees[1].subtree_index == 2);
    CHECK(tvk_map_validate_replace_subtree(ctx, target, 0, 0) == 0);

    tvk_map_datatree_set_operation(node, TVK_OPERATION_DELETE);
    CHECK(tmap_high_container_parse(ctx, request->subtrees, target, &top) == TVK_ERR_KEY_OPERATION);
    CHECK(strcmp(ctx->state->error_xpath, "ns1:top/ns1:entry[id = '2']/") == 0);
    CHECK(strcmp(ctx->state->error_xpath_ns, NS) == 0 && ctx->state->hierarchy_depth == 0);
    return 0;
}

int main(void) {
    static struct tvk_map_request_state state;
    struct tvk_request request_record = {.type = TVK_REQUEST_EDIT_CONFIG};
    struct tvk_map_context context = {.state = &state};
    struct qidl_tvk_datatree request = {0};
    struct qidl_tvk_datatree target = {0};
    int failed;

    state.request = &request_record;
    failed = run(&context, &request, &target);
    qidl_tvk_datatree_free_ext(&request, tvk_gpb_free, NULL, 0);
    qidl_tvk_datatree_free_ext(&target, tvk_gpb_free, NULL, 0);
    kel_named_free(context.current_list_node);
    kel_named_free(state.error_xpath);
    kel_named_free(state.error_xpath_ns);
    return failed;
}
