#include "filter_oracle.h"

#include <algorithm>

namespace tvk::fuzz {

namespace {

constexpr std::uint32_t kList = 4, kContent = 6, kKeepNode = 2, kKeepAll = 3;

long count_keys(const Model &entry, bool with_value) {
    return std::count_if(entry.children.begin(), entry.children.end(),
                         [&](const Model &child) { return child.key && (!with_value || child.data); });
}

bool only_content(const Model &node) {
    return std::all_of(node.children.begin(), node.children.end(),
                       [](const Model &child) { return child.type == kContent; });
}

bool kept(const Model &node) {
    return node.verdict == kKeepNode || node.verdict == kKeepAll;
}

// Every key with a value is looked up by its number among the keys, not by its place.
bool same_keys(const Model &entry, const Model &target) {
    std::size_t number = 0;
    for (const Model &key : entry.children) {
        if (!key.key) {
            continue;
        }
        const Model &compared = entry.children[number++];
        if (!key.data) {
            continue;
        }
        const auto found = std::find_if(target.children.begin(), target.children.end(), [&](const Model &child) {
            return !child.tag || (child.tag == compared.tag && (!compared.data || child.data == compared.data));
        });
        if (found == target.children.end() || !found->tag) {
            return false;
        }
    }
    return true;
}

}  // namespace

test::Node Model::describe() const {
    test::Node description =
        test::node(tag).with(has_children ? TVK_HAS_SUBTREES : 0).without(has_children ? 0 : TVK_HAS_SUBTREES);
    std::vector<test::Node> described;
    for (const Model &child : children) {
        described.push_back(child.describe());
    }
    description = data ? description.data(*data) : description;
    description = key ? description.key() : description;
    description = type ? description.type(*type) : description;
    description = verdict ? description.kind(*verdict) : description;
    description = claimed != 0 ? description.claims(claimed) : description;
    return description.children(described);
}

bool oracle_selects(const Model &filter, std::vector<std::string> path, int accept_last, bool content) {
    const auto total = static_cast<long>(filter.children.size());
    if (total == 0 || (count_keys(filter, false) == total && filter.children[0].data)) {
        return true;
    }
    if (content && only_content(filter)) {
        return true;
    }
    if (path.empty()) {
        return accept_last == 1;
    }
    const std::string next = path.front();
    path.erase(path.begin());
    for (const Model &child : filter.children) {
        if (!child.tag) {
            return false;
        }
        if (*child.tag == next && oracle_selects(child, path, accept_last, content)) {
            return true;
        }
    }
    return false;
}

void oracle_mark(const Model &filter, Model &response, bool content) {
    if (!filter.has_children || (content && only_content(filter))) {
        response.verdict = kKeepAll;
        return;
    }
    std::vector<std::pair<const Model *, Model *>> below;
    for (const Model &child : filter.children) {
        if (!child.tag) {
            break;
        }
        const long valued = child.type == kList ? count_keys(child, true) : 0;
        for (Model &candidate : response.children) {
            if (candidate.tag != child.tag || (valued > 0 && !same_keys(child, candidate))) {
                continue;
            }
            response.verdict = kKeepNode;
            below.emplace_back(&child, &candidate);
            const long keys = count_keys(child, false);
            if (valued > 0 && (keys == 1 || keys == valued)) {
                break;
            }
            const bool entry_by_keys = filter.type == kList && count_keys(filter, true) > 0 &&
                                       count_keys(filter, false) == static_cast<long>(filter.children.size());
            if (valued == 0 && entry_by_keys) {
                response.verdict = kKeepAll;
                break;
            }
        }
    }
    for (auto pair = below.rbegin(); pair != below.rend(); ++pair) {
        oracle_mark(*pair->first, *pair->second, content);
    }
}

void oracle_sweep(Model &tree) {
    if (tree.verdict == kKeepAll) {
        return;
    }
    if (!std::all_of(tree.children.begin(), tree.children.end(), kept)) {
        std::erase_if(tree.children, [](const Model &child) { return !kept(child) || !child.tag; });
    }
    for (Model &child : tree.children) {
        if (child.verdict == kKeepNode) {
            oracle_sweep(child);
        }
    }
}

}  // namespace tvk::fuzz
