// Adds leaves to the response.
#include "answer.h"

#include <cstdio>
#include <cstring>

#include "kel_memory.h"
#include "tvk_string.h"

namespace mapping {

namespace {

constexpr char kTag[] = "example mapping";

// Gives a leaf the attribute that marks its value as a default.
qerrno tag_as_default(Node *leaf) {
    auto *attribute =
        static_cast<struct qidl_tvk_name_value *>(kel_named_calloc_(1, sizeof(struct qidl_tvk_name_value), kTag, 0));
    if (attribute == nullptr) {
        return TVK_ERR_NO_MEMORY;
    }
    attribute->name = tvk_strdup("{urn:ietf:params:xml:ns:netconf:default:1.0}default", kTag);
    attribute->value = tvk_strdup("true", kTag);
    leaf->attributes = attribute;
    leaf->attribute_count = 1;
    tvk::set_present(*leaf, TVK_HAS_ATTRIBUTES);
    return attribute->name != nullptr && attribute->value != nullptr ? TVK_OK : TVK_ERR_NO_MEMORY;
}

// Adds the node around a leaf first when it is in another namespace, since a path has one namespace.
qerrno add_surroundings(tvk_map_ctx ctx, const Place &place, const Answer &answer) {
    char path[TVK_MAP_MAX_PATH];
    std::snprintf(path, sizeof path, "%s", answer.path);
    char *last_separator = std::strrchr(path, '/');
    if (last_separator == nullptr) {
        return TVK_OK;
    }
    *last_separator = '\0';
    return tvk_map_datatree_add_path_flagged(ctx, place.node, path, answer.in_ns, nullptr, nullptr, nullptr, 0,
                                             TVK_ADD_UNFILTERED | place.flags);
}

}  // namespace

qerrno answer_value(tvk_map_ctx ctx, Node *target, const Answer &answer) {
    // The filter is asked first, so that no entry is opened for a leaf that is left out.
    if (tvk_map_dfs_filter_schema(ctx, ctx->state->datatree, answer.path, 0) != 1) {
        return TVK_OK;
    }
    Place place{target, 0};
    qerrno status = answer.list != nullptr ? open_entry(ctx, target, *answer.list, place) : TVK_OK;
    if (status == TVK_OK && !equal(answer.ns, answer.in_ns)) {
        status = add_surroundings(ctx, place, answer);
    }
    Node *leaf = nullptr;
    if (status == TVK_OK) {
        status = tvk_map_datatree_add_path_flagged(ctx, place.node, answer.path, answer.ns, answer.value, nullptr,
                                                   &leaf, 0, TVK_ADD_MATCH_TAG_ONLY | TVK_ADD_UNFILTERED | place.flags);
    }
    if (status == TVK_OK && answer.value_ns != nullptr && leaf != nullptr && leaf->data_ns == nullptr) {
        leaf->data_ns = tvk_strdup(answer.value_ns, kTag);
        tvk::set_present(*leaf, TVK_HAS_DATA_NS);
        status = leaf->data_ns != nullptr ? TVK_OK : TVK_ERR_NO_MEMORY;
    }
    if (status == TVK_OK && answer.is_default && leaf != nullptr && leaf->attribute_count == 0) {
        status = tag_as_default(leaf);
    }
    return note_failure(ctx, status);
}

}  // namespace mapping
