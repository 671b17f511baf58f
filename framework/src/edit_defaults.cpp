// Turns the default operation of an edit into operations of its nodes.
#include "framework/edit_defaults.h"

#include <algorithm>

#include "framework/get_run.h"
#include "framework/heap.h"
#include "framework/request_errors.h"
#include "tvk_map_filter.h"

namespace tvk::framework {

namespace {

// Keeps the children of node that carry an operation, those around a node that does, and keys. walked is a copy of node
// in which keys are marked. Returns whether something below node carries an operation.
bool keep_what_acts(Node &node, const Node &walked) {
    bool acts = false;
    const Node *counterpart = walked.subtrees;
    keep_children(node, [&](Node &child) {
        const Node &its_copy = *counterpart++;
        const bool child_acts = has_operation(child) || keep_what_acts(child, its_copy);
        acts = acts || child_acts;
        return child_acts || has_key_mark(its_copy);
    });
    return acts;
}

// Keeps the nodes around those that carry an operation, and drops the latter.
void drop_what_acts(Node &node) {
    keep_children(node, [](Node &child) {
        if (has_operation(child)) {
            return false;
        }
        drop_what_acts(child);
        return true;
    });
}

// Tells whether node has the name of entry, and all leaves with values that entry has.
bool has_keys_of(const Node &node, const Node &entry) {
    const auto keys = children(entry);
    const auto leaves = children(node);
    return same_name(node, entry) && std::all_of(keys.begin(), keys.end(), [&](const Node &key) {
               const bool is_value = children(key).empty() && *value_of(key) != '\0';
               return !is_value || std::any_of(leaves.begin(), leaves.end(), [&](const Node &leaf) {
                   return same_name(leaf, key) && std::strcmp(value_of(leaf), value_of(key)) == 0;
               });
           });
}

// Finds the first list entry below node that found, the answer of a read to node, does not hold, and adds its path to
// path. Returns false when there is none. A container is always there.
bool find_missing(const Node &node, const Node &found, NodePath &path) {
    static const Node nothing{};
    for (const Node &child : children(node)) {
        path.push_back(&child);
        const auto there = children(found);
        const auto same =
            std::find_if(there.begin(), there.end(), [&](const Node &other) { return has_keys_of(other, child); });
        const auto keys = children(child);
        const bool is_entry = std::any_of(keys.begin(), keys.end(), has_key_mark);
        if ((is_entry && same == there.end()) || find_missing(child, same != there.end() ? *same : nothing, path)) {
            return true;
        }
        path.pop_back();
    }
    return false;
}

// Returns an error when the native data lacks a list entry around a node with an operation. The mappings read the
// native data to find out.
std::vector<RpcError> refuse_missing(const Mappings &mappings, Framework &framework, RequestTrees &trees) {
    RequestTrees read;
    copy_tree(trees.request.root(), read.asked.root());
    drop_what_acts(read.asked.root());
    TreeHolder around;
    copy_tree(read.asked.root(), around.root());
    std::vector<RpcError> errors;
    read.native.swap(trees.native);
    {
        GetParameters parameters;
        parameters.type = TVK_REQUEST_GET_CONFIG;
        Session session(framework, read.native.root());
        errors = make_get(mappings, framework, session, parameters, tvk_map_dfs_filter_mark, read);
    }
    read.native.swap(trees.native);
    NodePath path;
    if (errors.empty() && find_missing(around.root(), read.response.root(), path)) {
        errors = {error_at(path, "data-missing", "it leads to what is to be done, but is not there")};
    }
    return errors;
}

// Marks in node the keys that the walk has marked in walked, its copy.
void mark_keys(Node &node, const Node &walked) {
    if (has_key_mark(walked)) {
        mark_key(node);
    }
    const Node *counterpart = walked.subtrees;
    for (Node &child : children(node)) {
        mark_keys(child, *counterpart++);
    }
}

}  // namespace

void replace_all(TreeHolder &request, const TopNames &others) {
    for (Node &top : request.tops()) {
        if (!has_operation(top)) {
            set_operation(top, TVK_OPERATION_REPLACE);
        }
    }
    TreeHolder all;
    Node &root = all.root();
    root.subtrees = zeroed_array<Node>(request.tops().size() + others.size() + 1);
    root.presence = TVK_HAS_SUBTREES;
    for (const auto &[tag, ns] : others) {
        const auto tops = request.tops();
        const bool is_given = std::any_of(tops.begin(), tops.end(), [&, tag = tag, ns = ns](const Node &top) {
            return std::strcmp(tag_of(top), tag) == 0 && std::strcmp(namespace_of(top), ns) == 0;
        });
        if (!is_given) {
            Node &top = root.subtrees[root.subtree_count++];
            top.tag = copy_text(tag);
            top.ns = copy_text(ns);
            top.presence = TVK_HAS_TAG | TVK_HAS_NS;
            set_operation(top, TVK_OPERATION_REMOVE);
        }
    }
    for (Node &top : request.tops()) {
        root.subtrees[root.subtree_count++] = std::exchange(top, Node{});
    }
    std::swap(request.root(), root);
}

std::vector<RpcError> drop_what_does_nothing(const Mappings &mappings, Framework &framework, RequestTrees &trees) {
    RequestTrees trial;
    copy_tree(trees.request.root(), trial.request.root());
    std::vector<RpcError> errors;
    {
        RequestScope scope(framework, TVK_REQUEST_EDIT_CONFIG);
        errors = walk(mappings, scope, trial.request, trial.native, UnmappedNodes::kRefused);
    }
    if (!errors.empty()) {
        return errors;
    }
    mark_keys(trees.request.root(), trial.request.root());
    keep_what_acts(trees.request.root(), trial.request.root());
    // Without native data nothing is known of what is there.
    return children(trees.native.root()).empty() ? errors : refuse_missing(mappings, framework, trees);
}

}  // namespace tvk::framework
