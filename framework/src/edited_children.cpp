// Keeps the children of an edited node in linked lists, and finds them by hashing.
#include "edited_children.h"

#include <utility>

#include "framework/heap.h"

namespace tvk::framework {

namespace {

std::string key_of_name(const Node &node) {
    return std::string(namespace_of(node)) + '\x1f' + tag_of(node);
}

std::string name_of(const Node &node, const NodeShape *shape, ValueForm form) {
    return key_of_name(node) + '\x1f' + (shape != nullptr ? identity_of(node, *shape, form) : std::string());
}

}  // namespace

EditedChildren::EditedChildren(Node &parent) : parent_(parent) {
    items_.reserve(static_cast<std::size_t>(parent.subtree_count));
    for (Node &child : children(parent)) {
        append(LooseNode(std::exchange(child, Node{})), last_);
    }
}

EditedChildren::Place EditedChildren::find(const Node &like, const NodeShape &shape) {
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

EditedChildren::Place EditedChildren::add(LooseNode node, const NodeShape &shape) {
    const auto group = groups_.find(key_of_name(*node));
    const bool is_first = group == groups_.end() || group->second.last == kNone;
    const Place place = append(std::move(node), is_first ? last_ : group->second.last);
    name_place((*this)[place], shape, place);
    return place;
}

void EditedChildren::remove(Place place) {
    unlink(place);
    item(place).is_there = false;
    release((*this)[place]);
}

bool EditedChildren::move(Place place, Place other, bool behind) {
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

void EditedChildren::put_back() {
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
    count > 0 ? set_present(parent_, TVK_HAS_SUBTREES) : set_absent(parent_, TVK_HAS_SUBTREES);
}

void EditedChildren::index(const NodeShape &shape) {
    for (size_t i = 0; i < items_.size(); ++i) {
        name_place(*items_[i].node, shape, static_cast<Place>(i));
    }
}

void EditedChildren::name_place(const Node &node, const NodeShape &shape, Place place) {
    const NodeShape *its_shape = shape.find(tag_of(node));
    std::string written = name_of(node, its_shape, ValueForm::kWritten);
    if (std::string resolved = name_of(node, its_shape, ValueForm::kResolved); resolved != written) {
        places_[std::move(resolved)] = place;
    }
    places_[std::move(written)] = place;
}

// Adds a node as the last one of its name, right behind the child at before.
EditedChildren::Place EditedChildren::append(LooseNode node, Place before) {
    const auto place = static_cast<Place>(items_.size());
    Group &group = groups_[key_of_name(*node)];
    items_.push_back({std::move(node), &group});
    link(place, before, group.last);
    return place;
}

void EditedChildren::link(Place place, Place before, Place same_before) {
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

void EditedChildren::unlink(Place place) {
    Item &unlinked = item(place);
    (unlinked.before != kNone ? item(unlinked.before).behind : first_) = unlinked.behind;
    (unlinked.behind != kNone ? item(unlinked.behind).before : last_) = unlinked.before;
    Group &group = *unlinked.group;
    (unlinked.same_before != kNone ? item(unlinked.same_before).same_behind : group.first) = unlinked.same_behind;
    (unlinked.same_behind != kNone ? item(unlinked.same_behind).same_before : group.last) = unlinked.same_before;
}

}  // namespace tvk::framework
