// Words the errors of a request.
#include "framework/request_errors.h"

#include <cstdio>
#include <cstring>

#include "failure_place.h"
#include "framework/diagnostics.h"

namespace tvk::framework {

namespace {

constexpr size_t kMaxUnmapped = 100;

std::string element_text(const std::string &tag, const std::string &ns) {
    return quoted(tag) + (ns.empty() ? " without a namespace" : " (namespace " + ns + ")");
}

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

// Returns why a request failed, for when the mapping does not say it. Changes the tag of error when the place tells
// more.
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
        path.pop_back();  // the path leads to a key of the list
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
        // The mapping has named a node that is none of the request's.
        errors.push_back({"unknown-element", {}, "the mapping has nothing for an element of the request", "", "", {}});
    }
    if (known > errors.size() || unmapped.lost_some) {
        errors.back().message += "; " + std::to_string(known - errors.size()) + " more are not listed";
    }
    return errors;
}

}  // namespace tvk::framework
