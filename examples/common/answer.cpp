#include "answer.h"

#include <cstdio>
#include <cstring>
#include <iterator>

#include "kel_memory.h"
#include "tvk_string.h"

namespace mapping {

struct Instances {
    Node *nodes;
    uint32_t count;
    uint32_t room;
};

namespace {

constexpr char kTag[] = "example mapping";

// An instance shows the children of the request's list node, so that what the walk finds out about them is known to
// the filter. Its native node stands where others have attributes, with a count of 0, and its key, its own, as its
// data.
void fill_instance(Node &instance, const Node &request, bool is_own, const Node *native, char *key) {
    instance.tag = request.tag;
    instance.ns = request.ns;
    instance.data = key;
    instance.attributes = reinterpret_cast<struct qidl_tvk_name_value *>(const_cast<Node *>(native));
    instance.presence = TVK_HAS_TAG | TVK_HAS_NS;
    if (is_own && tvk::has(request, TVK_HAS_SUBTREES)) {
        instance.subtrees = request.subtrees;
        instance.subtree_count = request.subtree_count;
        tvk::set_present(instance, TVK_HAS_SUBTREES);
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

// Whether a key that the request asks for is that of an entry. An identity may be named without its module.
bool is_key_of(const Node &leaf, const char *tag, const char *value, const char *value_ns) {
    return equal(leaf.tag, tag) && equal(leaf.data, value) && is_of_module(leaf, value_ns);
}

// Whether the request's list node may mean the entry with that key. A leaf right in an entry that is no key of it, but
// has a value, is one that no entry has.
bool admits(tvk_map_ctx ctx, const Node &request, const ListShape &list, const char *key) {
    const FixedKey *fixed = list.fixed_key;
    for (const Node &leaf : children_of(&request)) {
        if (!tvk::has(leaf, TVK_HAS_DATA)) {
            continue;
        }
        const bool is_named = is_key_of(leaf, list.key, key, list.key_ns) ||
                              (fixed != nullptr && is_key_of(leaf, fixed->tag, fixed->value, fixed->value_ns));
        if (!is_named || !is_of_model(ctx, leaf, list.ns)) {
            return false;
        }
    }
    return true;
}

// The candidates for what the request asks of the list: one for a key, if the native side has it, else all. What they
// are found by is at rest in scratch.
qerrno find_candidates(tvk_map_ctx ctx, const Node *request, const ListShape &list, Scratch &scratch, Entries &found) {
    const Node *outer = list.parent != nullptr ? native_entry(ctx, *list.parent) : native_root(ctx);
    const char *outer_key = list.parent != nullptr ? entry_key(ctx, *list.parent) : nullptr;
    if (outer == nullptr) {
        return TVK_OK;
    }
    const Nodes all = list.candidates(ctx, outer);
    const Node *key = request != nullptr ? key_leaf(*request, list.key) : nullptr;
    if (key != nullptr && tvk::has(*key, TVK_HAS_DATA)) {
        const char *wanted = list.native_key != nullptr ? list.native_key(key->data, outer_key, scratch) : key->data;
        return wanted != nullptr ? Entries::find(ctx, all.data(), all, list.text_of, all_of(wanted), found) : TVK_OK;
    }
    if (list.outer_key_of != nullptr) {
        return Entries::find(ctx, all.data(), all, list.outer_key_of, all_of(outer_key), found);
    }
    found = Entries(all);
    return TVK_OK;
}

Node *add_instance(Instances &instances) {
    if (instances.count == instances.room) {
        const uint32_t room = instances.room == 0 ? 1 : 2 * instances.room;
        auto *grown = static_cast<Node *>(kel_named_realloc(instances.nodes, room * sizeof(Node)));
        if (grown == nullptr) {
            return nullptr;
        }
        instances.nodes = grown;
        instances.room = room;
    }
    return &(instances.nodes[instances.count] = Node{});
}

// Adds an instance for each native node that is an entry of list. In a propagation (is_own false) the node is not of
// this list: it asks for no keys of it, and shows no children.
qerrno find_instances(tvk_map_ctx ctx, const Node &request, const ListShape &list, bool is_own, Instances &instances) {
    Scratch wanted;
    Entries candidates;
    qerrno status = find_candidates(ctx, is_own ? &request : nullptr, list, wanted, candidates);
    const char *outer_key = list.parent != nullptr ? entry_key(ctx, *list.parent) : nullptr;
    for (const Node *candidate; status == TVK_OK && (candidate = candidates.next()) != nullptr;) {
        Scratch scratch;
        const char *key = list.key_of(candidate, outer_key, scratch);
        if (key == nullptr || (is_own && !admits(ctx, request, list, key))) {
            continue;
        }
        Node *instance = add_instance(instances);
        char *copy = instance != nullptr ? tvk_strdup(key, kTag) : nullptr;
        if (copy == nullptr) {
            return TVK_ERR_NO_MEMORY;
        }
        fill_instance(*instance, request, is_own, candidate, copy);
        ++instances.count;
    }
    return status;
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
    tvk::set_present(*leaf, TVK_HAS_ATTRIBUTES);
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
    AnsweredLevel &answered = memory_of(ctx).levels[level];
    answered.native = instance != nullptr ? reinterpret_cast<const Node *>(instance->attributes) : nullptr;
    answered.key = instance != nullptr ? instance->data : nullptr;
}

template <int kLevel>
qerrno begin_instance(tvk_map_ctx ctx, Node *instance, Node *, int) {
    close_entries(ctx, kLevel);
    set_instance(ctx, kLevel, instance);
    return TVK_OK;
}

// ---- The keys of an edit ----

qerrno check_key(tvk_map_ctx ctx, const Node *key, const ListShape &list) {
    if (!is_of_model(ctx, *key, list.ns)) {
        return refuse_namespace(ctx, key, list.ns);
    }
    if (!children_of(key).empty()) {
        return refuse(ctx, key, TVK_ERR_INVALID, "it holds elements, and is a leaf");
    }
    if (key->data == nullptr) {
        return refuse(ctx, key, TVK_ERR_LIST_KEY, "a key needs a value");
    }
    const ValueType *type = equal(key->tag, list.key) ? list.key_type : nullptr;
    if (type != nullptr && !type->accepts(key->data)) {
        return refuse(ctx, key, TVK_ERR_INVALID, "%s is no %s", Quoted(key->data).text, type->name);
    }
    return TVK_OK;
}

// As the library does later on; what fails before is told with the keys of the entry that it stands in.
void mark_as_key(const Node &leaf) {
    tvk::mark_key(const_cast<Node &>(leaf));
}

// The library counts keys, and two of one name count for two.
qerrno check_key_of_name(tvk_map_ctx ctx, const Node *entry, const char *name, const ListShape &list) {
    const Node *key = nullptr;
    for (const Node &child : children_of(entry)) {
        if (!equal(child.tag, name)) {
            continue;
        }
        if (key != nullptr) {
            return refuse(ctx, &child, TVK_ERR_INVALID, "it is given twice");
        }
        mark_as_key(child);
        key = &child;
    }
    if (key != nullptr) {
        return check_key(ctx, key, list);
    }
    const qerrno status = refuse(ctx, entry, TVK_ERR_LIST_KEY, "its key <%s> is missing", name);
    kel_named_free(ctx->state->error_node_tag);
    ctx->state->error_node_tag = tvk_strdup(name, kTag);
    return status;
}

qerrno check_keys(tvk_map_ctx ctx, const Node *entry, tmap_node_list_info_p info, const ListShape &list) {
    qerrno status = TVK_OK;
    for (uint8_t i = 0; i < info->key_count && status == TVK_OK; ++i) {
        status = check_key_of_name(ctx, entry, info->keys[i].key_tag, list);
    }
    return status;
}

// No entry has two values for a key. The library would take them for two keys.
bool names_a_key_twice(const Node &request, tmap_node_list_info_p info) {
    for (uint8_t i = 0; i < info->key_count; ++i) {
        int count = 0;
        for (const Node &child : children_of(&request)) {
            count += equal(child.tag, info->keys[i].key_tag) ? 1 : 0;
        }
        if (count > 1) {
            return true;
        }
    }
    return false;
}

qerrno answer_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list) {
    const bool is_own = ctx->state->delete_walk_active != 1;
    if (is_own && names_a_key_twice(*node, info)) {
        return TVK_OK;
    }
    if (is_own) {
        mark_asked_keys(*node, list);
    }
    // After a failure the walk goes on below a list of which no instance has begun.
    set_instance(ctx, list.level, nullptr);
    Instances instances{};
    qerrno status = note_failure(ctx, find_instances(ctx, *node, list, is_own, instances));
    if (status == TVK_OK) {
        memory_of(ctx).levels[list.level].instances = &instances;
        status = tmap_high_list_parse(ctx, node, target, info);
        memory_of(ctx).levels[list.level].instances = nullptr;
        close_entries(ctx, list.level);
    }
    set_instance(ctx, list.level, nullptr);
    free_instances(instances);
    return status;
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
    return memory_of(ctx).levels[list.level].native;
}

const char *entry_key(tvk_map_ctx ctx, const ListShape &list) {
    return memory_of(ctx).levels[list.level].key;
}

const Node *find_entry(tvk_map_ctx ctx, Nodes list, TextOf text_of, const char *text) {
    Entries found;
    note_failure(ctx, Entries::find(ctx, list.data(), list, text_of, all_of(text), found));
    return memory_of(ctx).failure == TVK_OK ? found.next() : nullptr;
}

Text child_text(const Node &entry, const char *tag) {
    const Node *child = find(&entry, tag);
    return all_of(child != nullptr ? child->data : nullptr);
}

bool is_of_model(tvk_map_ctx ctx, const Node &node, const char *ns) {
    return equal(node.ns, ns) || (node.ns == nullptr && is_read(ctx));
}

qerrno refuse_namespace(tvk_map_ctx ctx, const Node *node, const char *ns) {
    return refuse(ctx, node, TVK_ERR_NAMESPACE, "its namespace is %s, not '%s'", Quoted(node->ns).text, ns);
}

qerrno note_failure(tvk_map_ctx ctx, qerrno status) {
    qerrno &failure = memory_of(ctx).failure;
    if (failure == TVK_OK) {
        failure = status;
    }
    return status;
}

// In a propagation the node is one above.
qerrno parse_container(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns) {
    if (ctx->state->delete_walk_active != 1 && !is_of_model(ctx, *node, ns)) {
        return is_read(ctx) ? TVK_OK : refuse_namespace(ctx, node, ns);
    }
    return tmap_high_container_parse(ctx, node, target, info);
}

qerrno parse_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list) {
    const bool is_own = ctx->state->delete_walk_active != 1;
    if (is_own && !is_of_model(ctx, *node, list.ns)) {
        return is_read(ctx) ? TVK_OK : refuse_namespace(ctx, node, list.ns);
    }
    if (is_read(ctx)) {
        return answer_list(ctx, node, target, info, list);
    }
    const qerrno status = is_own ? check_keys(ctx, node, info, list) : TVK_OK;
    return status == TVK_OK ? tmap_high_list_parse(ctx, node, target, info) : status;
}

qerrno push_instances(tvk_map_ctx ctx, const ListShape &list) {
    constexpr tmap_instance_fp kBegin[] = {begin_instance<0>, begin_instance<1>, begin_instance<2>, begin_instance<3>};
    static_assert(std::size(kBegin) == Memory::kLevels);
    const Instances *instances = memory_of(ctx).levels[list.level].instances;
    if (instances->count == 0) {
        return TVK_SKIP_NODE;
    }
    const uint32_t size = tvk_map_util_itree_stack_size(ctx);
    tvk_map_util_itree_stack_push(ctx, instances->nodes, instances->count,
                                  reinterpret_cast<uintptr_t>(kBegin[list.level]));
    return note_failure(ctx, tvk_map_util_itree_stack_size(ctx) > size ? TVK_OK : TVK_ERR_NO_MEMORY);
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
        tvk::set_present(*leaf, TVK_HAS_DATA_NS);
        status = leaf->data_ns != nullptr ? TVK_OK : TVK_ERR_NO_MEMORY;
    }
    if (status == TVK_OK && answer.is_default && leaf != nullptr && leaf->attribute_count == 0) {
        status = tag_as_default(leaf);
    }
    return note_failure(ctx, status);
}

qerrno parse_top(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_cont_info_p info, const char *ns) {
    Node *top = target;
    qerrno status = open_memory(ctx);
    if (status == TVK_OK && is_read(ctx)) {
        status = tvk_map_datatree_add_subtree(ctx, target, node->tag, ns, nullptr, nullptr, &top, 0);
    }
    if (status == TVK_OK) {
        status = parse_container(ctx, node, top, info, ns);
    }
    tvk_map_release_pending_entry(ctx);
    tvk_map_datatree_reset_trim_path_ctx(ctx);
    return status != TVK_OK || ctx->mapping_data == nullptr ? status : memory_of(ctx).failure;
}

}  // namespace mapping
