// Schema filter, mark phase and sweep on random small trees, against an oracle that follows their rules slowly and by
// recursion on a plain copy of the trees.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "context.h"
#include "tree.h"
#include "tvk_map_filter.h"

using namespace tvk::test;

namespace {

struct Model {
    Text tag, data;
    bool key = false;
    std::optional<std::uint32_t> type, verdict;
    bool has_children = false;  // also with no child
    std::vector<Model> children;

    Node describe() const;
};

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

Node Model::describe() const {
    Node description = node(tag).with(has_children ? TVK_HAS_SUBTREES : 0);
    std::vector<Node> described;
    for (const Model &child : children) {
        described.push_back(child.describe());
    }
    description = data ? description.data(*data) : description;
    description = key ? description.key() : description;
    description = type ? description.type(*type) : description;
    description = verdict ? description.kind(*verdict) : description;
    return description.children(described);
}

// content: the request has TVK_WALK_CONTENT_MATCH_IN_REQUEST.
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

class Forest {
public:
    explicit Forest(std::uint32_t seed) : engine_(seed) {}

    bool one_in(std::uint32_t n) { return below(n) == 0; }
    std::string name() { return {"abc"[below(3)]}; }
    std::vector<std::string> path() {
        std::vector<std::string> components(below(4));
        for (std::string &component : components) {
            component = name();
        }
        return components;
    }
    Model tree(std::uint32_t depth, bool is_filter) {
        Model model;
        model.tag = one_in(25) ? Text{} : name();
        if (depth > 0 && !one_in(4)) {
            model.children.resize(below(4));
            for (Model &child : model.children) {
                child = tree(depth - 1, is_filter);
            }
        }
        if (!is_filter && !model.children.empty() && one_in(2)) {
            model.children.push_back(Model(model.children.front()));  // entries that share their keys
        }
        model.has_children = !model.children.empty() || one_in(8);
        if (!model.has_children && !one_in(3)) {
            model.data = std::string(1, "xy"[below(2)]);
        }
        if (is_filter) {
            model.key = !model.has_children && one_in(2);
            model.type = model.has_children ? 3 + below(2) : one_in(3) ? 6 : below(3);
        }
        return model;
    }
    void judge(Model &model) {
        model.verdict = one_in(4) ? std::optional<std::uint32_t>{} : below(5);
        for (Model &child : model.children) {
            judge(child);
        }
    }

private:
    std::uint32_t below(std::uint32_t n) { return static_cast<std::uint32_t>(engine_() % n); }

    std::mt19937 engine_;
};

class Oracle : public MappingTest {
protected:
    void set_content(bool content) { state->walk_flags = content ? TVK_WALK_CONTENT_MATCH_IN_REQUEST : 0; }
};

constexpr std::uint32_t kTrees = 4000;

TEST_F(Oracle, SchemaFilter) {
    std::map<bool, int> answers;
    for (std::uint32_t seed = 0; seed < kTrees; ++seed) {
        Forest forest(seed);
        Model model = forest.tree(3, true);
        model.tag = "top";
        const Tree filter = model.describe();
        const std::vector<std::string> components = forest.path();
        std::string path;
        for (const std::string &component : components) {
            path += "/" + component;
        }
        const bool content = forest.one_in(2);
        const int accept_last = forest.one_in(2) ? 1 : 0;
        set_content(content);
        const bool expected = oracle_selects(model, components, accept_last, content);
        ASSERT_EQ(expected ? 1u : 0u, tvk_map_dfs_filter_schema(ctx, filter.get(), path.c_str(), accept_last))
            << "seed " << seed << " path " << path << " in\n"
            << show(filter);
        ++answers[expected];
    }
    EXPECT_GT(answers[true], 500);
    EXPECT_GT(answers[false], 500);
}

TEST_F(Oracle, MarkAndSweep) {
    int pruned_in_part = 0;
    for (std::uint32_t seed = 0; seed < kTrees; ++seed) {
        Forest forest(seed);
        const Model filter_model = forest.tree(3, true);
        Model model = forest.tree(3, false);
        const bool content = forest.one_in(2);
        const bool judged_anyhow = forest.one_in(3);
        const Tree filter = filter_model.describe();
        set_content(content);
        if (judged_anyhow) {
            forest.judge(model);
        }
        const Tree response = model.describe();
        const std::string given = show(response);
        if (!judged_anyhow) {
            tvk_map_dfs_filter_mark(ctx, filter.get(), response.get());
            oracle_mark(filter_model, model, content);
            ASSERT_EQ(show(model.describe()), show(response)) << "seed " << seed << " filter\n"
                                                              << show(filter) << "response\n"
                                                              << given;
        }
        tvk_map_dfs_filter_sweep(ctx, response.get());
        oracle_sweep(model);
        ASSERT_EQ(show(model.describe()), show(response)) << "seed " << seed << " swept\n" << given;
        pruned_in_part += !model.children.empty() && show(response).size() < given.size() ? 1 : 0;
    }
    EXPECT_GT(pruned_in_part, 300);
}

}  // namespace
