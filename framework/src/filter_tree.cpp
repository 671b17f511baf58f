// Widens the filter of a client to one that mappings and engine can work on, and prunes the response.
#include "framework/filter_tree.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "filter_node.h"
#include "framework/heap.h"
#include "framework/subtree_filter.h"
#include "tvk_map_filter.h"

namespace tvk::framework {

namespace {

// When more nodes name an entry each, the list is walked whole: the engine would compare each with all entries.
constexpr size_t kMaxNamedEntries = 64;

using Nodes = std::vector<const Node *>;
using Name = std::pair<std::string_view, std::string_view>;  // tag and namespace

Node &append(Node &parent, const char *tag, const char *ns) {
    Node &node = append_child(parent);
    node.tag = copy_text(tag);
    node.ns = copy_text(ns);
    node.presence = TVK_HAS_TAG | TVK_HAS_NS;
    return node;
}

void append_value(Node &parent, const Node &leaf) {
    Node &copy = append(parent, tag_of(leaf), namespace_of(leaf));
    copy.data = copy_text(value_of(leaf));
    set_present(copy, TVK_HAS_DATA);
    if (has(leaf, TVK_HAS_DATA_NS) && leaf.data_ns != nullptr) {
        copy.data_ns = copy_text(leaf.data_ns);
        set_present(copy, TVK_HAS_DATA_NS);
    }
}

// Returns the leaves of a node that name values, in the order of their names.
Nodes values_of(const Node &node) {
    Nodes values;
    for (const Node &child : children(node)) {
        if (is_content_match(child)) {
            values.push_back(&child);
        }
    }
    std::stable_sort(values.begin(), values.end(),
                     [](const Node *a, const Node *b) { return std::strcmp(tag_of(*a), tag_of(*b)) < 0; });
    return values;
}

// The values that a filter node names.
struct Conditions {
    std::string names;  // the leaves
    std::string text;   // names and values
};

Conditions conditions_of(const Node &node) {
    Conditions conditions;
    for (const Node *value : values_of(node)) {
        conditions.names += std::string(tag_of(*value)) + '\x1f';
        conditions.text +=
            std::string(tag_of(*value)) + '\x1f' + value_of(*value) + '\x1f' + value_namespace_of(*value) + '\x1f';
    }
    return conditions;
}

bool asks_for_all(const Node &node) {
    const auto children = tvk::children(node);
    return std::all_of(children.begin(), children.end(), is_content_match);
}

bool names_a_leaf_twice(const Node &node) {
    std::set<Name> values;
    for (const Node *value : values_of(node)) {
        if (!values.insert({tag_of(*value), namespace_of(*value)}).second) {
            return true;
        }
    }
    const auto children = tvk::children(node);
    return !values.empty() && std::any_of(children.begin(), children.end(), [&](const Node &child) {
        return !is_content_match(child) && values.count({tag_of(child), namespace_of(child)}) != 0;
    });
}

// Tells whether the children of the nodes select by namespace. Mappings and engine look at names alone.
bool is_open_inside(const Nodes &nodes) {
    std::map<std::string_view, std::string_view> namespaces;
    for (const Node *node : nodes) {
        for (const Node &child : children(*node)) {
            const std::string_view ns = namespace_of(child);
            if (ns.empty() || namespaces.emplace(tag_of(child), ns).first->second != ns) {
                return true;
            }
        }
    }
    return false;
}

class Widener {
public:
    explicit Widener(const OpenLists &open) : open_(open) {}

    // Adds to parent, in namespace ns, what the filter nodes same ask for. They have one name and stand below filter
    // nodes that have become parent; above names the tags of these.
    void add(Node &parent, const char *ns, const Nodes &same, const std::string &above) {
        const char *tag = tag_of(*same.front());
        const std::string path = above.empty() ? tag : above + "/" + tag;
        if (open_.count(path) != 0 || is_open_inside(same)) {
            append(parent, tag, ns);
            return;
        }
        std::map<std::string, Nodes> by_conditions;
        for (const Node *node : same) {
            by_conditions[conditions_of(*node).text].push_back(node);
        }
        if (are_apart(same) && by_conditions.size() <= kMaxNamedEntries) {
            for (const Node *node : same) {
                const Nodes &equal = by_conditions[conditions_of(*node).text];
                if (equal.front() == node) {
                    Node &entry = append(parent, tag, ns);
                    for (const Node *value : values_of(*node)) {
                        append_value(entry, *value);
                    }
                    add_children(entry, equal, path);
                }
            }
            return;
        }
        Node &all = append(parent, tag, ns);
        if (add_children(all, same, path)) {
            ask_for_values(all, same);
        }
    }

private:
    // Tells whether the nodes name values of the same leaves, so that each selects other entries, unless the values are
    // the same.
    static bool are_apart(const Nodes &nodes) {
        const std::string names = conditions_of(*nodes.front()).names;
        return std::all_of(nodes.begin(), nodes.end(), [&](const Node *node) {
            return conditions_of(*node).names == names && !names_a_leaf_twice(*node);
        });
    }

