// Resolves identities, and refuses what mappings do not take.
#include "framework/request_values.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <sstream>
#include <string_view>

#include "framework/heap.h"
#include "framework/request_errors.h"

namespace tvk::framework {

namespace {

// A tag in the paths of identities, with the tags below it.
struct IdentityStep {
    std::string_view tag;
    bool is_identity = false;
    std::deque<IdentityStep> below;

    IdentityStep *find(std::string_view name) {
        const auto step =
            std::find_if(below.begin(), below.end(), [&](const IdentityStep &other) { return other.tag == name; });
        return step != below.end() ? &*step : nullptr;
    }
    void add(std::string_view path) {
        IdentityStep *step = this;
        while (!path.empty()) {
            const size_t end = std::min(path.find('/'), path.size());
            const std::string_view name = path.substr(0, end);
            IdentityStep *next = step->find(name);
            step = next != nullptr ? next : &step->below.emplace_back(IdentityStep{name, false, {}});
            path.remove_prefix(std::min(end + 1, path.size()));
        }
        step->is_identity = true;
    }
};

void resolve_value(Node &leaf) {
    const char *colon = std::strchr(value_of(leaf), ':');
    if (colon == nullptr || !has(leaf, TVK_HAS_DATA_NS)) {
        return;
    }
    char *name = copy_text(colon + 1);
    kel_named_free(std::exchange(leaf.data, name));
}

void resolve_below(Node &node, IdentityStep &step) {
    if (step.is_identity) {
        resolve_value(node);
    }
    if (step.below.empty() || children(node).empty()) {
        return;
    }
    for (Node &child : children(node)) {
        if (IdentityStep *next = step.find(tag_of(child))) {
            resolve_below(child, *next);
        }
    }
}

}  // namespace

void resolve_identities(const Mappings &mappings, TreeHolder &request) {
    IdentityStep first;
    for (const MappingModule &module : mappings.modules()) {
        const char *const *paths = module.table().identities;
        for (; paths != nullptr && *paths != nullptr; ++paths) {
            first.add(*paths);
        }
    }
    for (Node &top : request.tops()) {
        if (IdentityStep *step = first.find(tag_of(top))) {
            resolve_below(top, *step);
        }
    }
}

std::vector<RpcError> refuse_inserts(const Mappings &mappings, TreeHolder &request) {
    std::vector<RpcError> errors;
    find_path(request.root(), [&](const NodePath &path) {
        const Node &node = *path.back();
        if (!carries_insert(node)) {
            return false;
        }
        const auto mapped = mappings.find(tag_of(*path.front()), namespace_of(*path.front()));
        if (mapped && !mapped->module->takes_insert()) {
            RpcError error = error_at(path, "bad-attribute",
                                      std::string("the mapping '") + mapped->module->name() +
                                          "' does not look at the place of entries, so 'insert' cannot be obeyed");
            error.bad_attribute = "insert";
            errors.push_back(error);
        }
        return !errors.empty();
    });
    return errors;
}

std::vector<RpcError> refuse_operations(const Node &request) {
    std::vector<RpcError> errors;
    find_path(request, [&](const NodePath &path) {
        if (has_operation(*path.back())) {
            errors.push_back(
                error_at(path, "bad-attribute", "a <copy-config> holds a configuration, without operations"));
            errors.back().bad_attribute = "operation";
        }
        return !errors.empty();
    });
    return errors;
}

std::vector<RpcError> refuse_texts(const Node &request) {
    std::vector<RpcError> errors;
    find_path(request, [&](const NodePath &path) {
        const Node &node = *path.back();
        const bool has_type = (node.schema_info.flags & TVK_SCHEMA_INFO_HAS_NODE_TYPE) != 0;
        const bool is_inner = has_type && (node.schema_info.node_type == TVK_NODE_TYPE_CONTAINER ||
                                           node.schema_info.node_type == TVK_NODE_TYPE_LIST);
        if (is_inner && *value_of(node) != '\0') {
            errors.push_back(error_at(path, "invalid-value",
                                      std::string("'") + value_of(node) + "' stands where only elements may stand"));
        }
        return !errors.empty();
    });
    return errors;
}

}  // namespace tvk::framework
