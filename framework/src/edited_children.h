// Holds the children of a node while an edit changes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/node_identity.h"
#include "loose_node.h"

namespace tvk::framework {

// Finds children by what tells them apart, and keeps them in an order that insertions change. Each step takes constant
// time, whatever stands beside the child.
class EditedChildren {
public:
    // Takes the children out of parent until put_back.
    explicit EditedChildren(Node &parent);

    using Place = int32_t;
    static constexpr Place kNone = -1;

    Node &operator[](Place place) { return *item(place).node; }

    // Returns the place of the child with the name and identity of like, or kNone. shape is that of the parent.
    Place find(const Node &like, const NodeShape &shape);

    // Adds a child behind the last one of its name, or, when it is the first, behind all. Returns its place.
    Place add(LooseNode node, const NodeShape &shape);

    void remove(Place place);

    // Moves a child before or behind another one of its name. kNone for other means the first or the last of them.
    // Returns false when it stands there already.
    bool move(Place place, Place other, bool behind);

    // Gives the children back to parent, in their order. Nothing else may be called then.
    void put_back();

private:
    // The first and last of the nodes of one name, in their order.
    struct Group {
        Place first = kNone;
        Place last = kNone;
    };
    struct Item {
        LooseNode node;
        Group *group;
        Place before = kNone;
        Place behind = kNone;
        Place same_before = kNone;
        Place same_behind = kNone;
        bool is_there = true;
    };

    Item &item(Place place) { return items_[static_cast<std::size_t>(place)]; }

    void index(const NodeShape &shape);
    void name_place(const Node &node, const NodeShape &shape, Place place);
    Place append(LooseNode node, Place before);
    void link(Place place, Place before, Place same_before);
    void unlink(Place place);

    Node &parent_;
    std::vector<Item> items_;
    Place first_ = kNone;
    Place last_ = kNone;
    std::unordered_map<std::string, Place> places_;
    std::unordered_map<std::string, Group> groups_;
};

}  // namespace tvk::framework
