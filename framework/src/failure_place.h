// Finds where in a request a failed walk has stopped.
#pragma once

#include <string>

#include "framework/node_path.h"
#include "framework/request_scope.h"

namespace tvk::framework {

struct Place {
    NodePath path;              // never empty
    std::string name;           // the tag or value that the library says is at fault there, or ""
    bool is_certain;            // the path leads to the node at fault, not only to what holds it
    const Node *key = nullptr;  // a key leaf that the walk has not marked yet
    std::string fault{};        // the reason, if the place tells it
};

// Returns the place that the mapping has named, or else what the library's error path and the marks of the walk tell.
// status is the answer of the handler of top, a top container of request; scope is the request as it was left.
Place find_place(qerrno status, RequestScope &scope, const Node &request, const Node &top);

// Tells whether a node is a key leaf without a value. The library records no path to what is below it.
inline bool is_empty_key(const Node &node) {
    return has(node, TVK_HAS_IS_KEY) && !has(node, TVK_HAS_DATA);
}

}  // namespace tvk::framework
