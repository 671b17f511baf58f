#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/state/instance_stack.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"
#include "tvk_map_process_request/request_walk.h"

namespace tvk {

namespace {

constexpr char kOperation[] = "tmap_high_list_parse";

class ListWalk {
public:
    ListWalk(tvk_map_ctx ctx, Node &list, Node &target, const tmap_node_list_info &info)
        : ctx_(ctx), list_(list), target_(target), info_(info) {}

    qerrno run() {
        if (!is_propagating(ctx_)) {
            enter();
        }
        status_ = tvk_map_update_current_list_node(ctx_, info_.list_path);
        if (status_ == TVK_OK && !is_childless() && !is_propagating(ctx_) && !is_working_on_keys(ctx_)) {
            if (const qerrno status = scan_keys(); status != TVK_OK) {
                // The level of the hierarchy stays, unlike on every other way out.
                TVK_ERR_AS(kOperation, ctx_, "leafref value check fail");
                TVK_TRC_AS(kOperation, ctx_, "End");
                return status;
            }
            validate_keys();
        }
        if (status_ == TVK_OK) {
            walk();
        }
        leave();
        TVK_TRC_AS(kOperation, ctx_, "End");
        return status_;
    }

private:
    bool is_childless() const { return children(list_).empty(); }

    void enter() {
        tvk_map_add_to_node_hierarchy(ctx_, &list_, TVK_LEVEL_LIST);
        set_node_type(list_, TVK_NODE_TYPE_LIST);
        if (is_read_request(ctx_)) {
            clear_walk_flags(ctx_);
        }
    }

    void leave() {
        for (; items_found_ > 0; --items_found_) {
            tvk_map_util_itree_stack_pop(ctx_);
        }
        if (!is_propagating(ctx_)) {
            tvk_map_remove_from_node_hierarchy(ctx_, &list_);
        }
    }

    // ---- Keys of the entry ----

    const tmap_key_entry *key_entry(const Node &child) const {
        for (int i = 0; info_.keys != nullptr && i < info_.key_count; ++i) {
            if (tvk_map_do_these_match(child.tag, info_.keys[i].key_tag) != 0) {
                return &info_.keys[i];
            }
        }
        return nullptr;
    }

    qerrno scan_keys() {
        for (Node &child : children(list_)) {
            const tmap_key_entry *key = key_entry(child);
            if (key == nullptr) {
                non_key_seen_ = true;
                continue;
            }
            if (is_add_request(ctx_)) {
                const qerrno status =
                    tvk_map_check_oc_leafref(ctx_, key->leafref_path, key->leafref_target, child.tag, &list_);
                if (status != TVK_OK) {
                    return status;
                }
            }
            ++present_keys_;
            key_seen_ = true;
            mark_key(child);
            if (has(child, TVK_HAS_DATA)) {
                ++valued_keys_;
            } else {
                empty_key_seen_ = true;
            }
        }
        return TVK_OK;
    }

    // All keys or none, all with a value or none; what is added must have them.
    void validate_keys() {
        const auto all_or_none = [this](std::uint8_t count) { return count == 0 || count == info_.key_count; };
        const bool needed = is_add_request(ctx_);
        if (all_or_none(present_keys_) && all_or_none(valued_keys_) && !(needed && valued_keys_ == 0)) {
            return;
        }
        TVK_ERR_AS(kOperation, ctx_, "List key node error.");
        set_error_node_tag(ctx_, "keytag");
        tvk_oc_error_path(ctx_);
        status_ = TVK_ERR_LIST_KEY;
    }

    // ---- Passes ----

    void walk() {
        if (list_.operation != TVK_OPERATION_REPLACE) {
            walk_once();
            return;
        }
        // A removal by the keys, then a merge. The children stay in place: the removal needs the keys.
        replacing_ = true;
        set_operation(list_, TVK_OPERATION_REMOVE);
        begin_replace(ctx_);
        empty_key_seen_ = false;
        non_key_seen_ = false;
        walk_once();
        if (status_ == TVK_OK) {
            walk_once();
        }
        end_replace(ctx_);
    }

    void walk_once() {
        // The two cases in which a delete reaches the entry by its keys: named by them alone, or propagated to it.
        const bool key_delete = is_delete(list_) && !is_working_on_keys(ctx_);
        const bool named_by_keys = key_delete && !non_key_seen_ && key_seen_;
        const bool propagated = key_delete && !named_by_keys && is_childless() && is_propagating(ctx_);
        by_keys_ = named_by_keys || propagated;
        {
            const KeyStateScope pass{ctx_, propagated, 1};
            const std::uint32_t stack_size = tvk_map_util_itree_stack_size(ctx_);
            call_list_handler(named_by_keys);
            walk_instances(stack_size);
        }
        add_missing_keys();
        if (replacing_) {
            set_operation(list_, TVK_OPERATION_MERGE);
            set_build_flags(ctx_, 0, TVK_BUILD_REPLACE_REMOVING);
        }
    }

