// Finds the native entries of a list, and makes the instances that the walk goes through.
#include "instances.h"

#include <iterator>

#include "kel_memory.h"
#include "tvk_string.h"

namespace mapping {

// The instances of a list, each with a key of its own.
struct Instances {
    Node *nodes;
    uint32_t count;
    uint32_t room;
};

namespace {

constexpr char kTag[] = "example mapping";

// Makes an instance of the list node request. It shows the children of that node, so that the filter knows what the
// walk finds out about them. The native node stands in the place of attributes, whose count is 0. The key becomes its
// data; the instance owns it.
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

// Returns the leaf of a key in a list node of the request, or null.
const Node *key_leaf(const Node &request, const char *tag) {
    const Node *key = nullptr;
    tvk_map_datatree_get_subtree(&request, &key, tag, nullptr, nullptr);
    return key;
}

// Tells whether a leaf of the request names a key with that value. An identity may be named without its module.
bool is_key_of(const Node &leaf, const char *tag, const char *value, const char *value_ns) {
    return equal(leaf.tag, tag) && equal(leaf.data, value) && is_of_module(leaf, value_ns);
}

// Tells whether a list node of the request may mean the entry with that key. Entries have no leaves but their keys, so
// a node with another leaf and a value means none.
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

// Finds the native nodes that the request may ask for: the one of a key that it names, else all. The text that found
// looks for may stand in scratch.
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

// Returns the place for another instance, which is not counted yet, or null without memory.
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

// Adds an instance for each native node that is an entry of list. In a propagation is_own is false: request is no node
// of this list, so it names no keys of it, and its children are not shown.
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

// Gives the keys that the client asks for the type that the filter tells keys by. Keys that the walk has added itself,
// to a list that it meets again for the next outer entry, stay without a type.
void mark_asked_keys(const Node &request, const ListShape &list) {
    if (tvk_map_get_node_type(&request) != TVK_NODE_TYPE_NONE) {
        return;
    }
    mark_asked_key(request, list.key);
    if (list.fixed_key != nullptr) {
        mark_asked_key(request, list.fixed_key->tag);
    }
}

// Drops the entries from level on from the output list.
void close_entries(tvk_map_ctx ctx, int level) {
    while (ctx->state->output_list_count > level) {
        tvk_remove_from_output_list_ctx(ctx, nullptr, nullptr);
    }
}

// Makes instance the entry that is being answered at level; null means none.
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

// Tells whether a list node of the request names a key twice. No entry has two values for a key, and the library would
// take them for two keys.
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

}  // namespace

qerrno answer_list(tvk_map_ctx ctx, const Node *node, Node *target, tmap_node_list_info_p info, const ListShape &list) {
    const bool is_own = ctx->state->delete_walk_active != 1;
    if (is_own && names_a_key_twice(*node, info)) {
        return TVK_OK;
    }
    if (is_own) {
        mark_asked_keys(*node, list);
    }
    // After a failure the walk goes on below the list although no instance has begun.
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

}  // namespace mapping
