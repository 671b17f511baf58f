#include "edit_defaults.h"

#include <algorithm>

#include "heap.h"

namespace tvk::tool {

namespace {

bool has_operation(const Node &node) {
    return (node.presence & TVK_HAS_OPERATION) != 0;
}

void set_operation(Node &node, uint32_t operation) {
    node.operation = operation;
    set_present(node, TVK_HAS_OPERATION);
}

void release(Node &node) {
    qidl_tvk_datatree_free_ext(&node, tvk_gpb_free, nullptr, 0);
    node = Node{};
}

bool is_key(const Node &walked) {
    return (walked.presence & TVK_HAS_IS_KEY) != 0 && walked.is_key != 0;
}

// walked is a copy of node in which keys are marked. True when something below node has an operation.
bool keep_what_acts(Node &node, const Node &walked) {
    bool acts = false;
    int32_t kept = 0;
    for (int32_t i = 0; i < node.subtree_count; ++i) {
        Node &child = node.subtrees[i];
        const bool child_acts = has_operation(child) || keep_what_acts(child, walked.subtrees[i]);
        acts = acts || child_acts;
        if (child_acts || is_key(walked.subtrees[i])) {
            std::swap(node.subtrees[kept++], child);
        }
    }
    for (int32_t i = kept; i < node.subtree_count; ++i) {
        release(node.subtrees[i]);
    }
    node.subtree_count = kept;
    return acts;
}

}  // namespace

void give_operation_to_tops(TreeHolder &request, uint32_t operation) {
    for (Node &top : request.tops()) {
        if (!has_operation(top)) {
            set_operation(top, operation);
        }
    }
}

void replace_all(TreeHolder &request, const TopNames &others) {
    give_operation_to_tops(request, TVK_OPERATION_REPLACE);
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
    if (errors.empty()) {
        keep_what_acts(trees.request.root(), trial.request.root());
    }
    return errors;
}

}  // namespace tvk::tool
