// Whole requests carried out with libyang, on the bytes of the same documents. The native data is a document of the
// client's model here. The code does not look at the operations of a request: each edit is written for its own.
#include <cstdlib>
#include <memory>

#include "harness.h"
#include "libyang_trees.h"
#include "requests.h"

namespace tvk::bench {

namespace {

struct Run {
    Tree tree;
    std::unique_ptr<char, decltype(&std::free)> text{nullptr, &std::free};
};

std::size_t count_tree(const Run &run) {
    return count_nodes(run.tree);
}

Tree parse(const std::string &document) {
    lyd_node *tree = nullptr;
    check(lyd_parse_data_mem(libyang_context(), document.c_str(), LYD_XML, LYD_PARSE_ONLY, 0, &tree));
    return Tree(tree);
}

void print(Run &run) {
    char *text = nullptr;
    check(lyd_print_mem(&text, run.tree.get(), LYD_XML, 0));
    run.text.reset(text);
}

// ---- Edits ----

// The node around the entries.
lyd_node *around_entries(const Tree &tree, Model model) {
    lyd_node *node = tree.get();
    if (model == Model::kBgp) {
        check(lyd_find_path(node,
                            "/bench-bgp:network-instances/network-instance[name='default']/protocols/"
                            "protocol[identifier='oc-pol-types:BGP'][name='main']/bgp/neighbors",
                            0, &node));
    }
    return node;
}

void release_entry(lyd_node *around, lyd_node *like) {
    lyd_node *entry = nullptr;
    check(lyd_find_sibling_first(lyd_child(around), like, &entry));
    lyd_free_tree(entry);
}

// Moves the entries of request into around, or with kDelete takes the entries of the same keys out of it.
void edit_entries(lyd_node *around, lyd_node *request, Edit edit) {
    lyd_node *next = nullptr;
    for (lyd_node *entry = lyd_child(request); entry != nullptr; entry = next) {
        next = entry->next;
        if (edit != Edit::kReplaceContainer) {
            release_entry(around, entry);
        }
        if (edit != Edit::kDelete) {
            lyd_unlink_tree(entry);
            check(lyd_insert_child(around, entry));
        }
    }
}

void apply(Tree &tree, Tree &request, Model model, Edit edit) {
    if (edit == Edit::kMerge) {
        lyd_node *merged = tree.release();
        check(lyd_merge_siblings(&merged, request.release(), LYD_MERGE_DESTRUCT));
        tree.reset(merged);
        return;
    }
    lyd_node *around = around_entries(tree, model);
    if (edit == Edit::kReplaceContainer) {
        lyd_free_siblings(lyd_child(around));
    }
    edit_entries(around, around_entries(request, model), edit);
}

void measure_edit(benchmark::State &state, Model model, Edit edit, std::size_t n) {
    const std::string &document = edit_request(model, edit, n);
    const std::string *data = edit != Edit::kMerge ? &edit_request(model, Edit::kMerge, n) : nullptr;
    libyang_context();
    measure(
        state, nodes_selected(model, Get::kAll, edit == Edit::kDelete ? 0 : n), [] { return Run(); },
        [&](Run &run) {
            Tree request = parse(document);
            if (data != nullptr) {
                run.tree = parse(*data);
            }
            apply(run.tree, request, model, edit);
            print(run);
        },
        count_tree);
}

// ---- Reads ----

void measure_get(benchmark::State &state, Model model, Get get, std::size_t n) {
    const std::string &data = edit_request(model, Edit::kMerge, n);
    const std::string xpath = get_xpath(model, get, n);
    libyang_context();
    measure(
        state, nodes_selected(model, get, n), [] { return Run(); },
        [&](Run &run) {
            run.tree = parse(data);
            if (get != Get::kAll) {
                prune(run.tree, xpath);
            }
            print(run);
        },
        count_tree);
}

void get_entry(const Tree &data, const std::string &xpath, Run &run) {
    ly_set *selected = nullptr;
    check(lyd_find_xpath(data.get(), xpath.c_str(), &selected));
    lyd_node *copy = nullptr;
    check(lyd_dup_single(selected->dnodes[0], nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_PARENTS, &copy));
    ly_set_free(selected, nullptr);
    while (copy->parent != nullptr) {
        copy = &copy->parent->node;
    }
    run.tree.reset(copy);
    print(run);
}

void measure_get_in_memory(benchmark::State &state, Model model, std::size_t n) {
    const std::string xpath = get_xpath(model, Get::kEntry, n);
    const Tree data = parse(edit_request(model, Edit::kMerge, n));
    measure(
        state, nodes_selected(model, Get::kEntry, n), [] { return Run(); },
        [&](Run &run) { get_entry(data, xpath, run); }, count_tree);
}

const bool registered = [] {
    for (const Model model : kModels) {
        for (const Edit edit : kEdits) {
            add_benchmarks_of_seconds(work_of(edit, model), "libyang",
                                      [=](auto &state, std::size_t n) { measure_edit(state, model, edit, n); });
        }
        for (const Get get : kGets) {
            add_benchmarks_of_seconds(work_of(get, model), "libyang",
                                      [=](auto &state, std::size_t n) { measure_get(state, model, get, n); });
        }
        add_benchmarks_of_seconds(work_of_get_in_memory(model), "libyang",
                                  [=](auto &state, std::size_t n) { measure_get_in_memory(state, model, n); });
    }
    return true;
}();

}  // namespace

}  // namespace tvk::bench
