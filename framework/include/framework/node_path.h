// Paths of nodes in a tree, for messages and as XPaths.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "framework/tree_holder.h"

namespace tvk::framework {

// The nodes from a top container down to a node. The root of the tree, which stands for no node, is not among them.
using NodePath = std::vector<const Node *>;

// Returns the path of the first node below root, in document order, for which is_meant is true. It looks 256 levels
// deep, as deep as XML is read.
std::optional<NodePath> find_path(const Node &root, const std::function<bool(const NodePath &)> &is_meant);

// Returns the paths of several nodes. The path of a node that is not below root is empty.
std::vector<NodePath> paths_of(const Node &root, const std::vector<const Node *> &nodes);

// Tells whether child is a key of the list entry at the end of a path.
using IsKey = std::function<bool(const NodePath &entry, const Node &child)>;

// Tells whether the walk of the request has marked child as a key.
bool is_marked_key(const NodePath &entry, const Node &child);

// An absolute XPath that selects a node. The prefix of the namespace at index i is "ns" and i + 1.
struct XPath {
    std::string text;
    std::vector<std::string> namespaces;
};

// Returns the XPath of a node. The entries around it are named by their keys, or else by position.
XPath xpath_of(const NodePath &path, const IsKey &is_key = is_marked_key);

// Returns the same without prefixes, for people: /interfaces/interface[name='eth0']
std::string readable_path(const NodePath &path, const IsKey &is_key = is_marked_key);

}  // namespace tvk::framework
