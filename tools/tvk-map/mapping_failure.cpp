#include "mapping_failure.h"

#include <cstdio>
#include <cstring>

#include "tvk_map_lists.h"

namespace tvk::tool {

namespace {

constexpr char kPrefix[] = "ns1:";
// What the library names when the keys of a list entry are incomplete, not one of them empty.
constexpr char kAnyKey[] = "keytag";

std::string as_string(const char *text) {
    return text != nullptr ? text : "";
}

// Not in brackets or double quotes: the message is read in its XML, where these are escaped.
std::string quoted(const std::string &text) {
    return "'" + text + "'";
}

std::string element_text(const std::string &tag, const std::string &ns) {
    return quoted(tag) + (ns.empty() ? " without a namespace" : " (namespace " + ns + ")");
}

// The error path as a person writes it: /interfaces/interface[name = 'eth0']
std::string readable_path(const std::string &path) {
    std::string text = "/" + path;
    for (size_t at = 0; (at = text.find(std::string("/") + kPrefix, at)) != std::string::npos; ++at) {
        text.erase(at + 1, sizeof kPrefix - 1);
    }
    if (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    return text;
}

std::string place_of(const RpcError &error, const Node &top) {
    return error.path.empty() ? std::string("/") + tag_of(top) : readable_path(error.path);
}

// The element of node in an error path, written by whoever writes the path itself.
std::string path_element(const Node &node) {
    char buffer[TVK_MAP_MAX_PATH] = "";
    return tvk_oc_error_path_list_append(buffer, &node) == TVK_OK ? buffer : "";
}

/*
 * The namespace of the element called tag right below path, if it is not the namespace of its parent: an element
 * that the model does not know there. Null when there is none. An empty path stands for any place below node.
 * Descends along path, or, without one, as deep as a request can be.
 */
const char *foreign_namespace(const Node &node, const std::string &above, const std::string &path,
                              const std::string &tag) {
    const std::string here = above + path_element(node);
    if (!path.empty() && path.compare(0, here.size(), here) != 0) {
        return nullptr;
    }
    for (const Node &child : children_of(node)) {
        const bool found = (path.empty() || here == path) && tag == tag_of(child) &&
                           std::strcmp(namespace_of(child), namespace_of(node)) != 0;
        if (const char *ns = found ? namespace_of(child) : foreign_namespace(child, here, path, tag)) {
            return ns;
        }
    }
    return nullptr;
}

std::string describe_namespace(RpcError &error, const Node &top) {
    if (error.bad_element.empty()) {
        error.tag = "invalid-value";
        return "a value is not of the namespace that the model asks for";
    }
    if (const char *ns = foreign_namespace(top, "", error.path, error.bad_element)) {
        error.tag = "unknown-namespace";
        error.bad_namespace = ns;
        return "the element " + element_text(error.bad_element, ns) + " is not supported here";
    }
    error.tag = "invalid-value";
    return "the value " + quoted(error.bad_element) + " differs from the list key that it must repeat";
}

std::string describe_keys(RpcError &error) {
    error.tag = "missing-element";
    if (error.bad_element.empty() || error.bad_element == kAnyKey) {
        return "a list entry does not carry all of its keys, each with a value";
    }
    return "the key " + quoted(error.bad_element) + " of a list entry is empty";
}

std::string describe_other(qerrno status, RpcError &error) {
    char number[16];
    std::snprintf(number, sizeof number, "0x%08x", status);
    error.tag = "operation-failed";
    return std::string("the mapping failed with status ") + number;
}

// Sets the tag of error, and more where the tag asks for it. Returns what happened, without the place.
std::string describe_status(qerrno status, RpcError &error, const Node &top) {
    switch (status) {
        case TVK_ERR_NAMESPACE:
            return describe_namespace(error, top);
        case TVK_ERR_LIST_KEY:
            return describe_keys(error);
        case TVK_ERR_KEY_OPERATION:
            error.tag = "operation-not-supported";
            return "a key leaf cannot be deleted or removed; delete its list entry instead";
        case TVK_ERR_UNSUPPORTED:
            error.tag = "operation-not-supported";
            return "this platform does not support " +
                   (error.bad_element.empty() ? "what the request asks for" : quoted(error.bad_element));
        case TVK_ERR_INVALID:
            error.tag = "invalid-value";
            return "a value or an operation cannot be used (a delete, say, must not carry content)";
        case TVK_ERR_NOT_FOUND:
            error.tag = "data-missing";
            return "something that the request refers to is not there, or a list entry has no keys at all";
        case TVK_ERR_NO_MEMORY:
            error.tag = "resource-denied";
            return "memory ran out, or a path or table reached its limit";
        default:
            return describe_other(status, error);
    }
}

}  // namespace

RpcError describe_failure(qerrno status, const tvk_map_request_state &state, const Node &top) {
    RpcError error;
    error.path = as_string(state.error_xpath);
    error.path_ns = as_string(state.error_xpath_ns);
    error.bad_element = as_string(state.error_node_tag);
    error.message = place_of(error, top) + ": " + describe_status(status, error, top);
    if (error.tag == "missing-element" && error.bad_element.empty()) {
        error.bad_element = tag_of(top);  // a missing-element must name one
    }
    return error;
}

RpcError describe_unmapped(const MappingModule &module, const Node &top) {
    RpcError error;
    error.tag = "unknown-element";
    error.bad_element = tag_of(top);
    std::string known;
    for (const tvk_map_module_container &container : module.containers()) {
        if (error.bad_element == container.tag) {
            error.tag = "unknown-namespace";
            error.bad_namespace = namespace_of(top);
        }
        known += (known.empty() ? "" : ", ") + element_text(container.tag, container.ns);
    }
    error.message = "The mapping " + quoted(module.name()) + " does not map " +
                    element_text(error.bad_element, namespace_of(top)) + "; it maps " +
                    (known.empty() ? "nothing" : known) + ".";
    return error;
}

}  // namespace tvk::tool
