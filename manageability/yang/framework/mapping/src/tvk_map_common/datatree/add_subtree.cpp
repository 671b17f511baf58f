// Adding a child to a node, or finding the one that is there.
#include <functional>
#include <utility>

#include "tvk_map_common/datatree/children.h"
#include "tvk_map_common/datatree/platform_exclusions.h"
#include "tvk_map_common/internal/assertion.h"
#include "tvk_map_common/internal/log.h"
#include "tvk_map_common/internal/node.h"
#include "tvk_map_common/internal/request.h"
#include "tvk_map_datatree.h"
#include "tvk_map_lists.h"

namespace tvk {

namespace {

constexpr char kPrototype[] =
    "qerrno tvk_map_datatree_add_subtree_flagged(tvk_map_ctx, struct qidl_tvk_datatree *, const char *, const char *, "
    "const char *, const struct qidl_tvk_datatree *, struct qidl_tvk_datatree **, int, int)";

constexpr char kOperation[] = "tvk_map_datatree_add_subtree_flagged";

struct Addition {
    tvk_map_ctx ctx;
    Node &parent;
    const char *tag;
    const char *ns;
    const char *data;
    const Node *template_node;
    Node **out;
    bool append;
    int flags;

    bool flagged(int flag) const { return (flags & flag) != 0; }
    void found(Node &node) const {
        if (out != nullptr) {
            *out = &node;
        }
    }
};

qerrno leave_out(tvk_map_ctx ctx, const char *tag) {
    qerrno status = TVK_OK;
    if (is_add_request(ctx)) {
        TVK_ERR_AS(kOperation, ctx, "vrrp not supported on this platform");
        set_error_node_tag(ctx, tag);
        tvk_oc_error_path(ctx);
        status = TVK_ERR_UNSUPPORTED;
    }
    TVK_TRC_AS(kOperation, ctx, "End");
    return status;
}

bool is_candidate(const Addition &add, const Node &child) {
    if (!has(child, TVK_HAS_TAG) || !has(child, TVK_HAS_NS) || !same_text(child.tag, add.tag)) {
        return false;
    }
    // The first pass of a replace has removed this child. The presence bit of the operation does not matter here.
    if (add.flagged(TVK_ADD_TEMPLATE_ON_PATH) && child.operation == TVK_OPERATION_REMOVE) {
        return false;
    }
    return add.flagged(TVK_ADD_MATCH_TAG_ONLY) || same_text(child.ns, add.ns);
}

enum class Match { kNone, kPassedOver, kStopped };

// Returns the child with which a search through all siblings would end. Sets known when the index can tell; null then
// means that there is no such child. When known is false the search has to be made.
Node *find_by_index(const Addition &add, std::span<Node> siblings, bool keep_looking, bool &known) {
    TagPlaces places;
    known = find_places(add.ctx, siblings, add.tag, places);
    if (!known || places.first < 0) {
        return nullptr;
    }
    std::int32_t place = places.first;
    if (keep_looking) {
        place = places.first_unnumbered >= 0 ? places.first_unnumbered : places.last;
    }
    Node &child = siblings[static_cast<std::size_t>(place)];
    // This child has the tag but is no candidate, and another one may be.
    known = is_candidate(add, child);
    return known ? &child : nullptr;
}

// Finds an existing child: the first candidate without a number, else the last numbered one, which keeps its data
// (kPassedOver). A template without TVK_ADD_TEMPLATE_ON_PATH takes the first candidate, numbered or not.
Match find_existing(const Addition &add, Node *&found) {
    const bool keep_looking = add.template_node == nullptr || add.flagged(TVK_ADD_TEMPLATE_ON_PATH);
    const std::span<Node> siblings = children(add.parent);
    bool known = false;
    if (Node *child = find_by_index(add, siblings, keep_looking, known); known) {
        if (child == nullptr) {
            return Match::kNone;
        }
        found = child;
        add.found(*child);
        return keep_looking && child->subtree_index != 0 ? Match::kPassedOver : Match::kStopped;
    }
    for (Node &child : siblings) {
        // The number is compared before the texts, because it stands in the record itself.
        if ((!keep_looking || child.subtree_index == 0) && is_candidate(add, child)) {
            found = &child;
            add.found(child);
            return Match::kStopped;
        }
    }
    for (std::size_t i = siblings.size(); keep_looking && i > 0; --i) {
        if (Node &child = siblings[i - 1]; child.subtree_index != 0 && is_candidate(add, child)) {
            found = &child;
            add.found(child);
            return Match::kPassedOver;
        }
    }
    return Match::kNone;
}

qerrno give_data(const Addition &add, Node &node) {
    if (add.data == nullptr) {
        return TVK_OK;
    }
    // The new value may be part of the old one, so it is copied before the old one is released.
    NamedString copy = copy_text(add.data, "TVK MAP add subtree data");
    const bool is_copied = copy != nullptr;
    replace_value(add.ctx, add.parent, node, std::move(copy));
    if (!is_copied) {
        TVK_ERR_AS(kOperation, add.ctx, "Failed to duplicate data!");
        return TVK_ERR_NO_MEMORY;
    }
    return TVK_OK;
}

void announce_room(const Addition &add) {
    if (!has(add.parent, TVK_HAS_SUBTREES)) {
        TVK_TRC_AS(kOperation, add.ctx, "Allocating a new subtree array.");
        return;
    }
    if ((build_flags(add.ctx) & TVK_BUILD_FILTERED) != 0) {
        ++add.ctx->state->added_node_count;
    }
    TVK_TRC_AS(kOperation, add.ctx, "Expanding subtree array.");
}

// Gives the record its texts. Returns false at the first text that cannot be copied.
bool name(const Addition &add, Node &node) {
    node.tag = tvk_strdup(add.tag, "TVK MAP idx");
    if (node.tag == nullptr) {
        return false;
    }
    TVK_TRC_AS(kOperation, add.ctx, "Setting tag name '%s'.", node.tag);
    set_present(node, TVK_HAS_TAG);
    node.ns = tvk_strdup(add.ns, "TVK MAP ns");
    if (node.ns == nullptr) {
        return false;
    }
    set_present(node, TVK_HAS_NS);
    if (add.data == nullptr) {
        return true;
    }
    node.data = tvk_strdup(add.data, "TVK MAP data");
    if (node.data == nullptr) {
        return false;
    }
    TVK_TRC_AS(kOperation, add.ctx, "Setting node data '%s'.", node.data);
    set_present(node, TVK_HAS_DATA);
    return true;
}

void apply_template(tvk_map_ctx ctx, const Node &template_node, Node &node) {
    if (has(template_node, TVK_HAS_OPERATION)) {
        TVK_TRC_AS(kOperation, ctx, "Setting operation '%d'.", static_cast<int>(template_node.operation));
        set_operation(node, template_node.operation);
    }
    if (carries_insert(template_node)) {
        TVK_TRC_AS(kOperation, ctx, "Setting insert");
        set_present(node, TVK_HAS_EDIT_INSERT);
        qidl_tvk_edit_ins_duplicate(&node.edit_insert, &template_node.edit_insert, tvk_gpb_alloc, nullptr);
    }
    if (has(template_node, TVK_HAS_NODE_KIND)) {
        TVK_TRC_AS(kOperation, ctx, "Setting operation '%d'.", static_cast<int>(template_node.node_kind));
        node.node_kind = template_node.node_kind;
        set_present(node, TVK_HAS_NODE_KIND);
    }
}

void apply_marks(const Addition &add, Node &node, std::int32_t new_count) {
    if (add.flagged(TVK_ADD_MARK_TREE_TRAVERSE)) {
        TVK_TRC_AS(kOperation, add.ctx, "Setting tree tarverse '%d'.", static_cast<int>(TVK_NODE_KIND_TREE_TRAVERSE));
        node.node_kind = TVK_NODE_KIND_TREE_TRAVERSE;
        set_present(node, TVK_HAS_NODE_KIND);
    }
    if (add.append) {
        TVK_TRC_AS(kOperation, add.ctx, "Setting subtree_index '%d'.", static_cast<int>(new_count));
        node.subtree_index = new_count;
        set_present(node, TVK_HAS_SUBTREE_INDEX);
    }
}

// A template that can be found again after the array of the parent has moved: it may be a child of that parent.
class TemplateReference {
public:
    TemplateReference(const Node *template_node, std::span<Node> siblings) : template_node_(template_node) {
        const std::less<const Node *> before;
        if (template_node != nullptr && !siblings.empty() && !before(template_node, siblings.data()) &&
            before(template_node, siblings.data() + siblings.size())) {
            sibling_ = template_node - siblings.data();
        }
    }

