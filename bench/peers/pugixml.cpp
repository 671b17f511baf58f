// The variant of pugixml: elements of a document, found by comparing siblings one after the other.
#include <cstring>
#include <pugixml.hpp>

#include "harness.h"
#include "inputs.h"
#include "key_path.h"

namespace tvk::bench {

namespace {

using pugi::xml_document;
using pugi::xml_node;

xml_node append(xml_node parent, const char *name, const char *value = nullptr) {
    xml_node element = parent.append_child(name);
    if (value != nullptr) {
        element.append_child(pugi::node_pcdata).set_value(value);
    }
    return element;
}

xml_node add_top(xml_document &document) {
    xml_node top = append(document, "interfaces");
    top.append_attribute("xmlns").set_value(kNs);
    return top;
}

struct Document : xml_document {
    xml_node top = add_top(*this);
};

bool matches(xml_node element, const Step &step) {
    return std::strcmp(element.name(), step.name) == 0 &&
           (step.key == nullptr || std::strcmp(element.child_value(step.key), step.value) == 0);
}

xml_node find_or_add(xml_node parent, const Step &step) {
    for (xml_node child = parent.first_child(); child; child = child.next_sibling()) {
        if (matches(child, step)) {
            return child;
        }
    }
    xml_node entry = append(parent, step.name);
    if (step.key != nullptr) {
        append(entry, step.key, step.value);
    }
    return entry;
}

std::size_t count_elements(xml_node element) {
    std::size_t count = 1;
    for (xml_node child : element.children()) {
        count += child.type() == pugi::node_element ? count_elements(child) : 0;
    }
    return count;
}

std::size_t count_document(const Document &document) {
    return count_elements(document.top);
}

void build_by_handle(Document &document, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        xml_node entry = append(document.top, "interface");
        append(entry, "name", value_of(0, i));
        xml_node config = append(entry, "config");
        for (std::size_t leaf = 0; !kLeaves[leaf].is_of_subinterface; ++leaf) {
            append(config, kLeaves[leaf].path + sizeof "config", value_of(leaf, i));
        }
        xml_node subinterface = append(append(entry, "subinterfaces"), "subinterface");
        append(subinterface, "index", "0");
        append(append(subinterface, "config"), "enabled", "true");
    }
}

void set_path(Document &document, const char *path, const char *value) {
    char buffer[256];
    Step steps[kMaxSteps];
    const int count = split_path(path, buffer, steps);
    xml_node node = document.top;
    for (int i = 1; i < count; ++i) {
        node = find_or_add(node, steps[i]);
    }
    node.text().set(value);
}

const Benchmark entries(
    "entries_search_or_add", "pugixml",
    [](benchmark::State &state, std::size_t n) {
        const Texts &keys = names(n);
        measure(
            state, nodes_of_bare(n), [] { return Document(); },
            [&](Document &document) {
                for (std::size_t i = 0; i < n; ++i) {
                    find_or_add(document.top, {"interface", "name", keys[i].c_str()});
                }
            },
            count_document);
    },
    sizes_up_to(kLargestQuadratic));

const Benchmark paths(
    "paths_xpath", "pugixml",
    [](benchmark::State &state, std::size_t n) {
        const Texts &all = quoted_paths(n);
        measure(
            state, nodes_of(n), [] { return Document(); },
            [&](Document &document) {
                for (std::size_t i = 0; i < n * kLeavesPerEntry; ++i) {
                    set_path(document, all[i].c_str(), value_of(i % kLeavesPerEntry, i / kLeavesPerEntry));
                }
            },
            count_document);
    },
    sizes_up_to(kLargestQuadratic / 10));

const Benchmark copies("copy", "pugixml", [](benchmark::State &state, std::size_t n) {
    names(n);
    Document source;
    build_by_handle(source, n);
    measure(
        state, nodes_of(n), [&]() -> const Document & { return source; },
        [](const Document &document) {
            xml_document copy;
            copy.reset(document);
        },
        [](const Document &document) {
            xml_document copy;
            copy.reset(document);
            return count_elements(copy.first_child());
        });
});

// ---- Pruning, written by hand for each filter ----

bool selects(Filter filter, xml_node entry, const char *key) {
    switch (filter) {
        case Filter::kKey:
            return std::strcmp(entry.child_value("name"), key) == 0;
        case Filter::kLeaf:
            return true;
        default:
            return std::strcmp(entry.child("config").child_value("mtu"), "9000") == 0;
    }
}

void release_others(xml_node parent, std::initializer_list<const char *> kept) {
    xml_node next;
    for (xml_node child = parent.first_child(); child; child = next) {
        next = child.next_sibling();
        bool is_kept = false;
        for (const char *name : kept) {
            is_kept = is_kept || std::strcmp(child.name(), name) == 0;
        }
        if (!is_kept) {
            parent.remove_child(child);
        }
    }
}

void prune(Document &document, Filter filter, const char *key) {
    xml_node next;
    for (xml_node entry = document.top.first_child(); entry; entry = next) {
        next = entry.next_sibling();
        if (!selects(filter, entry, key)) {
            document.top.remove_child(entry);
        } else if (filter != Filter::kKey) {
            release_others(entry, {"name", "config"});
        }
        if (filter == Filter::kLeaf) {
            release_others(entry.child("config"), {"mtu"});
        }
    }
}

struct Response : Document {
    explicit Response(std::size_t n) { build_by_handle(*this, n); }
};

void measure_prune(benchmark::State &state, std::size_t n, Filter filter) {
    const char *key = names(n)[selected_entry(n)].c_str();
    measure(
        state, nodes_selected(filter, n), [&] { return Response(n); },
        [&](Document &document) { prune(document, filter, key); }, count_document);
}

const Benchmark filters[] = {
    {"filter_key", "pugixml", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kKey); }},
    {"filter_leaf", "pugixml", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kLeaf); }},
    {"filter_content", "pugixml", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kContent); }}};

}  // namespace

}  // namespace tvk::bench
