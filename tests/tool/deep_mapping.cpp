// A mapping of anything in its namespace: containers as deep as the request has them, entries with twelve keys, and
// leaves, which all go to the top of the target.
#include <cstdlib>
#include <cstring>

#include "tvk_map.h"
#include "tvk_map_module.h"

namespace {

using Node = struct qidl_tvk_datatree;

constexpr char kNs[] = "urn:example:deep";

qerrno map_child(tvk_map_ctx ctx, const Node *node, Node *target);

constexpr tmap_key_entry kKeys[] = {
    {"k1", nullptr, nullptr}, {"k2", nullptr, nullptr},  {"k3", nullptr, nullptr},  {"k4", nullptr, nullptr},
    {"k5", nullptr, nullptr}, {"k6", nullptr, nullptr},  {"k7", nullptr, nullptr},  {"k8", nullptr, nullptr},
    {"k9", nullptr, nullptr}, {"k10", nullptr, nullptr}, {"k11", nullptr, nullptr}, {"k12", nullptr, nullptr},
};
constexpr tmap_node_list_info kEntry = {nullptr, map_child, nullptr, kKeys, 0, 12, "/top/entry", nullptr};
constexpr tmap_node_cont_info kContainer = {nullptr, map_child, nullptr, 0, nullptr, nullptr};

// A chain of so many levels, which no document could hold.
qerrno add_chain(tvk_map_ctx ctx, const Node *leaf, Node *target) {
    qerrno status = TVK_OK;
    for (int level = std::atoi(leaf->data); level > 0 && status == TVK_OK; --level) {
        status = tvk_map_datatree_add_subtree(ctx, target, "c", kNs, nullptr, nullptr, &target, 0);
    }
    return status;
}

qerrno map_leaf(tvk_map_ctx ctx, const Node *leaf, Node *target) {
    if (std::strcmp(leaf->tag, "chain") == 0) {
        return add_chain(ctx, leaf, target);
    }
    if (std::strcmp(leaf->tag, "odd") == 0) {
        ctx->failed_node = target;  // no node of the request
        return 0xdeadu;
    }
    return tvk_map_datatree_add_subtree(ctx, target, leaf->tag, kNs, leaf->data, leaf, nullptr, 1);
}

qerrno map_child(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (ctx->state->delete_walk_active == 1) {
        return TVK_OK;  // node is the container above, which is deleted or read as a whole
    }
    if (std::strcmp(node->tag, "entry") == 0) {
        return tmap_high_list_parse(ctx, node, target, &kEntry);
    }
    return (node->presence & TVK_HAS_SUBTREES) != 0 ? tmap_high_container_parse(ctx, node, target, &kContainer)
                                                    : tmap_high_leaf_parse(ctx, node, target, node->tag, 0, map_leaf);
}

qerrno map_top(tvk_map_ctx ctx, const Node *node, Node *target) {
    if (ctx->mapping_data == nullptr) {
        return 0xbadu;
    }
    return tmap_high_container_parse(ctx, node, target, &kContainer);
}

qerrno begin_request(tvk_map_ctx ctx) {
    ctx->mapping_data = std::malloc(1);
    return TVK_OK;
}

constexpr tvk_map_module_container kTops[] = {{"top", kNs, map_top}, {"top", "urn:example:deep-too", map_top}};
constexpr tvk_map_module kModule = {
    .version = TVK_MAP_MODULE_VERSION,
    .name = "deep_mapping",
    .container_count = 2,
    .containers = kTops,
    .begin_request = begin_request,
    .end_request = nullptr,
    .release_data = std::free,
    .identities = nullptr,
    .native_lists = nullptr,
    .flags = TVK_MAP_MODULE_TAKES_INSERT,
};

}  // namespace

const struct tvk_map_module *tvk_map_module_get(void) {
    return &kModule;
}