    const Node *in(const Node *array) const { return sibling_ >= 0 ? array + sibling_ : template_node_; }

private:
    const Node *template_node_;
    std::ptrdiff_t sibling_ = -1;
};

qerrno add_new(const Addition &add) {
    const TemplateReference template_reference{add.template_node, children(add.parent)};
    announce_room(add);
    NewChild child{add.ctx, add.parent};
    if (!child) {
        TVK_ERR_AS(kOperation, add.ctx, "Failed to allocate subtrees!");
        return TVK_ERR_NO_MEMORY;
    }
    Node &node = *child;
    if (!name(add, node)) {
        return TVK_ERR_NO_MEMORY;
    }
    if (const Node *template_node = template_reference.in(child.array()); template_node != nullptr) {
        apply_template(add.ctx, *template_node, node);
    }
    apply_marks(add, node, child.new_count());
    TVK_TRC_AS(kOperation, add.ctx, "Setting updated subtree array (%p).", static_cast<const void *>(child.array()));
    child.commit();
    add.found(node);
    return TVK_OK;
}

}  // namespace

}  // namespace tvk

using namespace tvk;

qerrno tvk_map_datatree_add_subtree_flagged(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent, const char *tag,
                                            const char *ns, const char *data,
                                            const struct qidl_tvk_datatree *template_node,
                                            struct qidl_tvk_datatree **out, int append, int flags) {
    if (ctx == nullptr || parent == nullptr || tag == nullptr || ns == nullptr) {
        TVK_ASSERT_CONTEXT(ctx, kCommonSource, kPrototype);
        TVK_ERR(ctx, "NULL argument(s) passed!");
        return TVK_ERR_INVALID;
    }
    if (platform_excludes(tag)) {
        return leave_out(ctx, tag);
    }
    const Addition add{ctx, *parent, tag, ns, data, template_node, out, append != 0, flags};
    if (!add.append) {
        Node *found = nullptr;
        switch (find_existing(add, found)) {
            case Match::kStopped:
                return give_data(add, *found);
            case Match::kPassedOver:
                return TVK_OK;
            case Match::kNone:
                break;
        }
    }
    return add_new(add);
}

qerrno tvk_map_datatree_add_subtree(tvk_map_ctx ctx, struct qidl_tvk_datatree *parent, const char *tag, const char *ns,
                                    const char *data, const struct qidl_tvk_datatree *template_node,
                                    struct qidl_tvk_datatree **out, int append) {
    return tvk_map_datatree_add_subtree_flagged(ctx, parent, tag, ns, data, template_node, out, append, 0);
}
