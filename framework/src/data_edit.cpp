#include "framework/data_edit.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/heap.h"
#include "framework/request_errors.h"

namespace tvk::framework {

namespace {

constexpr size_t kMaxLevels = 1000;

struct Refused {
    RpcError error;
};

uint32_t operation_of(const Node &node, uint32_t otherwise = TVK_OPERATION_MERGE) {
    return has_operation(node) ? node.operation : otherwise;
}

// Owns a record that stands in no array yet.
class Loose {
public:
    Loose() = default;
    explicit Loose(Node node) : node_(node) {}
    Loose(Loose &&other) noexcept : node_(std::exchange(other.node_, Node{})) {}
    Loose &operator=(Loose &&other) noexcept {
        std::swap(node_, other.node_);
        return *this;
    }
    ~Loose() { release(node_); }

    Node &operator*() { return node_; }
    Node *operator->() { return &node_; }
    Node take() { return std::exchange(node_, Node{}); }

private:
    Node node_{};
};

// A node without its children, operation and place.
Loose bare_copy(const Node &node) {
    Node shown = node;
    shown.subtrees = nullptr;
    shown.subtree_count = 0;
    shown.edit_insert = {};
    shown.presence = static_cast<uint16_t>(
        node.presence & ~(TVK_HAS_SUBTREES | TVK_HAS_OPERATION | TVK_HAS_EDIT_INSERT | TVK_HAS_NODE_KIND));
    shown.operation = 0;
    Loose copy;
    copy_tree(shown, *copy);
    return copy;
}

void append_child(Node &parent, Loose child) {
    const auto count = static_cast<size_t>(parent.subtree_count);
    void *grown = kel_named_realloc(parent.subtrees, (count + 1) * sizeof(Node));
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    parent.subtrees = static_cast<Node *>(grown);
    parent.subtrees[count] = child.take();
    ++parent.subtree_count;
    set_present(parent, TVK_HAS_SUBTREES);
}

// Everything that makes two trees the same data: order counts among nodes of one name alone.
std::string content_of(const Node &node) {
    std::vector<std::pair<std::string, std::string>> children;
    for (const Node &child : tvk::children(node)) {
        children.emplace_back(std::string(namespace_of(child)) + '\x1f' + tag_of(child), content_of(child));
    }
    std::stable_sort(children.begin(), children.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    std::string text = text_of_value(node, ValueForm::kResolved) + '\x1f';
    for (int32_t i = 0; i < node.attribute_count && node.attributes != nullptr; ++i) {
        text += std::string(node.attributes[i].name) + '=' + node.attributes[i].value + '\x1f';
    }
    for (const auto &[name, content] : children) {
        text += name;
        text += '\x1f';
        text += content;
    }
    return text + '\x1e';
}

// The children of a node while they are edited: found by what tells them apart, in an order that insertions change.
class Children {
public:
    // Takes the children out of parent until put_back.
    explicit Children(Node &parent) : parent_(parent) {
        items_.reserve(static_cast<size_t>(parent.subtree_count));
        if (children(parent).empty()) {
            return;
        }
        for (int32_t i = 0; i < parent.subtree_count; ++i) {
            append(Loose(std::exchange(parent.subtrees[i], Node{})), last_);
        }
    }

    using Place = int32_t;
    static constexpr Place kNone = -1;

    Node &operator[](Place place) { return *item(place).node; }

    Place find(const Node &like, const NodeShape &shape) {
        if (places_.empty()) {
            index(shape);
        }
        const NodeShape *its_shape = shape.find(tag_of(like));
        for (const ValueForm form : {ValueForm::kWritten, ValueForm::kResolved}) {
            const auto place = places_.find(name_of(like, its_shape, form));
            if (place != places_.end() && item(place->second).is_there) {
                return place->second;
            }
        }
        return kNone;
    }

    // Behind the last one of its name.
    Place add(Loose node, const NodeShape &shape) {
        const auto group = groups_.find(key_of_name(*node));
        const bool is_first = group == groups_.end() || group->second.last == kNone;
        const Place place = append(std::move(node), is_first ? last_ : group->second.last);
        name_place((*this)[place], shape, place);
        return place;
    }

    void remove(Place place) {
        unlink(place);
        item(place).is_there = false;
        release((*this)[place]);
    }

    // Before or behind another one of its name; kNone for other means the first or the last. False when it stands there
    // already.
    bool move(Place place, Place other, bool behind) {
        Group &group = *item(place).group;
        if (other == kNone) {
            other = behind ? group.last : group.first;
        }
        if (other == place || (behind ? item(place).same_before : item(place).same_behind) == other) {
            return false;
        }
        unlink(place);
        link(place, behind ? other : item(other).before, behind ? other : item(other).same_before);
        return true;
    }

    void put_back() {
        size_t count = 0;
        for (Place place = first_; place != kNone; place = item(place).behind) {
            ++count;
        }
        Node *array = count > 0 ? zeroed_array<Node>(count) : nullptr;
        size_t next = 0;
        for (Place place = first_; place != kNone; place = item(place).behind) {
            array[next++] = item(place).node.take();
        }
        kel_named_free(parent_.subtrees);
        parent_.subtrees = array;
        parent_.subtree_count = static_cast<int32_t>(count);
        parent_.presence = static_cast<uint16_t>(count > 0 ? parent_.presence | TVK_HAS_SUBTREES
                                                           : parent_.presence & ~TVK_HAS_SUBTREES);
    }

private:
    // The nodes of one name, in their order.
    struct Group {
        Place first = kNone;
        Place last = kNone;
    };
    struct Item {
        Loose node;
        Group *group;
        Place before = kNone;
        Place behind = kNone;
        Place same_before = kNone;
        Place same_behind = kNone;
        bool is_there = true;
    };

    Item &item(Place place) { return items_[static_cast<size_t>(place)]; }

    static std::string key_of_name(const Node &node) { return std::string(namespace_of(node)) + '\x1f' + tag_of(node); }
    static std::string name_of(const Node &node, const NodeShape *shape, ValueForm form) {
        return key_of_name(node) + '\x1f' + (shape != nullptr ? identity_of(node, *shape, form) : std::string());
    }
    void name_place(const Node &node, const NodeShape &shape, Place place) {
        const NodeShape *its_shape = shape.find(tag_of(node));
        std::string written = name_of(node, its_shape, ValueForm::kWritten);
        if (std::string resolved = name_of(node, its_shape, ValueForm::kResolved); resolved != written) {
            places_[std::move(resolved)] = place;
        }
        places_[std::move(written)] = place;
    }

    void index(const NodeShape &shape) {
        for (size_t i = 0; i < items_.size(); ++i) {
            name_place(*items_[i].node, shape, static_cast<Place>(i));
        }
    }
    // As the last one of its name.
    Place append(Loose node, Place before) {
        const auto place = static_cast<Place>(items_.size());
        Group &group = groups_[key_of_name(*node)];
        items_.push_back({std::move(node), &group});
        link(place, before, group.last);
        return place;
    }
    void link(Place place, Place before, Place same_before) {
        Item &linked = item(place);
        linked.before = before;
        linked.behind = before != kNone ? item(before).behind : first_;
        (before != kNone ? item(before).behind : first_) = place;
        (linked.behind != kNone ? item(linked.behind).before : last_) = place;
        Group &group = *linked.group;
        linked.same_before = same_before;
        linked.same_behind = same_before != kNone ? item(same_before).same_behind : group.first;
        (same_before != kNone ? item(same_before).same_behind : group.first) = place;
        (linked.same_behind != kNone ? item(linked.same_behind).same_before : group.last) = place;
    }
    void unlink(Place place) {
        Item &unlinked = item(place);
        (unlinked.before != kNone ? item(unlinked.before).behind : first_) = unlinked.behind;
        (unlinked.behind != kNone ? item(unlinked.behind).before : last_) = unlinked.before;
        Group &group = *unlinked.group;
        (unlinked.same_before != kNone ? item(unlinked.same_before).same_behind : group.first) = unlinked.same_behind;
        (unlinked.same_behind != kNone ? item(unlinked.same_behind).same_before : group.last) = unlinked.same_before;
    }

    Node &parent_;
    std::vector<Item> items_;
    Place first_ = kNone;
    Place last_ = kNone;
    std::unordered_map<std::string, Place> places_;
    std::unordered_map<std::string, Group> groups_;
};

class Applier {
public:
    // Carries out the children of edit on those of data; those without an operation do what otherwise says.
    void apply(Node &data, const Node &edit, const NodeShape &shape, Node &changes, uint32_t otherwise) {
        if (path_.size() == kMaxLevels) {
            refuse("operation-failed", "the data has more than " + std::to_string(kMaxLevels) + " levels");
        }
        Children children(data);
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

    void apply_node(Children &children, const Node &node, const NodeShape &shape, Node &changes, uint32_t otherwise) {
        if (here().is_unclear) {
            refuse("operation-failed",
                   "nothing shows what the keys of this list are; name its mapping, or say it with --list");
        }
        refuse_keys(node, shape, operation_of(node, otherwise));
        const Children::Place place = children.find(node, shape);
        const bool is_there = place != Children::kNone;
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

    // A list entry without its keys, and the deletion of a key.
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

    void create(Children &children, const Node &node, const NodeShape &shape, Node &changes) {
        Loose created = grown(node);
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
        Loose inner = changed_parent(there);
        const int32_t keys = inner->subtree_count;
        apply(there, node, here(), *inner, operation);
        if (inner->subtree_count > keys) {
            append_child(changes, std::move(inner));
        }
    }

    void replace(Children &children, Children::Place place, const Node &node, Node &changes) {
        Loose created = grown(node);
        Node &there = children[place];
        if (content_of(there) == content_of(*created)) {
            return;
        }
        append_change(changes, copy_of(*created), TVK_OPERATION_REPLACE);
        release(there);
        there = created.take();
    }

    void put_in_place(Children &children, const Node &node, const NodeShape &shape, bool was_there, Node &changes) {
        const qidl_tvk_edit_insert &insert = node.edit_insert;
        const uint32_t position = (insert.insert_presence & TVK_INSERT_HAS_POSITION) != 0
                                      ? insert.position
                                      : static_cast<uint32_t>(TVK_INSERT_LAST);
        Children::Place other = Children::kNone;
        if (position == TVK_INSERT_BEFORE || position == TVK_INSERT_AFTER) {
            Loose like = anchor_of(node);
            other = children.find(*like, shape);
            if (other == Children::kNone) {
                refuse("bad-attribute", "it is to be inserted beside an entry that is not there");
            }
        }
        const Children::Place place = children.find(node, shape);
        const bool is_moved = children.move(place, other, position == TVK_INSERT_LAST || position == TVK_INSERT_AFTER);
        if (was_there && is_moved) {
            append_child(changes, changed_parent(children[place]));
        }
        if (is_moved || !was_there) {
            note_place(changes.subtrees[changes.subtree_count - 1], insert);
        }
    }

    static void note_place(Node &change, const qidl_tvk_edit_insert &insert) {
        if (qidl_tvk_edit_ins_duplicate(&change.edit_insert, &insert, tvk_gpb_alloc, nullptr) != TVK_OK) {
            throw std::bad_alloc();
        }
        set_present(change, TVK_HAS_EDIT_INSERT);
    }

    // An entry with the keys, or a value with the value, that the insert record names.
    Loose anchor_of(const Node &node) const {
        Loose like = bare_copy(node);
        const qidl_tvk_edit_insert &insert = node.edit_insert;
        if (insert.value != nullptr && insert.value_presence != 0) {
            kel_named_free(like->data);
            like->data = nullptr;
            like->data = copy_text(insert.value);
            set_present(*like, TVK_HAS_DATA);
        }
        for (int32_t i = 0; i < insert.key_count && insert.keys != nullptr; ++i) {
            Loose key;
            key->tag = copy_text(insert.keys[i].name != nullptr ? insert.keys[i].name : "");
            key->data = copy_text(insert.keys[i].value != nullptr ? insert.keys[i].value : "");
            key->presence = TVK_HAS_TAG | TVK_HAS_DATA;
            append_child(*like, std::move(key));
        }
        return like;
    }

    // The node as it is when nothing was there before: what is to be removed below it stays away.
    Loose grown(const Node &node) {
        if (path_.size() >= kMaxLevels) {
            refuse("operation-failed", "the data has more than " + std::to_string(kMaxLevels) + " levels");
        }
        Loose copy = bare_copy(node);
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

    // Whether the children of a node say nothing but what they hold, each by a name of its own.
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

    // Two nodes with children of which each may be an entry of its own.
    void refuse_if_unclear(const Node &there, const Node &node) const {
        const bool is_top = path_.size() == 1;  // hardly ever a list
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

    // What stands around changes: the name, and the keys of an entry.
    Loose changed_parent(const Node &there) const {
        Loose parent = bare_copy(there);
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
    static void append_change(Node &changes, Loose node, uint32_t operation) {
        set_operation(*node, operation);
        append_child(changes, std::move(node));
    }
    static Loose copy_of(const Node &node) {
        Loose copy;
        copy_tree(node, *copy);
        return copy;
    }
    static void take_value(Node &there, const Node &node) {
        Loose value = bare_copy(node);
        std::swap(there.data, value->data);
        std::swap(there.data_ns, value->data_ns);
        there.presence = static_cast<uint16_t>((there.presence & ~(TVK_HAS_DATA | TVK_HAS_DATA_NS)) |
                                               (node.presence & (TVK_HAS_DATA | TVK_HAS_DATA_NS)));
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
    std::vector<const NodeShape *> shapes_;  // of the nodes of the path
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
