// Matches a subtree filter against a response.
#include "framework/subtree_filter.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "filter_node.h"

namespace tvk::framework {

namespace {

bool is_named(const Node &filter, const Node &node) {
    const char *ns = namespace_of(filter);
    return std::strcmp(tag_of(filter), tag_of(node)) == 0 && (*ns == '\0' || std::strcmp(ns, namespace_of(node)) == 0);
}

bool has_value_of(const Node &filter, const Node &node) {
    const char *wanted = value_namespace_of(filter);
    const char *given = value_namespace_of(node);
    return std::strcmp(value_of(filter), value_of(node)) == 0 &&
           (*wanted == '\0' || *given == '\0' || std::strcmp(wanted, given) == 0);
}

bool has_attributes_of(const Node &filter, const Node &node) {
    const auto attributes = [](const Node &from) {
        const bool any = has(from, TVK_HAS_ATTRIBUTES) && from.attributes != nullptr;
        return std::span(from.attributes, any ? static_cast<size_t>(from.attribute_count) : 0);
    };
    const auto given = attributes(node);
    return std::ranges::all_of(attributes(filter), [&](const qidl_tvk_name_value &wanted) {
        return std::ranges::any_of(given, [&](const qidl_tvk_name_value &other) {
            return same_text(wanted.name, other.name) && same_text(wanted.value, other.value);
        });
    });
}

// A value that a filter node selects nothing without.
struct Condition {
    std::vector<std::string_view> path;  // the tags that lead to the value, without that of the filter node
    std::string_view value;
};

// Returns the first value below filter that only single nodes lead to, or nothing.
std::optional<Condition> condition_of(const Node &filter) {
    Condition condition;
    for (const Node *node = &filter;;) {
        const auto children = tvk::children(*node);
        const auto leaf = std::find_if(children.begin(), children.end(), is_content_match);
        if (leaf != children.end()) {
            condition.path.emplace_back(tag_of(*leaf));
            condition.value = value_of(*leaf);
            return condition;
        }
        if (children.size() != 1) {
            return std::nullopt;
        }
        node = &children.front();
        condition.path.emplace_back(tag_of(*node));
    }
}

// Appends a text that is the same for filter nodes that say the same.
void append_content(std::string &text, const Node &filter) {
    for (const char *part : {tag_of(filter), namespace_of(filter), value_of(filter), value_namespace_of(filter)}) {
        text += part;
        text += '\x1f';
    }
    for (int32_t i = 0; i < filter.attribute_count && filter.attributes != nullptr; ++i) {
        text += std::string(filter.attributes[i].name) + '=' + filter.attributes[i].value + '\x1f';
    }
    for (const Node &child : children(filter)) {
        append_content(text, child);
    }
    text += '\x1e';
}

// The children of a filter node, sorted by how they select.
struct Parts {
    // The different filter nodes of one name. Those with a condition are found by its value.
    struct Group {
        using ByValue = std::unordered_map<std::string_view, std::vector<const Node *>>;
        std::vector<const Node *> plain;
        std::map<std::vector<std::string_view>, ByValue> by_condition;
    };
    std::vector<const Node *> values;
    std::unordered_map<std::string_view, Group> groups;

    explicit Parts(const Node &filter) {
        std::unordered_set<std::string> met;
        for (const Node &child : children(filter)) {
            if (is_content_match(child)) {
                values.push_back(&child);
                continue;
            }
            std::string content;
            append_content(content, child);
            if (!met.insert(std::move(content)).second) {
                continue;
            }
            Group &group = groups[tag_of(child)];
            if (const auto condition = condition_of(child)) {
                group.by_condition[condition->path][condition->value].push_back(&child);
            } else {
                group.plain.push_back(&child);
            }
        }
    }

