// The cost of the layout without a library around it: records of 200 bytes held by value, arrays that double, strings
// from strdup, children and keys found by comparing one after the other.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "harness.h"
#include "inputs.h"
#include "key_path.h"

namespace tvk::bench {

namespace {

struct Record {
    char *name;
    char *value;
    char *ns;
    Record *children;
    uint32_t count;
    uint32_t capacity;
    char payload[200 - 4 * sizeof(void *) - 2 * sizeof(uint32_t)];
};
static_assert(sizeof(Record) == 200);

bool equal(const char *a, const char *b) {
    return std::strcmp(a, b) == 0;
}

// Appends a record without a namespace. The namespace is stored where it changes, which is at the top.
Record &append(Record &parent, const char *name, const char *value) {
    if (parent.count == parent.capacity) {
        parent.capacity = parent.capacity == 0 ? 1 : 2 * parent.capacity;
        void *block = std::realloc(parent.children, parent.capacity * sizeof(Record));
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        parent.children = static_cast<Record *>(block);
    }
    Record &record = parent.children[parent.count++];
    record = Record{};
    record.name = strdup(name);
    record.value = value != nullptr ? strdup(value) : nullptr;
    return record;
}

bool has_key(const Record &entry, const Step &step) {
    for (uint32_t i = 0; i < entry.count; ++i) {
        const Record &leaf = entry.children[i];
        if (equal(leaf.name, step.key)) {
            return leaf.value != nullptr && equal(leaf.value, step.value);
        }
    }
    return false;
}

Record &find_or_add(Record &parent, const Step &step) {
    for (uint32_t i = 0; i < parent.count; ++i) {
        Record &child = parent.children[i];
        if (equal(child.name, step.name) && (step.key == nullptr || has_key(child, step))) {
            return child;
        }
    }
    Record &record = append(parent, step.name, nullptr);
    if (step.key != nullptr) {
        append(record, step.key, step.value);
    }
    return record;
}

void set_path(Record &root, const char *path, const char *value) {
    char buffer[256];
    Step steps[kMaxSteps];
    const int count = split_path(path, buffer, steps);
    Record *record = &root;
    for (int i = 0; i < count; ++i) {
        record = &find_or_add(*record, steps[i]);
        if (i == 0 && record->ns == nullptr) {
            record->ns = strdup(kNs);
        }
    }
    if (record->value == nullptr || !equal(record->value, value)) {
        std::free(record->value);
        record->value = strdup(value);
    }
}

void copy(const Record &source, Record &target) {
    target = source;
    target.name = source.name != nullptr ? strdup(source.name) : nullptr;
    target.value = source.value != nullptr ? strdup(source.value) : nullptr;
    target.ns = source.ns != nullptr ? strdup(source.ns) : nullptr;
    target.capacity = source.count;
    target.children = nullptr;
    if (source.count > 0) {
        target.children = static_cast<Record *>(std::malloc(source.count * sizeof(Record)));
    }
    for (uint32_t i = 0; i < source.count; ++i) {
        copy(source.children[i], target.children[i]);
    }
}

void release(Record &record) {
    for (uint32_t i = 0; i < record.count; ++i) {
        release(record.children[i]);
    }
    std::free(record.children);
    std::free(record.name);
    std::free(record.value);
    std::free(record.ns);
}

std::size_t count_nodes(const Record &record) {
    std::size_t count = record.count;
    for (uint32_t i = 0; i < record.count; ++i) {
        count += count_nodes(record.children[i]);
    }
    return count;
}

struct Tree {
    Tree() = default;
    ~Tree() { release(root); }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    Record root{};
};

void build_by_path(Tree &tree, std::size_t n) {
    const Texts &paths = quoted_paths(n);
    for (std::size_t i = 0; i < n * kLeavesPerEntry; ++i) {
        set_path(tree.root, paths[i].c_str(), value_of(i % kLeavesPerEntry, i / kLeavesPerEntry));
    }
}

Record &append_top(Record &root) {
    Record &top = append(root, "interfaces", nullptr);
    top.ns = strdup(kNs);
    return top;
}

// Builds the tree without looking for anything among the entries.
void build_by_handle(Tree &tree, std::size_t n) {
    Record &top = append_top(tree.root);
    for (std::size_t i = 0; i < n; ++i) {
        Record &entry = append(top, "interface", nullptr);
        append(entry, "name", value_of(0, i));
        Record &config = append(entry, "config", nullptr);
        for (std::size_t leaf = 0; !kLeaves[leaf].is_of_subinterface; ++leaf) {
            append(config, kLeaves[leaf].path + sizeof "config", value_of(leaf, i));
        }
        Record &subinterface = append(append(entry, "subinterfaces", nullptr), "subinterface", nullptr);
        append(subinterface, "index", "0");
        append(append(subinterface, "config", nullptr), "enabled", "true");
    }
}

constexpr auto count_tree = [](const Tree &tree) { return count_nodes(tree.root); };

const Benchmark entries(
    "entries_search_or_add", "floor",
    [](benchmark::State &state, std::size_t n) {
        const Texts &keys = names(n);
        measure(
            state, nodes_of_bare(n), [] { return Tree(); },
            [&](Tree &tree) {
                Record &top = append_top(tree.root);
                for (std::size_t i = 0; i < n; ++i) {
                    find_or_add(top, {"interface", "name", keys[i].c_str()});
                }
            },
            count_tree);
    },
    sizes_up_to(kLargestQuadratic));

const Benchmark paths(
    "paths_xpath", "floor",
    [](benchmark::State &state, std::size_t n) {
        quoted_paths(n);
        measure(
            state, nodes_of(n), [] { return Tree(); }, [&](Tree &tree) { build_by_path(tree, n); }, count_tree);
    },
    sizes_up_to(kLargestQuadratic));

const Benchmark copies("copy", "floor", [](benchmark::State &state, std::size_t n) {
    names(n);
    Tree source;
    build_by_handle(source, n);
    measure(
        state, nodes_of(n), [&]() -> const Tree & { return source; },
        [](const Tree &tree) {
            Tree target;
            copy(tree.root, target.root);
            benchmark::DoNotOptimize(target.root.children);
        },
        [](const Tree &tree) {
            Tree target;
            copy(tree.root, target.root);
            return count_nodes(target.root);
        });
});

}  // namespace

}  // namespace tvk::bench