    // Adds to parent what the nodes ask for beside values. Returns false, and adds nothing, when one of them asks for
    // all.
    bool add_children(Node &parent, const Nodes &nodes, const std::string &path) {
        if (std::any_of(nodes.begin(), nodes.end(), [](const Node *node) { return asks_for_all(*node); })) {
            return false;
        }
        std::map<Name, Nodes> groups;
        std::vector<Name> order;
        for (const Node *node : nodes) {
            for (const Node &child : children(*node)) {
                if (is_content_match(child)) {
                    continue;
                }
                const Name name{tag_of(child), namespace_of(child)};
                Nodes &group = groups[name];
                if (group.empty()) {
                    order.push_back(name);
                }
                group.push_back(&child);
            }
        }
        for (const Name &name : order) {
            const Nodes &group = groups[name];
            add(parent, namespace_of(*group.front()), group, path);
        }
        return true;
    }

    // Adds the leaves whose values decide, so that the response has them.
    static void ask_for_values(Node &parent, const Nodes &nodes) {
        std::set<Name> asked;
        for (const Node &child : children(parent)) {
            asked.insert({tag_of(child), namespace_of(child)});
        }
        std::vector<const Node *> missing;
        for (const Node *node : nodes) {
            for (const Node *value : values_of(*node)) {
                if (asked.insert({tag_of(*value), namespace_of(*value)}).second) {
                    missing.push_back(value);
                }
            }
        }
        for (const Node *value : missing) {
            append(parent, tag_of(*value), namespace_of(*value));
        }
    }

    const OpenLists &open_;
};

// Returns the namespaces in which a top node of a filter selects a mapped container.
std::vector<std::string_view> namespaces_of(const Mappings &mappings, const Node &top) {
    std::vector<std::string_view> found;
    for (const MappingModule &module : mappings.modules()) {
        for (const tvk_map_module_container &container : module.containers()) {
            const char *ns = namespace_of(top);
            if (std::strcmp(container.tag, tag_of(top)) == 0 && (*ns == '\0' || std::strcmp(container.ns, ns) == 0)) {
                found.emplace_back(container.ns);
            }
        }
    }
    return found;
}

}  // namespace

void select_everything(const Mappings &mappings, TreeHolder &filter) {
    for (const MappingModule &module : mappings.modules()) {
        for (const tvk_map_module_container &container : module.containers()) {
            append(filter.root(), container.tag, container.ns);
        }
    }
}

void widen(const Mappings &mappings, const Node &asked, const OpenLists &open, TreeHolder &walked) {
    std::map<Name, Nodes> groups;
    std::vector<Name> order;
    for (const Node &top : children(asked)) {
        for (const std::string_view ns : namespaces_of(mappings, top)) {
            const Name name{tag_of(top), ns};
            Nodes &group = groups[name];
            if (group.empty()) {
                order.push_back(name);
            }
            group.push_back(&top);
        }
    }
    for (const Name &name : order) {
        Widener(open).add(walked.root(), name.second.data(), groups[name], "");
    }
}

void prune(RequestScope &scope, MarkPhase mark, const Node &asked, TreeHolder &walked, TreeHolder &response) {
    for (Node &top : response.tops()) {
        for (Node &filter : walked.tops()) {
            if (same_name(filter, top)) {
                mark(scope.ctx(), &filter, &top);
                tvk_map_dfs_filter_sweep(scope.ctx(), &top);
            }
        }
    }
    mark_selected(asked, walked.root(), response.root());
    tvk_map_dfs_filter_sweep(scope.ctx(), &response.root());
    keep_children(response.root(), [](const Node &top) { return !children(top).empty() || *value_of(top) != '\0'; });
}

}  // namespace tvk::framework