    void call_list_handler(bool named_by_keys) {
        const KeyStateScope handler{ctx_, named_by_keys, 2};
        status_ = call(info_.list_handler, ctx_, list_, target_);
    }

    // The item that the list handler pushed, if the stack is higher than before.
    const tvk_map_itree_item *find_item(std::uint32_t former_size) {
        tvk_map_itree_item *item = nullptr;
        if (tvk_map_util_itree_stack_size(ctx_) > former_size) {
            tvk_map_util_itree_stack_peak(ctx_, &item);
        }
        if (item != nullptr && item->nodes != nullptr) {
            ++items_found_;
        }
        return item;
    }

    void walk_instances(std::uint32_t former_size) {
        const tvk_map_itree_item *item = find_item(former_size);
        if (status_ == TVK_SKIP_NODE) {
            status_ = TVK_OK;
            return;
        }
        if (status_ == TVK_OK) {
            ctx_->list_operation = has(list_, TVK_HAS_OPERATION) ? list_.operation : 0u;
        }
        if (item == nullptr || status_ != TVK_OK) {
            walk_node(list_);
            return;
        }
        const std::uint32_t count = item->nodes != nullptr ? item->node_count : 0;
        for (std::uint32_t i = 0; i < count && status_ == TVK_OK; ++i) {
            walk_instance(*item, i);
        }
    }

    // The first instance stands at the level of the entry itself, the others at one of their own.
    void walk_instance(const tvk_map_itree_item &item, std::uint32_t position) {
        Node &instance = item.nodes[position];
        bool pushed = false;
        if (position > 0) {
            pushed = tvk_map_add_to_node_hierarchy(ctx_, &instance, TVK_LEVEL_LIST) == TVK_OK;
            tvk_map_update_current_list_node(ctx_, info_.list_path);
        }
        if (item.extra != 0) {
            if (is_delete(list_)) {
                set_operation(instance, TVK_OPERATION_REMOVE);
            }
            reinterpret_cast<tmap_instance_fp>(item.extra)(ctx_, &instance, &target_, 0);
        }
        walk_node(instance);
        if (pushed) {
            tvk_map_remove_from_node_hierarchy(ctx_, &instance);
        } else if (ctx_->state != nullptr && ctx_->state->create_node == &instance) {
            ctx_->state->create_node = nullptr;  // it goes with its item
            ctx_->state->create_operation = 0;
        }
    }

    // ---- One walked node: the entry, or an instance in its place ----

    void walk_node(Node &node) {
        const bool has_children = !children(node).empty();
        for (std::size_t i = 0; status_ == TVK_OK && i < children(node).size(); ++i) {
            status_ = handle_child(node, i);
        }
        if (!is_read_request(ctx_) && !is_delete(list_)) {
            return;
        }
        if (!has_children) {
            propagate_childless(node);
        } else if (status_ == TVK_OK && !empty_key_seen_ && !non_key_seen_ && key_seen_) {
            propagate_keys_alone(node);
        }
    }

    qerrno handle_child(Node &node, std::size_t position) {
        const Node &child = children(node)[position];
        if (child.tag == nullptr) {
            TVK_ERR_AS(kOperation, ctx_, "Tag name is not available!");
            return TVK_ERR_NOT_FOUND;
        }
        const tmap_child_entry *entry = find_child_handler(ctx_, child_entries(), child);
        if (entry == nullptr) {
            return same_text(child.ns, info_.unsupported_ns) ? refuse_unsupported_child(ctx_, child)
                                                             : call(info_.child_handler, ctx_, child, target_);
        }
        if ((entry->flags & TMAP_CHILD_KEY) != 0) {
            return handle_key_leaf(*entry, node, position);
        }
        if ((build_flags(ctx_) & TVK_BUILD_REPLACE_REMOVING) != 0) {
            return TVK_OK;  // the removal goes by the keys
        }
        non_key_seen_ = true;
        return call(entry->handler, ctx_, child, target_);
    }

    qerrno handle_key_leaf(const tmap_child_entry &entry, Node &node, std::size_t position) {
        const Node &child = children(node)[position];
        if (is_add_request(ctx_) && !has(child, TVK_HAS_DATA)) {
            TVK_ERR_AS(kOperation, ctx_, "Empty list key specified.");
            set_error_node_tag(ctx_, child.tag);
            tvk_oc_error_path(ctx_);
            return TVK_ERR_LIST_KEY;
        }
        if (is_delete(child)) {
            TVK_ERR_AS(kOperation, ctx_, "The key node should not have delete operation.");
            tvk_oc_error_path(ctx_);
            return TVK_ERR_KEY_OPERATION;
        }
        const qerrno status = call(entry.handler, ctx_, child, target_);
        // Found again by position: the handler may have made the array move.
        if (position < children(node).size()) {
            Node &key = children(node)[position];
            mark_key(key);
            key_seen_ = key_seen_ || has(key, TVK_HAS_DATA);
        }
        return status;
    }

