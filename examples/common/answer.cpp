#include "answer.h"

#include <cstdio>
#include <cstring>

#include "kel_memory.h"
#include "tvk_string.h"

namespace mapping {

namespace {

constexpr char kTag[] = "example mapping";

// Where the walk's slots hold what is being answered, level by level. Their count stays 0: counted slots are cleared
// when the walk goes from an inner list back to an outer one, which is still being answered.
constexpr int kInstanceSlots = 8;

// Where they hold the first failure of an answer. A propagation ignores what handlers return, and the response would
// be sent with half of an entry, or an identity of no module.
constexpr int kFailureSlot = 16;

qerrno noted(tvk_map_ctx ctx, qerrno status) {
    void *&failure = ctx->current_list_slot_first[kFailureSlot];
    if (failure == nullptr) {
        failure = reinterpret_cast<void *>(static_cast<uintptr_t>(status));
    }
    return status;
}

qerrno noted_failure(tvk_map_ctx ctx) {
    return static_cast<qerrno>(reinterpret_cast<uintptr_t>(ctx->current_list_slot_first[kFailureSlot]));
}

struct Instances {
    Node *nodes;
    uint32_t count;
};

// An instance shows the children of the request's list node, so that what the walk finds out about them is known to
// the filter. Its native node stands where others have attributes, with a count of 0, and its key, its own, as its
// data.
void fill_instance(Node &instance, const Node &request, bool is_own, const Node *native, char *key) {
    instance.tag = request.tag;
    instance.ns = request.ns;
    instance.data = key;
    instance.attributes = reinterpret_cast<struct qidl_tvk_name_value *>(const_cast<Node *>(native));
    instance.presence = TVK_HAS_TAG | TVK_HAS_NS;
    if (is_own && (request.presence & TVK_HAS_SUBTREES) != 0) {
        instance.subtrees = request.subtrees;
        instance.subtree_count = request.subtree_count;
        instance.presence = static_cast<uint16_t>(instance.presence | TVK_HAS_SUBTREES);
    }
}

void free_instances(const Instances &instances) {
    for (uint32_t i = 0; i < instances.count; ++i) {
        kel_named_free(instances.nodes[i].data);
    }
    kel_named_free(instances.nodes);
}

const Node *key_leaf(const Node &request, const char *tag) {
    const Node *key = nullptr;
    tvk_map_datatree_get_subtree(&request, &key, tag, nullptr, nullptr);
    return key;
}

// Whether the request's list node may mean an entry with that key. An identity may be named without its module.
bool admits(const Node &request, const char *tag, const char *value, const char *value_ns) {
    const Node *key = key_leaf(request, tag);
    if (key == nullptr || (key->presence & TVK_HAS_DATA) == 0) {
        return true;
    }
    return equal(key->data, value) && is_of_module(*key, value_ns);
}

bool admits_fixed_key(const Node &request, const ListShape &list) {
    const FixedKey *key = list.fixed_key;
    return key == nullptr || admits(request, key->tag, key->value, key->value_ns);
}

// Adds an instance for each native node that is an entry of list. In a propagation (is_own false) the node is not of
// this list: it asks for no keys of it, and shows no children.
qerrno find_instances(tvk_map_ctx ctx, const Node &request, const ListShape &list, bool is_own, Instances &instances) {
    const Node *outer = list.parent != nullptr ? native_entry(ctx, *list.parent) : native_root(ctx);
    if (outer == nullptr || (is_own && !admits_fixed_key(request, list))) {
        return TVK_OK;
    }
    const NodeRange candidates = list.candidates(ctx, outer);
    if (candidates.count == 0) {
        return TVK_OK;
    }
    const auto count = static_cast<std::size_t>(candidates.count);
    instances.nodes = static_cast<Node *>(kel_named_calloc_(count, sizeof(Node), kTag, 0));
    if (instances.nodes == nullptr) {
        return TVK_ERR_NO_MEMORY;
    }
    const char *outer_key = list.parent != nullptr ? entry_key(ctx, *list.parent) : nullptr;
    for (const Node &candidate : candidates) {
        Scratch scratch;
        const char *key = list.key_of(&candidate, outer_key, scratch);
        if (key == nullptr || (is_own && !admits(request, list.key, key, list.key_ns))) {
            continue;
        }
        char *copy = tvk_strdup(key, kTag);
        if (copy == nullptr) {
            return TVK_ERR_NO_MEMORY;
        }
        fill_instance(instances.nodes[instances.count++], request, is_own, &candidate, copy);
    }
    return TVK_OK;
}

void mark_asked_key(const Node &request, const char *tag) {
    if (const Node *key = key_leaf(request, tag); key != nullptr) {
        auto &info = const_cast<Node *>(key)->schema_info;
        info.node_type = TVK_NODE_TYPE_SELECTION;
        info.flags = static_cast<uint8_t>(info.flags | TVK_SCHEMA_INFO_HAS_NODE_TYPE);
    }
}

// The filter tells keys by their type. Those that the walk adds itself, to a list that is met again for the next
// outer entry, stay without one.
void mark_asked_keys(const Node &request, const ListShape &list) {
    if (tvk_map_get_node_type(&request) != TVK_NODE_TYPE_NONE) {
        return;
    }
    mark_asked_key(request, list.key);
    if (list.fixed_key != nullptr) {
        mark_asked_key(request, list.fixed_key->tag);
    }
}

void close_entries(tvk_map_ctx ctx, int level) {
    while (ctx->state->output_list_count > level) {
        tvk_remove_from_output_list_ctx(ctx, nullptr, nullptr);
    }
}

// The attribute that tells a client of a value that nobody set.
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
    leaf->presence = static_cast<uint16_t>(leaf->presence | TVK_HAS_ATTRIBUTES);
    return attribute->name != nullptr && attribute->value != nullptr ? TVK_OK : TVK_ERR_NO_MEMORY;
}

// A path has one namespace: what a leaf of another one stands in comes first, by its own.
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

void set_instance(tvk_map_ctx ctx, int level, const Node *instance) {
    ctx->current_list_slot_first[level] = instance != nullptr ? instance->attributes : nullptr;
    ctx->current_list_slot_second[level] = instance != nullptr ? instance->data : nullptr;
}

template <int kLevel>
qerrno begin_instance(tvk_map_ctx ctx, Node *instance, Node *, int) {
    close_entries(ctx, kLevel);
    set_instance(ctx, kLevel, instance);
    return TVK_OK;
}

}  // namespace

