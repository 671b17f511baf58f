// Enters entries, joins operations, and words refusals.
#include "tree.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "kel_memory.h"
#include "memory.h"
#include "tvk_string.h"

namespace mapping {

namespace {

constexpr char kTag[] = "example mapping";

// Numbers the first entry of a list. An entry that this request adds has a number, unlike those that the native tree
// had before.
void number_first_entry(tvk_map_ctx ctx, Node &container) {
    Node &first = container.subtrees[0];
    if (container.subtree_count == 1 && !tvk::has(first, TVK_HAS_SUBTREE_INDEX)) {
        tvk_map_forget_children(ctx, &container);
        first.subtree_index = 1;
        tvk::set_present(first, TVK_HAS_SUBTREE_INDEX);
    }
}

// Tells whether all that an entry holds is of this request, so that the device does not have it yet.
bool is_of_request(const Node &entry) {
    return tvk::has(entry, TVK_HAS_SUBTREE_INDEX) || tvk::has_operation(entry, TVK_OPERATION_CREATE) ||
           tvk::has_operation(entry, TVK_OPERATION_REPLACE);
}

// Returns the operation that deletes native. The device may not have a node that this request has added, so such a node
// is removed, which does not fail. A node that was deleted before stays deleted.
uint32_t deletion(const Node &native, const Node &node, const Node *within) {
    if (tvk::has_operation(native, TVK_OPERATION_DELETE)) {
        return TVK_OPERATION_DELETE;
    }
    const bool is_put = tvk::has_operation(native) && tvk_map_is_request_delete(&native) == 0;
    const bool is_own = is_put || (within != nullptr && is_of_request(*within));
    return is_own ? uint32_t{TVK_OPERATION_REMOVE} : node.operation;
}

// Tells whether a node keeps its operation when something is put into it: it is created or replaced.
bool stays(const Node &native) {
    return tvk::has_operation(native, TVK_OPERATION_CREATE) || tvk::has_operation(native, TVK_OPERATION_REPLACE);
}

// Tells whether the walk is in the removal that the replacement of a list entry begins with.
bool is_replaced_next(tvk_map_ctx ctx) {
    return ctx->state->replace_converted != 0 && ctx->state->delete_walk_active != 1 &&
           (ctx->state->build_flags & TVK_BUILD_REPLACE_REMOVING) != 0;
}

// Releases all children of node but the first ones.
void drop_children(tvk_map_ctx ctx, Node *node, int32_t kept) {
    tvk_map_forget_children(ctx, node);
    for (int32_t i = kept; i < node->subtree_count; ++i) {
        qidl_tvk_datatree_free_ext(&node->subtrees[i], tvk_gpb_free, nullptr, 0);
    }
    if (node->subtree_count > kept) {
        node->subtree_count = kept;
    }
}

}  // namespace

const Node *find(const Node *node, const char *path) {
    char component[64];
    while (node != nullptr && *(path += std::strspn(path, "/")) != '\0') {
        const std::size_t length = std::strcspn(path, "/");
        if (strncpy_s(component, sizeof component, path, length) != 0 ||
            tvk_map_datatree_get_subtree(node, &node, component, nullptr, nullptr) != TVK_OK) {
            return nullptr;
        }
        path += length;
    }
    return node;
}

Node *find(Node *node, const char *path) {
    return const_cast<Node *>(find(static_cast<const Node *>(node), path));
}

qerrno enter_entry(tvk_map_ctx ctx, Node *parent, const List &list, const char *key_value) {
    ctx->state->pending_list_node = nullptr;  // the list may grow, which moves its entries
    memory_of(ctx).entry_is_new = false;
    Node *container = nullptr;
    Node *entry = nullptr;
    qerrno status = tvk_map_datatree_add_subtree(ctx, parent, list.container, list.ns, nullptr, nullptr, &container, 0);
    if (status == TVK_OK) {
        take_back_removal(container);
        status = tvk_map_datatree_add_list_node(ctx, container, list.name, list.ns, list.key, key_value, &entry);
    }
    if (status == TVK_OK && children_of(entry).empty()) {
        number_first_entry(ctx, *container);
        memory_of(ctx).entry_is_new = true;
        status = tvk_map_datatree_add_subtree(ctx, entry, list.key, list.ns, key_value, nullptr, nullptr, 0);
    }
    if (status == TVK_OK) {
        ctx->state->pending_list_node = entry;
    }
    return status;
}

void take_back_removal(Node *native) {
    if (native != nullptr && tvk_map_is_request_delete(native) != 0) {
        tvk_map_datatree_set_operation(native, TVK_OPERATION_REPLACE);
    }
}

void give_operation(tvk_map_ctx ctx, const Node *node, Node *native, const Node *within) {
    if (tvk_map_is_request_delete(node) != 0) {
        tvk_map_datatree_set_operation(native, deletion(*native, *node, within));
        return;
    }
    take_back_removal(native);
    // A merge that the walk has made of a replace is no operation of the request.
    const bool is_own = tvk::has_operation(*node) && ctx->state->replace_converted == 0;
    if (is_own && !stays(*native)) {
        tvk_map_datatree_set_operation(native, node->operation);
    }
}

void remove_entry(tvk_map_ctx ctx, const Node *node, Node *entry, int32_t key_count, const Node *within) {
    drop_children(ctx, entry, key_count);
    give_operation(ctx, node, entry, within);
}

qerrno settle_entry(tvk_map_ctx ctx, const Node *node, int32_t key_count) {
    Node *entry = current_entry(ctx);
    if (tvk_map_is_request_delete(node) == 0) {
        give_operation(ctx, node, entry, nullptr);
        return TVK_OK;
    }
    const bool is_new = memory_of(ctx).entry_is_new;
    if (is_replaced_next(ctx) && tvk::has_operation(*entry, TVK_OPERATION_CREATE)) {
        drop_children(ctx, entry, key_count);  // an entry that this request creates and then replaces is created
    } else {
        remove_entry(ctx, node, entry, key_count, is_new ? nullptr : entry);
    }
    return TVK_SKIP_NODE;
}

void give_creation(tvk_map_ctx ctx) {
    Node *entry = current_entry(ctx);
    if (ctx->state->create_node != nullptr && !stays(*entry)) {
        tvk_map_datatree_set_operation(entry, ctx->state->create_operation);
    }
}

qerrno refuse(tvk_map_ctx ctx, const Node *node, qerrno status, const char *reason, ...) {
    kel_named_free(ctx->state->error_node_tag);
    ctx->state->error_node_tag = tvk_strdup(node->tag, kTag);
    tvk_oc_error_path(ctx);
    char text[512];
    va_list arguments;
    va_start(arguments, reason);
    std::vsnprintf(text, sizeof text, reason, arguments);
    va_end(arguments);
    kel_named_free(ctx->failure_reason);
    ctx->failure_reason = tvk_strdup(text, kTag);
    ctx->failed_node = node;
    return status;
}

Quoted::Quoted(const char *value) {
    constexpr std::size_t kShown = 64;
    const char *shown = value != nullptr ? value : "";
    std::size_t length = std::strlen(shown);
    const bool is_cut = length > kShown;
    if (is_cut) {
        for (length = kShown; (static_cast<unsigned char>(shown[length]) & 0xc0) == 0x80; --length) {
        }  // a cut stands between characters
    }
    std::snprintf(text, sizeof text, "'%.*s%s'", static_cast<int>(length), shown, is_cut ? "..." : "");
}

qerrno leave_unmapped(tvk_map_ctx ctx, const Node *node, const char *reason) {
    if (ctx->note_unmapped == nullptr) {
        return refuse(ctx, node, TVK_ERR_UNSUPPORTED, "%s", reason != nullptr ? reason : "it is not mapped");
    }
    kel_named_free(ctx->failure_reason);
    ctx->failure_reason = tvk_strdup(reason, kTag);
    ctx->note_unmapped(ctx, node);
    return TVK_OK;
}

}  // namespace mapping
