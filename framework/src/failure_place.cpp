// Finds where in a request a failed walk has stopped.
#include "failure_place.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "framework/diagnostics.h"
#include "tvk_map_lists.h"

namespace tvk::framework {

namespace {

bool is_seen_by_walk(const Node &node) {
    return (node.schema_info.flags & TVK_SCHEMA_INFO_HAS_NODE_TYPE) != 0;
}

// Returns the element for node in an error path. The library writes it, as it writes the path itself.
std::string path_element(const Node &node) {
    char buffer[TVK_MAP_MAX_PATH] = "";
    return tvk_oc_error_path_list_append(buffer, &node) == TVK_OK ? buffer : "";
}

// Returns the path of the node below root that the library's error path leads to, as far as the nodes are there.
NodePath end_of_error_path(const Node &root, const std::string &error_path) {
    NodePath path;
    const Node *node = &root;
    for (std::string_view rest = error_path; !rest.empty();) {
        std::string element;
        const auto children = tvk::children(*node);
        const auto child = std::find_if(children.begin(), children.end(), [&](const Node &candidate) {
            element = path_element(candidate);
            return !element.empty() && rest.starts_with(element);
        });
        if (child == children.end()) {
            break;
        }
        node = &*child;
        path.push_back(node);
        rest.remove_prefix(element.size());
    }
    return path;
}

// Returns the path of the first node below top that the walk had not entered when it stopped: a delete with content, or
// an entry without children.
std::optional<NodePath> first_not_entered(const Node &root, const Node &top) {
    return find_path(root, [&](const NodePath &path) {
        const Node &node = *path.back();
        const bool is_leaf = children(node).empty() && has(node, TVK_HAS_DATA);
        return path.front() == &top && !is_leaf && !is_seen_by_walk(node);
    });
}

// Returns the path of the node at fault when the library has recorded no error path, or nothing.
std::optional<NodePath> find_without_error_path(qerrno status, const Node &request, const Node &top) {
    switch (status) {
        case TVK_ERR_LIST_KEY:
            return find_path(request,
                             [&](const NodePath &path) { return path.front() == &top && is_empty_key(*path.back()); });
        case TVK_ERR_INVALID:
        case TVK_ERR_NOT_FOUND:
            return first_not_entered(request, top);
        default:
            return std::nullopt;
    }
}

// Adds to path the first child of its last node for which is_meant is true. Returns false when there is none.
template <typename IsMeant>
bool step_down(NodePath &path, const IsMeant &is_meant) {
    for (const Node &child : children(*path.back())) {
        if (is_meant(child)) {
            path.push_back(&child);
            return true;
        }
    }
    return false;
}

// Returns why copy may not stand for key, which it repeats, or "".
std::string fault_of_copy(const Node &copy, const Node &key) {
    if (is_delete(copy)) {
        return "it repeats a key of its list entry and cannot be deleted or removed; delete the entry instead";
    }
    if (!children(copy).empty()) {
        return "it repeats a key of its list entry and holds elements";
    }
    if (std::strcmp(value_of(copy), value_of(key)) != 0) {
        return "the value " + quoted(value_of(copy)) + " differs from the list key that it must repeat, " +
               quoted(value_of(key));
    }
    return "";
}

// Adds to path the first faulty copy of a key of its last node, a list entry. Sets its_key to the key and fault to the
// reason. Returns false when there is none.
bool step_to_copy(NodePath &path, const Node *&its_key, std::string &fault) {
    const auto keys = children(*path.back());
    for (const Node &container : keys) {
        for (const Node &leaf : children(container)) {
            const auto key = std::find_if(keys.begin(), keys.end(), [&](const Node &other) {
                return children(other).empty() && std::strcmp(tag_of(other), tag_of(leaf)) == 0;
            });
            if (key != keys.end() && !(fault = fault_of_copy(leaf, *key)).empty()) {
                path.insert(path.end(), {&container, &leaf});
                its_key = &*key;
                return true;
            }
        }
    }
    return false;
}

}  // namespace

Place find_place(qerrno status, RequestScope &scope, const Node &request, const Node &top) {
    const tvk_map_request_state &state = scope.state();
    const std::string name = state.error_node_tag != nullptr ? state.error_node_tag : "";
    if (const Node *failed = scope.ctx()->failed_node) {
        if (NodePath path = paths_of(request, {failed}).front(); !path.empty()) {
            return {std::move(path), name, true};
        }
    }
    NodePath path = end_of_error_path(request, state.error_xpath != nullptr ? state.error_xpath : "");
    if (path.empty()) {
        const auto found = find_without_error_path(status, request, top);
        return found ? Place{*found, name, true} : Place{{&top}, name, false};
    }
    const auto is_foreign = [&](const Node &child) {
        return name == tag_of(child) && std::strcmp(namespace_of(child), namespace_of(*path.back())) != 0;
    };
    const auto is_named = [&](const Node &child) { return name == tag_of(child); };
    bool found = false;
    const Node *key = nullptr;
    std::string fault;
    if (status == TVK_ERR_KEY_OPERATION) {
        found = step_down(path, is_delete);
    } else if (status == TVK_ERR_LIST_KEY) {
        found = step_down(path, is_empty_key);
    } else if (!name.empty()) {
        found = step_down(path, is_foreign) || step_down(path, is_named);
    }
    if (!found && status == TVK_ERR_NAMESPACE) {
        found = step_to_copy(path, key, fault);
    }
    return {std::move(path), name, found, key, fault};
}

}  // namespace tvk::framework