bool is_of_module(const Node &leaf, const char *value_ns) {
    return leaf.data_ns == nullptr || value_ns == nullptr || equal(leaf.data_ns, value_ns);
}

bool is_read(tvk_map_ctx ctx) {
    const uint32_t type = ctx->state->request->type;
    return type == TVK_REQUEST_GET || type == TVK_REQUEST_GET_CONFIG;
}

const Node *native_root(tvk_map_ctx ctx) {
    return static_cast<const Node *>(tvk_map_get_varn_conn_hdl(ctx, VARN_CONN_A_0, 0, 0));
}

const Node *native_entry(tvk_map_ctx ctx, const ListShape &list) {
    return static_cast<const Node *>(ctx->current_list_slot_first[list.level]);
}

const char *entry_key(tvk_map_ctx ctx, const ListShape &list) {
    return static_cast<const char *>(ctx->current_list_slot_second[list.level]);
}

qerrno parse_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list) {
    if (!is_read(ctx)) {
        return tmap_high_list_parse(ctx, node, target, info);
    }
    const bool is_own = ctx->state->delete_walk_active != 1;
    if (is_own) {
        mark_asked_keys(*node, list);
    }
    // After a failure the walk goes on below a list of which no instance has begun.
    set_instance(ctx, list.level, nullptr);
    Instances instances{nullptr, 0};
    qerrno status = noted(ctx, find_instances(ctx, *node, list, is_own, instances));
    if (status == TVK_OK) {
        ctx->current_list_slot_first[kInstanceSlots + list.level] = &instances;
        status = tmap_high_list_parse(ctx, node, target, info);
        ctx->current_list_slot_first[kInstanceSlots + list.level] = nullptr;
        close_entries(ctx, list.level);
    }
    set_instance(ctx, list.level, nullptr);
    free_instances(instances);
    return status;
}

qerrno push_instances(tvk_map_ctx ctx, const ListShape &list) {
    constexpr tmap_instance_fp kBegin[] = {begin_instance<0>, begin_instance<1>, begin_instance<2>, begin_instance<3>};
    const auto *instances = static_cast<const Instances *>(ctx->current_list_slot_first[kInstanceSlots + list.level]);
    if (instances->count == 0) {
        return TVK_SKIP_NODE;
    }
    const uint32_t size = tvk_map_util_itree_stack_size(ctx);
    tvk_map_util_itree_stack_push(ctx, instances->nodes, instances->count,
                                  reinterpret_cast<uintptr_t>(kBegin[list.level]));
    return noted(ctx, tvk_map_util_itree_stack_size(ctx) > size ? TVK_OK : TVK_ERR_NO_MEMORY);
}

void clear_pending(tvk_map_ctx ctx) {
    if (ctx->state->pending_hierarchy_kind != 0) {
        kel_named_free(ctx->state->pending_hierarchy_path);
    }
    ctx->state->pending_hierarchy_path = nullptr;
    ctx->state->pending_hierarchy_kind = 0;
    ctx->state->pending_list_node = nullptr;
    tvk_map_free_trim_path_list_ctx(ctx);
}

qerrno answer_value(tvk_map_ctx ctx, Node *target, const Answer &answer) {
    // Asked first, so that nothing is opened for a leaf that is then left out.
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
        leaf->presence = static_cast<uint16_t>(leaf->presence | TVK_HAS_DATA_NS);
        status = leaf->data_ns != nullptr ? TVK_OK : TVK_ERR_NO_MEMORY;
    }
    if (status == TVK_OK && answer.is_default && leaf != nullptr && leaf->attribute_count == 0) {
        status = tag_as_default(leaf);
    }
    return noted(ctx, status);
}

qerrno parse_top(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns) {
    Node *top = target;
    qerrno status = TVK_OK;
    ctx->current_list_slot_first[kFailureSlot] = nullptr;
    if (is_read(ctx)) {
        status = tvk_map_datatree_add_subtree(ctx, target, node->tag, ns, nullptr, nullptr, &top, 0);
    }
    if (status == TVK_OK) {
        status = tmap_high_container_parse(ctx, node, top, info);
    }
    clear_pending(ctx);
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    return status != TVK_OK ? status : noted_failure(ctx);
}

}  // namespace mapping
