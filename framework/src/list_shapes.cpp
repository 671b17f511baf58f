// Takes in declarations of lists, and learns lists from data.
#include "framework/list_shapes.h"

#include <algorithm>
#include <deque>
#include <set>
#include <unordered_set>
#include <utility>

#include "framework/diagnostics.h"
#include "framework/node_identity.h"

namespace tvk::framework {

namespace {

bool is_leaf(const Node &node) {
    return children(node).empty();
}

// The children of one name of one parent.
using Entries = std::vector<const Node *>;
// The children of one name that all trees have at one place, by parent.
using Instances = std::vector<Entries>;

// Returns the tags of the leaves that all entries begin with.
std::vector<std::string> common_front(const Instances &instances) {
    std::vector<std::string> front;
    bool is_first = true;
    for (const Entries &entries : instances) {
        for (const Node *entry : entries) {
            const auto children = tvk::children(*entry);
            size_t common = 0;
            while (common < children.size() && is_leaf(children[common]) && *value_of(children[common]) != '\0' &&
                   (is_first || (common < front.size() && front[common] == tag_of(children[common])))) {
                if (is_first) {
                    front.emplace_back(tag_of(children[common]));
                }
                ++common;
            }
            front.resize(common);
            is_first = false;
        }
    }
    return front;
}

// Tells whether the keys of shape tell the entries of each parent apart. An entry that is deleted may stand beside a
// new one of the same keys.
bool tell_apart(const Instances &instances, const NodeShape &shape) {
    return std::all_of(instances.begin(), instances.end(), [&](const Entries &entries) {
        std::unordered_set<std::string> met;
        return std::all_of(entries.begin(), entries.end(), [&](const Node *entry) {
            return is_delete(*entry) || met.insert(identity_of(*entry, shape)).second;
        });
    });
}

void learn_keys(const Instances &instances, NodeShape &shape) {
    const std::vector<std::string> front = common_front(instances);
    for (const std::string &key : front) {
        shape.keys.push_back(key);
        if (tell_apart(instances, shape)) {
            return;
        }
    }
    const bool has_values = std::all_of(instances.begin(), instances.end(), [](const Entries &entries) {
        return std::all_of(entries.begin(), entries.end(), [](const Node *entry) { return is_leaf(*entry); });
    });
    shape.is_unclear = !has_values || !front.empty();
}

void learn_at(const Instances &instances, NodeShape &shape) {
    if (!shape.is_declared) {
        // A node that is deleted may stand beside the one that comes in its place.
        shape.is_list = shape.is_list || std::any_of(instances.begin(), instances.end(), [](const Entries &entries) {
                            return std::count_if(entries.begin(), entries.end(),
                                                 [](const Node *entry) { return !is_delete(*entry); }) > 1;
                        });
        if (shape.is_list) {
            learn_keys(instances, shape);
        }
    }
}

using Name = std::pair<std::string_view, std::string_view>;  // tag and namespace

std::map<Name, Instances> children_by_name(const std::vector<const Node *> &parents) {
    std::map<Name, Instances> by_name;
    for (const Node *parent : parents) {
        std::set<Name> here;
        for (const Node &child : children(*parent)) {
            const Name name{tag_of(child), namespace_of(child)};
            Instances &instances = by_name[name];
            if (here.insert(name).second) {
                instances.emplace_back();
            }
            instances.back().push_back(&child);
        }
    }
    return by_name;
}

// The nodes of one name at one place, and the shape to learn for what is below them.
struct Pending {
    std::vector<const Node *> parents;
    NodeShape *shape;
    int level;
};

// Learns the shapes below roots, level by level, since data may be deeper than the stack of calls.
void learn_below(const std::vector<const Node *> &roots, NodeShape &top) {
    constexpr int kMaxLevels = 1000;
    std::deque<Pending> places{{roots, &top, 0}};
    for (; !places.empty(); places.pop_front()) {
        const Pending &place = places.front();
        if (place.level == kMaxLevels) {
            continue;
        }
        for (const auto &[name, instances] : children_by_name(place.parents)) {
            NodeShape &next = place.shape->below[std::string(name.first)];
            if (place.shape->is_described) {
                next.is_described = true;
            } else {
                learn_at(instances, next);
            }
            std::vector<const Node *> nodes;
            for (const Entries &entries : instances) {
                nodes.insert(nodes.end(), entries.begin(), entries.end());
            }
            places.push_back({std::move(nodes), &next, place.level + 1});
        }
    }
}

}  // namespace

const NodeShape *NodeShape::find(std::string_view tag) const {
    const auto found = below.find(tag);
    return found != below.end() ? &found->second : nullptr;
}

bool NodeShape::is_key(const char *tag) const {
    return std::find(keys.begin(), keys.end(), tag) != keys.end();
}

Shapes::Shapes(const Mappings &mappings) {
    for (const MappingModule &module : mappings.modules()) {
        const tvk_map_module_list *list = module.table().native_lists;
        for (; list != nullptr && list->path != nullptr; ++list) {
            std::string keys = list->keys != nullptr ? list->keys : "";
            std::replace(keys.begin(), keys.end(), ' ', ',');
            add(std::string(list->path) + "=" + keys);
            const std::string_view path = list->path;
            at(path.substr(0, path.find('/'))).is_described = true;
        }
    }
}

void Shapes::add(const std::string &text) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw UsageError("--list \"" + text + "\" is no PATH=KEY,KEY");
    }
    NodeShape &shape = at(std::string_view(text).substr(0, equals));
    shape.is_list = true;
    shape.is_declared = true;
    shape.keys.clear();
    for (std::string_view rest = std::string_view(text).substr(equals + 1); !rest.empty();) {
        const size_t end = std::min(rest.find(','), rest.size());
        if (end > 0) {
            shape.keys.emplace_back(rest.substr(0, end));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

void Shapes::learn(const std::vector<const Node *> &roots) {
    learn_below(roots, top_);
}

NodeShape &Shapes::at(std::string_view path) {
    NodeShape *shape = &top_;
    while (!path.empty()) {
        const size_t end = std::min(path.find('/'), path.size());
        if (end > 0) {
            shape = &shape->below[std::string(path.substr(0, end))];
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return *shape;
}

}  // namespace tvk::framework
