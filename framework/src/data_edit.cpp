// Applies an edit node by node, and records what is different then.
#include "framework/data_edit.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "edited_children.h"
#include "framework/request_errors.h"

namespace tvk::framework {

namespace {

constexpr size_t kMaxLevels = 1000;

// Ends an edit that the data does not allow.
struct Refused {
    RpcError error;
};

// Returns the operation of a node, or otherwise when it carries none.
uint32_t operation_of(const Node &node, uint32_t otherwise = TVK_OPERATION_MERGE) {
    return has_operation(node) ? node.operation : otherwise;
}

class Applier {
public:
    // Carries out the children of edit on those of data. Those without an operation do what otherwise says.
    void apply(Node &data, const Node &edit, const NodeShape &shape, Node &changes, uint32_t otherwise) {
        if (path_.size() == kMaxLevels) {
            refuse("operation-failed", "the data has more than " + std::to_string(kMaxLevels) + " levels");
        }
        EditedChildren children(data);
        for (const Node &node : tvk::children(edit)) {
            path_.push_back(&node);
            shapes_.push_back(shape.find(tag_of(node)));
            apply_node(children, node, shape, changes, otherwise);
            shapes_.pop_back();
            path_.pop_back();
        }
        children.put_back();
    }

private:
    const NodeShape &here() const {
        static const NodeShape unknown;
        return shapes_.back() != nullptr ? *shapes_.back() : unknown;
    }

    void apply_node(EditedChildren &children, const Node &node, const NodeShape &shape, Node &changes,
                    uint32_t otherwise) {
        if (here().is_unclear) {
            refuse("operation-failed",
                   "nothing shows what the keys of this list are; name its mapping, or say it with --list");
        }
        refuse_keys(node, shape, operation_of(node, otherwise));
        const EditedChildren::Place place = children.find(node, shape);
        const bool is_there = place != EditedChildren::kNone;
        switch (const uint32_t operation = operation_of(node, otherwise); operation) {
            case kNoOperation:
                if (!is_there) {
                    refuse("data-missing", "it leads to what is to be done, but is not there");
                }
                if (!tvk::children(node).empty()) {
                    merge(children[place], node, changes, operation);
                }
                return;
            case TVK_OPERATION_MERGE:
                is_there ? merge(children[place], node, changes, operation) : create(children, node, shape, changes);
                break;
            case TVK_OPERATION_CREATE:
                if (is_there) {
                    refuse("data-exists", "it is to be created, but is there already");
                }
                create(children, node, shape, changes);
                break;
            case TVK_OPERATION_REPLACE:
                is_there ? replace(children, place, node, changes) : create(children, node, shape, changes);
                break;
            case TVK_OPERATION_DELETE:
            case TVK_OPERATION_REMOVE:
                if (is_there) {
                    note_change(changes, children[place], TVK_OPERATION_DELETE);
                    children.remove(place);
                } else if (operation == TVK_OPERATION_DELETE) {
                    refuse("data-missing", "it is to be deleted, but is not there");
                }
                return;
            default:
                refuse("bad-attribute", "it carries an unknown operation");
        }
        if (carries_insert(node)) {
            put_in_place(children, node, shape, is_there, changes);
        }
    }

    // Refuses a list entry without its keys, and the deletion of a key.
    void refuse_keys(const Node &node, const NodeShape &parent, uint32_t operation) const {
        for (const std::string &key : here().keys) {
            const auto children = tvk::children(node);
            const bool is_there = std::any_of(children.begin(), children.end(), [&](const Node &child) {
                return key == tag_of(child) && *value_of(child) != '\0';
            });
            if (!is_there) {
                refuse("missing-element", "its key '" + key + "' is missing");
            }
        }
        const bool is_delete = operation == TVK_OPERATION_DELETE || operation == TVK_OPERATION_REMOVE;
        if (is_delete && parent.is_list && parent.is_key(tag_of(node))) {
            refuse("operation-not-supported", "a key cannot be deleted or removed; delete its list entry instead");
        }
    }

    void create(EditedChildren &children, const Node &node, const NodeShape &shape, Node &changes) {
        LooseNode created = grown(node);
        append_change(changes, copy_of(*created), TVK_OPERATION_CREATE);
        children.add(std::move(created), shape);
    }

    void merge(Node &there, const Node &node, Node &changes, uint32_t operation) {
        if (children(node).empty() && children(there).empty()) {
            if (!is_same_value(there, node)) {
                take_value(there, node);
                append_change(changes, copy_of(there), TVK_OPERATION_REPLACE);
            }
            return;
        }
        if (*value_of(node) != '\0' || *value_of(there) != '\0') {
            refuse("operation-failed", "it has a value on one side and elements on the other");
        }
        refuse_if_unclear(there, node);
        LooseNode inner = changed_parent(there);
        const int32_t keys = inner->subtree_count;
        apply(there, node, here(), *inner, operation);
        if (inner->subtree_count > keys) {
            append_child(changes, std::move(inner));
        }
    }

    void replace(EditedChildren &children, EditedChildren::Place place, const Node &node, Node &changes) {
        LooseNode created = grown(node);
        Node &there = children[place];
        if (content_of(there) == content_of(*created)) {
            return;
        }
        append_change(changes, copy_of(*created), TVK_OPERATION_REPLACE);
        release(there);
        there = created.take();
    }

