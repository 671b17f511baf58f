// Where a node of a tree stands, for messages and as an XPath.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "framework/tree_holder.h"

namespace tvk::framework {

// A node behind those that it stands in, outermost first. The record that stands for no node is not among them.
using NodePath = std::vector<const Node *>;

// The path of the first node below root, in document order, that is meant; of no more levels than XML is read with.
std::optional<NodePath> find_path(const Node &root, const std::function<bool(const NodePath &)> &is_meant);

// Those of several nodes at once; a node that is not below root has an empty one.
std::vector<NodePath> paths_of(const Node &root, const std::vector<const Node *> &nodes);

// Whether child is a key of the list entry at the end of a path.
using IsKey = std::function<bool(const NodePath &entry, const Node &child)>;

// Keys as the walk of a request has marked them.
bool is_marked_key(const NodePath &entry, const Node &child);

// An absolute XPath that selects a node. The prefix of the namespace at index i is "ns" and i + 1.
struct XPath {
    std::string text;
    std::vector<std::string> namespaces;
};
XPath xpath_of(const NodePath &path, const IsKey &is_key = is_marked_key);

// The same for people, without prefixes: /interfaces/interface[name='eth0']
std::string readable_path(const NodePath &path, const IsKey &is_key = is_marked_key);

}  // namespace tvk::framework