    // Calls visit for each filter node that may select node. It may select nothing of it.
    template <typename Visit>
    void visit_candidates(const Node &node, const Visit &visit) const {
        const auto group = groups.find(tag_of(node));
        if (group == groups.end()) {
            return;
        }
        for (const Node *candidate : group->second.plain) {
            visit(*candidate);
        }
        for (const auto &[path, by_value] : group->second.by_condition) {
            std::unordered_set<const std::vector<const Node *> *>
                found;  // each once, however many nodes have the value
            find_values(node, path, by_value, found);
            for (const auto *candidates : found) {
                std::for_each(candidates->begin(), candidates->end(), [&](const Node *other) { visit(*other); });
            }
        }
    }

private:
    static void find_values(const Node &node, std::span<const std::string_view> path, const Group::ByValue &by_value,
                            std::unordered_set<const std::vector<const Node *> *> &found) {
        for (const Node &child : children(node)) {
            if (path.front() != tag_of(child)) {
                continue;
            }
            if (path.size() > 1) {
                find_values(child, path.subspan(1), by_value, found);
            } else if (const auto candidates = by_value.find(value_of(child)); candidates != by_value.end()) {
                found.insert(&candidates->second);
            }
        }
    }
};

void set_verdict(Node &node, uint32_t verdict) {
    node.node_kind = verdict;
    set_present(node, TVK_HAS_NODE_KIND);
}

void keep_at_least(Node &node, uint32_t verdict) {
    set_verdict(node, std::max(node.node_kind, verdict));
}

void drop_all(Node &root) {
    std::vector<Node *> pending{&root};  // a mapping may have built a tree of any depth
    while (!pending.empty()) {
        Node &node = *pending.back();
        pending.pop_back();
        set_verdict(node, TVK_NODE_KIND_NONE);
        for (Node &child : children(node)) {
            pending.push_back(&child);
        }
    }
}

bool is_asked_for_whole(const Node &filter, const Node &top) {
    const auto filters = children(filter);
    return std::any_of(filters.begin(), filters.end(), [&](const Node &one) {
        return children(one).empty() && !is_content_match(one) && is_named(one, top) && has_attributes_of(one, top);
    });
}

const Node *walked_child(const Node *walked, const Node &node) {
    if (walked == nullptr) {
        return nullptr;
    }
    const auto children = tvk::children(*walked);
    const auto child =
        std::find_if(children.begin(), children.end(), [&](const Node &other) { return is_named(other, node); });
    return child != children.end() ? &*child : nullptr;
}

// Keeps the keys of an entry that holds something selected. The walk has marked all keys in its filter, or none.
void keep_keys(Node &entry, const Node *walked) {
    const auto known = walked != nullptr ? children(*walked) : NodeRange<const Node>();
    const auto is_key = [](const Node &child) { return has(child, TVK_HAS_IS_KEY); };
    if (!known.empty()) {
        for (Node &child : children(entry)) {
            const auto key = std::find_if(known.begin(), known.end(), [&](const Node &other) {
                return is_key(other) && std::strcmp(tag_of(other), tag_of(child)) == 0;
            });
            if (key != known.end()) {
                keep_at_least(child, TVK_NODE_KIND_KA);
            }
        }
        return;
    }
    const auto children = tvk::children(entry);
    const auto inner =
        std::find_if(children.begin(), children.end(), [](const Node &child) { return !tvk::children(child).empty(); });
    if (inner != children.end()) {
        std::for_each(children.begin(), inner, [](Node &leaf) { keep_at_least(leaf, TVK_NODE_KIND_KA); });
    }
}

class Selector {
public:
    // Marks what filter selects of node, which has its name. Returns false when that is nothing.
    bool select(const Node &filter, Node &node, const Node *walked) {
        if (!has_attributes_of(filter, node)) {
            return false;
        }
        if (children(filter).empty()) {
            keep_at_least(node, TVK_NODE_KIND_KA);
            return true;
        }
        const Parts &parts = parts_of(filter);
        if (!match_values(parts, node)) {
            return false;
        }
        if (parts.groups.empty()) {
            keep_at_least(node, TVK_NODE_KIND_KA);
            return true;
        }
        bool any = !parts.values.empty();
        for (const Node *value : parts.values) {
            keep_value(*value, node);
        }
        any = select_children(parts, node, walked) || any;
        if (any) {
            keep_keys(node, walked);
            keep_at_least(node, TVK_NODE_KIND_KN);
        }
        return any;
    }

    bool select_children(const Parts &parts, Node &node, const Node *walked) {
        bool any = false;
        for (Node &child : children(node)) {
            parts.visit_candidates(child, [&](const Node &filter) {
                any = (is_named(filter, child) && select(filter, child, walked_child(walked, child))) || any;
            });
        }
        return any;
    }

    const Parts &parts_of(const Node &filter) {
        const auto known = parts_.find(&filter);
        return known != parts_.end() ? known->second : parts_.emplace(&filter, Parts(filter)).first->second;
    }

private:
    static bool match_values(const Parts &parts, const Node &node) {
        return std::all_of(parts.values.begin(), parts.values.end(), [&](const Node *value) {
            const auto children = tvk::children(node);
            return std::any_of(children.begin(), children.end(), [&](const Node &child) {
                return is_named(*value, child) && has_value_of(*value, child) && has_attributes_of(*value, child);
            });
        });
    }

    static void keep_value(const Node &value, Node &node) {
        for (Node &child : children(node)) {
            if (is_named(value, child) && has_value_of(value, child)) {
                keep_at_least(child, TVK_NODE_KIND_KA);
            }
        }
    }

    std::unordered_map<const Node *, Parts> parts_;
};

}  // namespace

void mark_selected(const Node &filter, const Node &walked, Node &response) {
    for (Node &top : children(response)) {
        // Below a node that is kept whole no verdict is read.
        is_asked_for_whole(filter, top) ? set_verdict(top, TVK_NODE_KIND_NONE) : drop_all(top);
    }
    Selector selector;
    // match_values is not asked here: a value in place of a top container selects nothing, and hinders no other.
    selector.select_children(selector.parts_of(filter), response, &walked);
    set_verdict(response, TVK_NODE_KIND_KN);
}

}  // namespace tvk::framework
