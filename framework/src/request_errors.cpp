#include "framework/request_errors.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "tvk_map_lists.h"

namespace tvk::framework {

namespace {

constexpr size_t kMaxUnmapped = 100;

// Not in brackets or double quotes: the message is read in its XML, where these are escaped.
std::string quoted(const std::string &text) {
    return "'" + text + "'";
}

std::string element_text(const std::string &tag, const std::string &ns) {
    return quoted(tag) + (ns.empty() ? " without a namespace" : " (namespace " + ns + ")");
}

bool is_seen_by_walk(const Node &node) {
    return (node.schema_info.flags & TVK_SCHEMA_INFO_HAS_NODE_TYPE) != 0;
}

// ---- The place ----

// The element of node in the library's error path, written by whoever writes the path itself.
std::string path_element(const Node &node) {
    char buffer[TVK_MAP_MAX_PATH] = "";
    return tvk_oc_error_path_list_append(buffer, &node) == TVK_OK ? buffer : "";
}

// The node below root where the library's error path ends.
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

// The node that the walk had not entered yet when it stopped: a delete with content, an entry without anything.
std::optional<NodePath> first_not_entered(const Node &root, const Node &top) {
    return find_path(root, [&](const NodePath &path) {
        const Node &node = *path.back();
        const bool is_leaf = children(node).empty() && has(node, TVK_HAS_DATA);
        return path.front() == &top && !is_leaf && !is_seen_by_walk(node);
    });
}

// A key leaf without a value. The library records no path to what is below it.
bool is_empty_key(const Node &node) {
    return has(node, TVK_HAS_IS_KEY) && !has(node, TVK_HAS_DATA);
}

// What the place is where the library has recorded no error path.
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

// The child at the end of path for which is_meant is true is added to the path.
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

// What is wrong with the copy of a key, "" when nothing is.
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

// The faulty copy of a key inside the entry at the end of path.
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

struct Place {
    NodePath path;
    std::string name;           // what the library says is at fault there: a tag or a value
    bool is_certain;            // not only the container that holds it
    const Node *key = nullptr;  // that the walk has not marked yet
    std::string fault{};        // what is wrong there, if that is known already
};

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

// ---- What is said ----

bool is_foreign_here(const NodePath &path) {
    return path.size() < 2 ||
           std::strcmp(namespace_of(*path[path.size() - 1]), namespace_of(*path[path.size() - 2])) != 0;
}

std::string namespace_reason(const Place &place, RpcError &error) {
    const Node &node = *place.path.back();
    if (place.is_certain && is_foreign_here(place.path)) {
        error.tag = "unknown-namespace";
        error.bad_namespace = namespace_of(node);
        return "the element " + element_text(tag_of(node), namespace_of(node)) + " is not supported here";
    }
    if (!place.fault.empty()) {
        return place.fault;
    }
    return place.name.empty() ? "a value is not of the namespace that the model asks for"
                              : "the value " + quoted(place.name) + " is not of the namespace that the model asks for";
}

std::string key_reason(const Place &place) {
    return place.is_certain && is_empty_key(*place.path.back())
               ? "the key of the list entry is empty"
               : "the list entry does not carry all of its keys, each once and with a value";
}

std::string missing_reason(const Place &place) {
    const Node &node = *place.path.back();
    const bool is_bare = place.is_certain && children(node).empty() && !has(node, TVK_HAS_DATA);
    return is_bare ? "a list entry has no keys at all" : "something that the request refers to is not there";
}

std::string invalid_reason(const Place &place) {
    const Node &node = *place.path.back();
    return place.is_certain && is_delete(node) && !children(node).empty()
               ? "a delete must not carry content"
               : "a value or an operation cannot be used here";
}

std::string unknown_reason(qerrno status, const MappingModule &module) {
    char number[16];
    std::snprintf(number, sizeof number, "0x%08x", status);
    return "a handler of the mapping " + quoted(module.name()) + " answered with the status " + number +
           ", which says nothing that a client could be told";
}

const char *error_tag_of(qerrno status) {
    switch (status) {
        case TVK_ERR_LIST_KEY:
            return "missing-element";
        case TVK_ERR_KEY_OPERATION:
        case TVK_ERR_UNSUPPORTED:
            return "operation-not-supported";
        case TVK_ERR_NAMESPACE:
        case TVK_ERR_INVALID:
            return "invalid-value";
        case TVK_ERR_NOT_FOUND:
        case TVK_ERR_NOT_PRESENT:
            return "data-missing";
        case TVK_ERR_PRESENT:
            return "data-exists";
        case TVK_ERR_NO_MEMORY:
            return "resource-denied";
        default:
            return "operation-failed";
    }
}

// Why a request failed, where the mapping does not say it. Changes the tag of error where the place tells more.
std::string reason_of(qerrno status, const MappingModule &module, const Place &place, RpcError &error) {
    switch (status) {
        case TVK_ERR_NAMESPACE:
            return namespace_reason(place, error);
        case TVK_ERR_LIST_KEY:
            return key_reason(place);
        case TVK_ERR_KEY_OPERATION:
            return "a key leaf cannot be deleted or removed; delete its list entry instead";
        case TVK_ERR_UNSUPPORTED:
            return "this platform does not support what the request asks for";
        case TVK_ERR_INVALID:
            return invalid_reason(place);
        case TVK_ERR_NOT_FOUND:
            return missing_reason(place);
        case TVK_ERR_NOT_PRESENT:
            return "something that the request refers to is not there";
        case TVK_ERR_PRESENT:
            return "what the request adds is there already";
        case TVK_ERR_NO_MEMORY:
            return "memory ran out, or a path or table reached its limit";
        default:
            return unknown_reason(status, module);
    }
}

RpcError unmapped_top(const Mappings &mappings, const Node &top) {
    std::string known;
    std::optional<std::string> other_ns;
    for (const MappingModule &module : mappings.modules()) {
        for (const tvk_map_module_container &container : module.containers()) {
            if (std::strcmp(tag_of(top), container.tag) == 0) {
                other_ns = container.ns;
            }
            known += (known.empty() ? "" : ", ") + element_text(container.tag, container.ns);
        }
    }
    RpcError error = error_at({&top}, other_ns ? "unknown-namespace" : "unknown-element",
                              "no mapping handles " + element_text(tag_of(top), namespace_of(top)) +
                                  (known.empty() ? "; there is none at all" : "; what is mapped is " + known));
    if (other_ns) {
        error.bad_namespace = namespace_of(top);
    }
    return error;
}

RpcError unmapped_node(const NodePath &path, const std::string &reason) {
    if (!reason.empty()) {
        return error_at(path, "operation-not-supported", reason);
    }
    RpcError error = error_at(path, "unknown-element", "the mapping has nothing for this element");
    if (path.size() > 1 && is_foreign_here(path)) {
        error.message += ", of the namespace " + std::string(namespace_of(*path.back()));
    }
    return error;
}

}  // namespace

RpcError error_at(const NodePath &path, const char *tag, const std::string &reason, const IsKey &is_key) {
    RpcError error;
    error.tag = tag;
    error.path = xpath_of(path, is_key);
    error.message = readable_path(path, is_key) + ": " + reason;
    error.bad_element = tag_of(*path.back());
    return error;
}

std::string list_of_failure(RequestScope &scope, const Node &request, const Node &top) {
    NodePath path = find_place(TVK_ERR_LIST_KEY, scope, request, top).path;
    if (path.size() > 1 && children(*path.back()).empty()) {
        path.pop_back();  // one of its keys
    }
    std::string tags;
    for (const Node *node : path) {
        tags += (tags.empty() ? "" : "/") + std::string(tag_of(*node));
    }
    return tags;
}

RpcError describe_failure(qerrno status, const MappingModule &module, RequestScope &scope, const Node &request,
                          const Node &top) {
    const Place place = find_place(status, scope, request, top);
    RpcError detail;
    detail.tag = error_tag_of(status);
    std::string reason = reason_of(status, module, place, detail);
    if (scope.ctx()->failure_reason != nullptr) {
        reason = scope.ctx()->failure_reason;
    }
    RpcError error = error_at(place.path, detail.tag.c_str(), reason, [&](const NodePath &entry, const Node &child) {
        return &child == place.key || is_marked_key(entry, child);
    });
    error.bad_namespace = detail.bad_namespace;
    if (detail.tag == "missing-element" && scope.ctx()->failed_node != nullptr && !place.name.empty()) {
        error.bad_element = place.name;  // the mapping has named the key that is missing
    }
    return error;
}

std::vector<RpcError> describe_unmapped(const Mappings &mappings, const Node &request, const Unmapped &unmapped,
                                        const std::vector<const Node *> &tops) {
    std::vector<RpcError> errors;
    for (const Node *top : tops) {
        if (errors.size() < kMaxUnmapped) {
            errors.push_back(unmapped_top(mappings, *top));
        }
    }
    size_t known = tops.size();
    find_path(request, [&](const NodePath &path) {
        if (const auto noted = unmapped.nodes.find(path.back()); noted != unmapped.nodes.end()) {
            ++known;
            if (errors.size() < kMaxUnmapped) {
                errors.push_back(unmapped_node(path, noted->second));
            }
        }
        return false;
    });
    if (errors.empty()) {
        // The mapping names no record of the request, against what it is asked for.
        errors.push_back({"unknown-element", {}, "the mapping has nothing for an element of the request", "", "", {}});
    }
    if (known > errors.size() || unmapped.lost_some) {
        errors.back().message += "; " + std::to_string(known - errors.size()) + " more are not listed";
    }
    return errors;
}

}  // namespace tvk::framework
