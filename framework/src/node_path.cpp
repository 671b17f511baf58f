// Finds nodes in a tree, and writes their paths.
#include "framework/node_path.h"

#include <algorithm>
#include <unordered_map>

namespace tvk::framework {

namespace {

// The parser reads no more levels of XML, so a descent may be a recursion.
constexpr size_t kMaxLevels = 256;

template <typename Visit>
bool visit_below(const Node &node, NodePath &path, const Visit &visit) {
    if (path.size() == kMaxLevels) {
        return false;
    }
    for (const Node &child : children(node)) {
        path.push_back(&child);
        if (visit(path) || visit_below(child, path, visit)) {
            return true;
        }
        path.pop_back();
    }
    return false;
}

// Returns text as a literal of XPath, which has no way to escape a quote.
std::string literal(const std::string &text) {
    if (text.find('\'') == std::string::npos) {
        return "'" + text + "'";
    }
    if (text.find('"') == std::string::npos) {
        return '"' + text + '"';
    }
    std::string pieces = "concat(";
    for (size_t at = 0; at < text.size();) {
        const char quote = text[at] == '\'' ? '"' : '\'';
        const size_t end = std::min(text.find(quote, at), text.size());
        pieces += (at == 0 ? "" : ", ") + (quote + text.substr(at, end - at)) + quote;
        at = end;
    }
    return pieces + ")";
}

// Returns the prefix, with its colon, of names in a namespace.
using Prefix = std::function<std::string(const char *ns)>;

std::string predicate(const Node &key, const Prefix &prefix) {
    const char *value_ns = value_namespace_of(key);
    const std::string value = value_of(key);
    const bool is_identity = *value_ns != '\0' && value.find(':') == std::string::npos;
    return "[" + prefix(namespace_of(key)) + tag_of(key) + "=" +
           literal(is_identity ? prefix(value_ns) + value : value) + "]";
}

// Returns "[2]" for the second of several children of one name, or "" for the only one.
std::string position_of(const Node &node, const Node &parent) {
    size_t count = 0;
    size_t position = 0;
    for (const Node &child : children(parent)) {
        count += same_name(child, node) ? 1 : 0;
        position = &child == &node ? count : position;
    }
    return count > 1 && position > 0 ? "[" + std::to_string(position) + "]" : "";
}

std::string steps_of(const NodePath &path, const IsKey &is_key, const Prefix &prefix) {
    std::string text;
    for (size_t i = 0; i < path.size(); ++i) {
        const Node &node = *path[i];
        const NodePath here(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        text += "/" + prefix(namespace_of(node)) + tag_of(node);
        bool has_keys = false;
        for (const Node &child : children(node)) {
            if (is_key(here, child) && *value_of(child) != '\0') {
                text += predicate(child, prefix);
                has_keys = true;
            }
        }
        if (i > 0 && !has_keys) {
            text += position_of(node, *path[i - 1]);
        }
    }
    return text;
}

}  // namespace

std::optional<NodePath> find_path(const Node &root, const std::function<bool(const NodePath &)> &is_meant) {
    NodePath path;
    return visit_below(root, path, is_meant) ? std::optional(std::move(path)) : std::nullopt;
}

std::vector<NodePath> paths_of(const Node &root, const std::vector<const Node *> &nodes) {
    std::vector<NodePath> paths(nodes.size());
    std::unordered_map<const Node *, size_t> places;
    for (size_t i = 0; i < nodes.size(); ++i) {
        places.emplace(nodes[i], i);
    }
    NodePath path;
    visit_below(root, path, [&](const NodePath &here) {
        if (const auto place = places.find(here.back()); place != places.end()) {
            paths[place->second] = here;
        }
        return false;
    });
    return paths;
}

bool is_marked_key(const NodePath &, const Node &child) {
    return has_key_mark(child);
}

XPath xpath_of(const NodePath &path, const IsKey &is_key) {
    XPath xpath;
    xpath.text = steps_of(path, is_key, [&](const char *ns) -> std::string {
        if (*ns == '\0') {
            return "";
        }
        auto &known = xpath.namespaces;
        const auto place = std::find(known.begin(), known.end(), ns);
        const size_t number = static_cast<size_t>(place - known.begin()) + 1;
        if (place == known.end()) {
            known.emplace_back(ns);
        }
        return "ns" + std::to_string(number) + ":";
    });
    return xpath;
}

std::string readable_path(const NodePath &path, const IsKey &is_key) {
    return steps_of(path, is_key, [](const char *) { return ""; });
}

}  // namespace tvk::framework