    // An entry that is named by its keys and nothing else is meant with all that the model has below it. Its keys
    // are out of the way meanwhile, on top of the instance-tree stack. The last handler's result counts.
    void propagate_keys_alone(Node &node) {
        const PropagationScope scope{ctx_};
        const KeyStateScope keys{ctx_, by_keys_, 1};
        if (is_delete(list_)) {
            set_operation(node, TVK_OPERATION_REMOVE);
        }
        const std::span<Node> key_leaves = children(node);
        if (ctx_->state != nullptr &&
            !push_borrowed(ctx_, key_leaves.data(), static_cast<std::uint32_t>(key_leaves.size()))) {
            status_ = TVK_ERR_NO_MEMORY;  // without its keys nobody could tell which entry is meant
            return;
        }
        const DetachedChildren children = detach_children(node);
        for (const tmap_child_entry &entry : child_entries()) {
            if ((entry.flags & TMAP_CHILD_KEY) == 0 && takes_part_in_propagation(ctx_, entry)) {
                status_ = call(entry.handler, ctx_, list_, target_);
            }
        }
        call(info_.child_handler, ctx_, list_, target_);
        give_back_children(ctx_, node, children);
        tvk_map_util_itree_stack_pop(ctx_);
    }

    // A node without children has nothing to be told apart by. What the handlers return does not count; this runs
    // after a failure, too.
    void propagate_childless(Node &node) {
        const PropagationScope scope{ctx_};
        const KeyStateScope keys{ctx_, !is_working_on_keys(ctx_), 1};
        const bool is_delete = node.operation == TVK_OPERATION_DELETE;
        if (is_delete) {
            node.operation = TVK_OPERATION_REMOVE;
        }
        for (const tmap_child_entry &entry : child_entries()) {
            if (takes_part_in_propagation(ctx_, entry)) {
                call(entry.handler, ctx_, list_, target_);
            }
        }
        call(info_.child_handler, ctx_, list_, target_);
        if (is_delete) {
            node.operation = TVK_OPERATION_DELETE;
        }
    }

    // A read that selects entries by other leaves must still tell the entries apart in its answer.
    void add_missing_keys() {
        if (!is_read_request(ctx_) || status_ != TVK_OK || is_propagating(ctx_) || !non_key_seen_ || key_seen_) {
            return;
        }
        for (int i = 0; info_.keys != nullptr && i < info_.key_count; ++i) {
            Node *added = nullptr;
            status_ = tvk_map_datatree_add_path_flagged(ctx_, &list_, info_.keys[i].key_tag, list_.ns, nullptr, nullptr,
                                                        &added, 0, TVK_ADD_RELATIVE | TVK_ADD_UNFILTERED);
            if (added != nullptr) {
                mark_key(*added);
            }
        }
    }

    std::span<const tmap_child_entry> child_entries() const {
        return entries(info_.child_conts, info_.child_cont_count);
    }

    tvk_map_ctx ctx_;
    Node &list_;
    Node &target_;
    const tmap_node_list_info &info_;
    qerrno status_ = TVK_OK;
    // What the key scan counts, as wide as the table's key count; what it and the walk of all instances find.
    std::uint8_t present_keys_ = 0;
    std::uint8_t valued_keys_ = 0;
    bool key_seen_ = false;
    bool empty_key_seen_ = false;
    bool non_key_seen_ = false;
    bool replacing_ = false;
    bool by_keys_ = false;
    int items_found_ = 0;
};

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tmap_high_list_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node, struct qidl_tvk_datatree *target,
                            tmap_node_list_info_p info) {
    TVK_ASSERT_CONTEXT(ctx, kProcessRequestSource,
                       "qerrno tmap_high_list_parse(tvk_map_ctx, const struct qidl_tvk_datatree *, struct "
                       "qidl_tvk_datatree *, tmap_node_list_info_p)");
    TVK_TRC(ctx, "Start");
    if (node == nullptr || target == nullptr) {
        TVK_ERR(ctx, "Invalid arguments passed!");
        tvk_oc_error_path(ctx);
        return TVK_ERR_INVALID;
    }
    if (info == nullptr) {
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    auto &list = const_cast<Node &>(*node);
    if (lost_children(list)) {
        TVK_ERR(ctx, "Failed to get subtrees!");
        TVK_TRC(ctx, "End");
        return TVK_ERR_NOT_FOUND;
    }
    if (children(list).empty()) {
        TVK_ERR(ctx, "No keys specified with a list node.");
        if (!is_propagating(ctx) && !is_working_on_keys(ctx) && is_add_request(ctx)) {
            TVK_ERR(ctx, "No keys specified with a list node.");
            TVK_TRC(ctx, "End");
            return TVK_ERR_NOT_FOUND;
        }
    }
    return ListWalk{ctx, list, *target, *info}.run();
}
