// The parse of a container: one pass, or two for a replace, and the propagation below it.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_lists.h"
#include "tvk_map_process_request/request_walk.h"

namespace tvk {

namespace {

constexpr char kOperation[] = "tmap_high_container_parse";

class ContainerWalk {
public:
    ContainerWalk(tvk_map_ctx ctx, Node &container, Node &target, const tmap_node_cont_info &info)
        : ctx_(ctx), container_(container), target_(target), info_(info) {}

    qerrno run() {
        enter();
        const bool skipped = container_.operation == TVK_OPERATION_REPLACE ? replace() : walk_once();
        if (!is_propagating(ctx_)) {
            tvk_map_remove_from_node_hierarchy(ctx_, &container_);
        }
        if (skipped) {
            return TVK_OK;
        }
        TVK_TRC_AS(kOperation, ctx_, "End");
        return status_;
    }

private:
    std::size_t child_count() const { return children(container_).size(); }
    bool reads_all_children() const {
        return ctx_->state != nullptr && (ctx_->state->walk_flags & TVK_WALK_ALL_CHILDREN) != 0;
    }

    void enter() {
        const bool propagating = is_propagating(ctx_);
        passed_count_ = propagating && reads_all_children() ? 0 : child_count();
        if (propagating) {
            return;
        }
        tvk_map_add_to_node_hierarchy(ctx_, &container_, TVK_LEVEL_CONTAINER);
        set_node_type(container_, TVK_NODE_TYPE_CONTAINER);
        if (is_read_request(ctx_)) {
            clear_walk_flags(ctx_);
        }
    }

    // Replaces in two passes: first the container alone, as a removal of what the target has; then its children, as a
    // merge. Returns true when the handler skipped the second pass; the marks of the replace then stay set.
    bool replace() {
        set_operation(container_, TVK_OPERATION_REMOVE);
        begin_replace(ctx_);
        const std::size_t count = child_count();
        const DetachedChildren children = detach_children(container_);
        passed_count_ = 0;
        walk_once();
        give_back_children(ctx_, container_, children);
        become_merge();
        passed_count_ = count;
        if (walk_once()) {
            return true;
        }
        // The second pass does not take the children away, so there is nothing to give back.
        become_merge();
        end_replace(ctx_);
        return false;
    }

    void become_merge() {
        set_operation(container_, TVK_OPERATION_MERGE);
        set_build_flags(ctx_, TVK_BUILD_REPLACE_MERGING, TVK_BUILD_REPLACE_REMOVING);
    }

    // Makes one pass. Returns true when the container's handler wants it left out.
    bool walk_once() {
        if (status_ == TVK_OK) {
            if (info_.cont_handler != nullptr) {
                status_ = info_.cont_handler(ctx_, &container_, static_cast<std::uint32_t>(passed_count_), &target_);
            }
            if (status_ == TVK_SKIP_NODE) {
                status_ = TVK_OK;
                return true;
            }
            walk_children();
        }
        propagate();
        return false;
    }

    // The children are walked by position, because a handler may make the array grow.
    void walk_children() {
        for (std::size_t i = 0; status_ == TVK_OK && i < passed_count_ && i < child_count(); ++i) {
            status_ = handle_child(children(container_)[i]);
        }
    }

    qerrno handle_child(const Node &child) {
        if (child.tag == nullptr) {
            TVK_ERR_AS(kOperation, ctx_, "Tag name is not available!");
            return TVK_ERR_NOT_FOUND;
        }
        if (const tmap_child_entry *entry = find_child_handler(ctx_, child_entries(), child); entry != nullptr) {
            return call(entry->handler, ctx_, child, target_);
        }
        return handle_unclaimed_child(ctx_, child, target_, info_.unsupported_ns, info_.child_handler);
    }

    // Propagates a delete or read of the whole container to all that the model has below it: calls the handlers of the
    // child containers with the container itself. Their results do not count. This runs after a failure, too.
    void propagate() {
        promote_content_match();
        const bool whole = passed_count_ == 0 || reads_all_children();
        if (!whole || !(is_read_request(ctx_) || is_delete(container_))) {
            return;
        }
        {
            const PropagationScope scope{ctx_};
            const bool is_delete = container_.operation == TVK_OPERATION_DELETE;
            if (is_delete) {
                container_.operation = TVK_OPERATION_REMOVE;
            }
            for (const tmap_child_entry &entry : child_entries()) {
                if (takes_part_in_propagation(ctx_, entry)) {
                    call(entry.handler, ctx_, container_, target_);
                }
            }
            if (is_delete) {
                container_.operation = TVK_OPERATION_DELETE;
            }
            call(info_.child_handler, ctx_, container_, target_);
        }
        clear_walk_flags(ctx_);
        if (ctx_->state != nullptr) {
            ctx_->state->walk_flags &= ~(TVK_WALK_CONTENT_MATCH_SEEN | TVK_WALK_SELECTION_SEEN);
        }
    }

    // Leaves that only compare values select nothing by themselves, so all children are meant.
    void promote_content_match() {
        if (ctx_->state == nullptr) {
            return;
        }
        constexpr std::uint32_t kSeen = TVK_WALK_CONTENT_MATCH_SEEN | TVK_WALK_SELECTION_SEEN;
        std::uint32_t &flags = ctx_->state->walk_flags;
        if ((flags & kSeen) == TVK_WALK_CONTENT_MATCH_SEEN) {
            flags = (flags | TVK_WALK_ALL_CHILDREN) & ~kSeen;
        }
    }

    std::span<const tmap_child_entry> child_entries() const {
        return entries(info_.child_conts, info_.child_cont_count);
    }

    tvk_map_ctx ctx_;
    Node &container_;
    Node &target_;
    const tmap_node_cont_info &info_;
    std::size_t passed_count_ = 0;
    qerrno status_ = TVK_OK;
};

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tmap_high_container_parse(tvk_map_ctx ctx, const struct qidl_tvk_datatree *node,
                                 struct qidl_tvk_datatree *target, tmap_node_cont_info_p info) {
    TVK_ASSERT_CONTEXT(ctx, kProcessRequestSource,
                       "qerrno tmap_high_container_parse(tvk_map_ctx, const struct qidl_tvk_datatree *, struct "
                       "qidl_tvk_datatree *, tmap_node_cont_info_p)");
    TVK_TRC(ctx, "Start");
    if (const qerrno status = check_arguments(kOperation, ctx, node, target, info); status != TVK_OK) {
        return status;
    }
    if (const qerrno status = check_children(kOperation, ctx, *node); status != TVK_OK) {
        return status;
    }
    auto &container = const_cast<Node &>(*node);
    if (!is_propagating(ctx) && !is_working_on_keys(ctx) && !children(container).empty() && is_delete(container)) {
        TVK_TRC(ctx, "Delete request with subtree present");
        TVK_TRC(ctx, "End");
        return TVK_ERR_INVALID;
    }
    return ContainerWalk{ctx, container, *target, *info}.run();
}
