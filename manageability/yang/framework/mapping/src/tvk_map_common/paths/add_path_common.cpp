// Adding a path below a node, whatever the position of the request.
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/owned.h"
#include "tvk_map_common/internal/path.h"
#include "tvk_map_common/paths/interface_placement.h"
#include "tvk_map_common/state/path_record.h"
#include "tvk_map_datatree.h"

namespace tvk {

namespace {

constexpr char kOperation[] = "tvk_map_datatree_add_path_common_flagged";

// The contents of the last node of the path, and the way in which it is added.
struct LastNode {
    const char *ns;
    const char *data;
    const Node *template_node;
    Node **out;
    int append;
    int flags;
};

class PathWalk {
public:
    PathWalk(tvk_map_ctx ctx, Node &tree, const LastNode &last) : ctx_(ctx), current_(&tree), last_(last) {}

    qerrno run(Components components) {
        for (; components.current() != nullptr; components.advance()) {
            find_interface_target(ctx_, *current_, components.current(), target_);
            if (components.is_last()) {
                return add_last(components.current());
            }
            Node &parent = parent_of(components.current());
            Node *reached = nullptr;
            const qerrno status = add_intermediate(parent, components.current(), reached);
            if (status != TVK_OK || reached == nullptr) {
                return status;
            }
            current_ = reached;
            // The node above the mode or the links of a bundle becomes the target, so that they go into it and not
            // beside it.
            if (target_ && (same_text(components.next(), "mode") || same_text(components.next(), "links"))) {
                target_ = ChildReference{parent, static_cast<std::size_t>(reached - parent.subtrees)};
            }
        }
        return TVK_OK;
    }

private:
    qerrno add_last(const char *component) {
        Node *parent = target_ ? target_.get() : current_;
        TVK_TRC_AS(kOperation, ctx_, "Setting a last node '%s' with '%s'p: %p", component, shown(last_.data),
                   static_cast<void *>(parent));
        return tvk_map_datatree_add_subtree_flagged(ctx_, parent, component, last_.ns, last_.data, last_.template_node,
                                                    last_.out, last_.append, last_.flags);
    }

    Node &parent_of(const char *component) const {
        const bool to_target = target_ && (same_text(component, "lacp") || same_text(component, "bundle"));
        return to_target ? *target_.get() : *current_;
    }

    // Adds a node of the path before the last one. reached stays null when the platform leaves this node out.
    qerrno add_intermediate(Node &parent, const char *component, Node *&reached) {
        const Node *template_node = (last_.flags & TVK_ADD_TEMPLATE_ON_PATH) != 0 ? last_.template_node : nullptr;
        return tvk_map_datatree_add_subtree_flagged(ctx_, &parent, component, last_.ns, nullptr, template_node,
                                                    &reached, 0, last_.flags);
    }

    tvk_map_ctx ctx_;
    Node *current_;
    ChildReference target_;
    const LastNode &last_;
};

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_add_path_common_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                                const char *ns, const char *data,
                                                const struct qidl_tvk_datatree *template_node,
                                                struct qidl_tvk_datatree **out, int append, int flags) {
    if (ctx == nullptr || tree == nullptr || path == nullptr || ns == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource,
                           "qerrno tvk_map_datatree_add_path_common_flagged(tvk_map_ctx, struct qidl_tvk_datatree *, "
                           "const char *, const char *, const char *, const struct qidl_tvk_datatree *, struct "
                           "qidl_tvk_datatree **, int, int)");
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    const NamedString working_path = copy_text(path, "TVK MAP path cpy");
    if (working_path == nullptr) {
        TVK_ERR(ctx, "Failed to copy path string!");
        return TVK_ERR_NO_MEMORY;
    }
    if (tvk_map_is_path_present(ctx, path, working_path.get())) {
        return TVK_OK;
    }
    TVK_TRC(ctx, "Setting a path: '%s' with '%s' p:%s", working_path.get(), shown(data), path);
    const LastNode last{ns, data, template_node, out, append != 0 ? 1 : 0, flags};
    return PathWalk{ctx, *tree, last}.run(Components{working_path.get()});
}

qerrno tvk_map_datatree_add_path_common(tvk_map_ctx ctx, struct qidl_tvk_datatree *tree, const char *path,
                                        const char *ns, const char *data, const struct qidl_tvk_datatree *template_node,
                                        struct qidl_tvk_datatree **out, int append) {
    return tvk_map_datatree_add_path_common_flagged(ctx, tree, path, ns, data, template_node, out, append, 0);
}