    void put_in_place(EditedChildren &children, const Node &node, const NodeShape &shape, bool was_there,
                      Node &changes) {
        const qidl_tvk_edit_insert &insert = node.edit_insert;
        const uint32_t position = (insert.insert_presence & TVK_INSERT_HAS_POSITION) != 0
                                      ? insert.position
                                      : static_cast<uint32_t>(TVK_INSERT_LAST);
        EditedChildren::Place other = EditedChildren::kNone;
        if (position == TVK_INSERT_BEFORE || position == TVK_INSERT_AFTER) {
            LooseNode like = anchor_of(node);
            other = children.find(*like, shape);
            if (other == EditedChildren::kNone) {
                refuse("bad-attribute", "it is to be inserted beside an entry that is not there");
            }
        }
        const EditedChildren::Place place = children.find(node, shape);
        const bool is_moved = children.move(place, other, position == TVK_INSERT_LAST || position == TVK_INSERT_AFTER);
        if (was_there && is_moved) {
            append_child(changes, changed_parent(children[place]));
        }
        if (is_moved || !was_there) {
            give_insert(tvk::children(changes).back(), insert);
        }
    }

    // Returns the node as it comes to be when nothing was there before. Nodes that are to be removed are left out.
    LooseNode grown(const Node &node) {
        if (path_.size() >= kMaxLevels) {
            refuse("operation-failed", "the data has more than " + std::to_string(kMaxLevels) + " levels");
        }
        LooseNode copy = bare_copy(node);
        if (!is_plain(node)) {
            TreeHolder changes;
            apply(*copy, node, here(), changes.root(), TVK_OPERATION_MERGE);
            return copy;
        }
        for (const Node &child : children(node)) {
            path_.push_back(&child);
            shapes_.push_back(here().find(tag_of(child)));
            append_child(*copy, grown(child));
            shapes_.pop_back();
            path_.pop_back();
        }
        return copy;
    }

    // Tells whether no child of a node carries an operation or a place, and each has a name of its own.
    static bool is_plain(const Node &node) {
        constexpr size_t kMaxCompared = 32;
        const auto children = tvk::children(node);
        if (children.size() > kMaxCompared) {
            return false;
        }
        for (auto child = children.begin(); child != children.end(); ++child) {
            const bool is_met = std::any_of(children.begin(), child, [&](const Node &other) {
                return std::strcmp(tag_of(other), tag_of(*child)) == 0;
            });
            if (is_met || has_operation(*child) || carries_insert(*child)) {
                return false;
            }
        }
        return true;
    }

    // Refuses to merge two nodes that may be two entries of a list of which nothing is known.
    void refuse_if_unclear(const Node &there, const Node &node) const {
        const bool is_top = path_.size() == 1;  // a top node is hardly ever a list
        if (is_top || here().is_list || here().is_declared || here().is_described || children(there).empty() ||
            children(node).empty()) {
            return;
        }
        const Node &first = children(there).front();
        const Node &other = children(node).front();
        const bool are_leaves = children(first).empty() && children(other).empty();
        const NodeShape *first_shape = here().find(tag_of(first));
        const bool is_value = first_shape != nullptr && first_shape->is_declared;
        if (are_leaves && !is_value && same_name(first, other) && !has_operation(other) &&
            !is_same_value(first, other)) {
            refuse("operation-failed", std::string("nothing shows whether this is a list: '") + tag_of(first) +
                                           "' is '" + value_of(first) + "' in the data and '" + value_of(other) +
                                           "' in the edit; name its mapping, or say it with --list");
        }
    }

    // Returns the node to show changes in: its name, and the keys of an entry.
    LooseNode changed_parent(const Node &there) const {
        LooseNode parent = bare_copy(there);
        for (const Node &child : children(there)) {
            if (here().is_key(tag_of(child))) {
                append_child(*parent, bare_copy(child));
            }
        }
        return parent;
    }

    void note_change(Node &changes, const Node &node, uint32_t operation) const {
        append_change(changes, changed_parent(node), operation);
    }
    static void append_change(Node &changes, LooseNode node, uint32_t operation) {
        set_operation(*node, operation);
        append_child(changes, std::move(node));
    }
    [[noreturn]] void refuse(const char *tag, const std::string &reason) const {
        const IsKey is_key = [this](const NodePath &entry, const Node &child) {
            const NodeShape *shape = shapes_[entry.size() - 1];
            return shape != nullptr && shape->is_key(tag_of(child));
        };
        RpcError error = error_at(path_, tag, reason, is_key);
        if (error.tag == "bad-attribute") {
            error.bad_attribute = carries_insert(*path_.back()) ? "insert" : "operation";
        }
        throw Refused{error};
    }

    NodePath path_;
    std::vector<const NodeShape *> shapes_;  // one for each node of the path
};

}  // namespace

std::optional<RpcError> apply_edit(TreeHolder &data, const Node &edit, uint32_t default_operation, const Shapes &shapes,
                                   TreeHolder &changes) {
    try {
        Applier().apply(data.root(), edit, shapes.top(), changes.root(), default_operation);
        return std::nullopt;
    } catch (const Refused &refused) {
        return refused.error;
    }
}

}  // namespace tvk::framework
