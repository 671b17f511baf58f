// The variants of libxml2: elements of a document, found by comparing siblings one after the other. "libxml2_map" adds
// a map from keys to entries, which a careful user keeps beside the list.
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <unordered_map>

#include "harness.h"
#include "inputs.h"
#include "key_path.h"

namespace tvk::bench {

namespace {

const xmlChar *as_xml(const char *text) {
    return reinterpret_cast<const xmlChar *>(text);
}
const char *as_text(const xmlChar *text) {
    return reinterpret_cast<const char *>(text);
}

template <class Item>
Item *checked(Item *item) {
    return item != nullptr ? item : throw std::bad_alloc();
}

struct ReleaseDocument {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, ReleaseDocument>;

xmlNode *top_of(const Document &document) {
    return checked(xmlDocGetRootElement(document.get()));
}

Document new_document() {
    Document document(checked(xmlNewDoc(as_xml("1.0"))));
    xmlNode *top = checked(xmlNewDocNode(document.get(), nullptr, as_xml("interfaces"), nullptr));
    xmlSetNs(top, xmlNewNs(top, as_xml(kNs), nullptr));
    xmlDocSetRootElement(document.get(), top);
    return document;
}

bool is_element(const xmlNode *node, const char *name) {
    return node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, as_xml(name));
}

xmlNode *find_element(const xmlNode *parent, const char *name) {
    xmlNode *child = parent != nullptr ? parent->children : nullptr;
    while (child != nullptr && !is_element(child, name)) {
        child = child->next;
    }
    return child;
}

const char *value_of(const xmlNode *element) {
    const xmlNode *text = element != nullptr ? element->children : nullptr;
    return text != nullptr && text->type == XML_TEXT_NODE ? as_text(text->content) : "";
}

// The new element inherits the namespace of its parent.
xmlNode *append(xmlNode *parent, const char *name, const char *value) {
    return checked(xmlNewTextChild(parent, nullptr, as_xml(name), as_xml(value)));
}

xmlNode *append(xmlNode *parent, const Step &step) {
    xmlNode *entry = append(parent, step.name, nullptr);
    if (step.key != nullptr) {
        append(entry, step.key, step.value);
    }
    return entry;
}

xmlNode *find_or_add(xmlNode *parent, const Step &step) {
    for (xmlNode *child = parent->children; child != nullptr; child = child->next) {
        if (is_element(child, step.name) &&
            (step.key == nullptr || std::strcmp(value_of(find_element(child, step.key)), step.value) == 0)) {
            return child;
        }
    }
    return append(parent, step);
}

std::size_t count_elements(const xmlNode *element) {
    std::size_t count = 1;
    for (const xmlNode *child = element->children; child != nullptr; child = child->next) {
        count += child->type == XML_ELEMENT_NODE ? count_elements(child) : 0;
    }
    return count;
}

std::size_t count_document(const Document &document) {
    return count_elements(top_of(document));
}

Document build_by_handle(std::size_t n) {
    Document document = new_document();
    for (std::size_t i = 0; i < n; ++i) {
        xmlNode *entry = append(top_of(document), "interface", nullptr);
        append(entry, "name", bench::value_of(0, i));
        xmlNode *config = append(entry, "config", nullptr);
        for (std::size_t leaf = 0; !kLeaves[leaf].is_of_subinterface; ++leaf) {
            append(config, kLeaves[leaf].path + sizeof "config", bench::value_of(leaf, i));
        }
        xmlNode *subinterface = append(append(entry, "subinterfaces", nullptr), "subinterface", nullptr);
        append(subinterface, "index", "0");
        append(append(subinterface, "config", nullptr), "enabled", "true");
    }
    return document;
}

// ---- Finding or creating entries ----

const Benchmark entries(
    "entries_search_or_add", "libxml2",
    [](benchmark::State &state, std::size_t n) {
        const Texts &keys = names(n);
        measure(
            state, nodes_of_bare(n), new_document,
            [&](const Document &document) {
                for (std::size_t i = 0; i < n; ++i) {
                    find_or_add(top_of(document), {"interface", "name", keys[i].c_str()});
                }
            },
            count_document);
    },
    sizes_up_to(kLargestQuadratic));

const Benchmark mapped_entries("entries_search_or_add", "libxml2_map", [](benchmark::State &state, std::size_t n) {
    const Texts &keys = names(n);
    measure(
        state, nodes_of_bare(n), new_document,
        [&](const Document &document) {
            std::unordered_map<std::string_view, xmlNode *> entries_by_key;
            for (std::size_t i = 0; i < n; ++i) {
                if (entries_by_key.find(keys[i]) == entries_by_key.end()) {
                    xmlNode *entry = append(top_of(document), {"interface", "name", keys[i].c_str()});
                    entries_by_key.emplace(value_of(entry->children), entry);
                }
            }
        },
        count_document);
});

// ---- Building by path ----

void set_path(const Document &document, const char *path, const char *value) {
    char buffer[256];
    Step steps[kMaxSteps];
    const int count = split_path(path, buffer, steps);
    xmlNode *node = top_of(document);
    for (int i = 1; i < count; ++i) {
        node = find_or_add(node, steps[i]);
    }
    if (node->children == nullptr) {
        xmlAddChild(node, xmlNewDocText(document.get(), as_xml(value)));
    }
}

const Benchmark paths(
    "paths_xpath", "libxml2",
    [](benchmark::State &state, std::size_t n) {
        const Texts &all = quoted_paths(n);
        measure(
            state, nodes_of(n), new_document,
            [&](const Document &document) {
                for (std::size_t i = 0; i < n * kLeavesPerEntry; ++i) {
                    set_path(document, all[i].c_str(), bench::value_of(i % kLeavesPerEntry, i / kLeavesPerEntry));
                }
            },
            count_document);
    },
    sizes_up_to(kLargestQuadratic / 10));

// ---- Copying ----

const Benchmark copies("copy", "libxml2", [](benchmark::State &state, std::size_t n) {
    names(n);
    const Document source = build_by_handle(n);
    const auto copy = [](const Document &document) { return Document(checked(xmlCopyDoc(document.get(), 1))); };
    measure(
        state, nodes_of(n), [&]() -> const Document & { return source; },
        [&](const Document &document) { copy(document); },
        [&](const Document &document) { return count_document(copy(document)); });
});

// ---- Pruning ----

bool selects(Filter filter, const xmlNode *entry, const char *key) {
    switch (filter) {
        case Filter::kKey:
            return std::strcmp(value_of(find_element(entry, "name")), key) == 0;
        case Filter::kLeaf:
            return true;
        default:
            return std::strcmp(value_of(find_element(find_element(entry, "config"), "mtu")), "9000") == 0;
    }
}

void release(xmlNode *node) {
    xmlUnlinkNode(node);
    xmlFreeNode(node);
}

void release_others(xmlNode *parent, std::initializer_list<const char *> kept) {
    xmlNode *next = nullptr;
    for (xmlNode *child = parent->children; child != nullptr; child = next) {
        next = child->next;
        bool is_kept = false;
        for (const char *name : kept) {
            is_kept = is_kept || is_element(child, name);
        }
        if (!is_kept) {
            release(child);
        }
    }
}

// The pruning is written by hand for each filter.
void prune(const Document &document, Filter filter, const char *key) {
    xmlNode *next = nullptr;
    for (xmlNode *entry = top_of(document)->children; entry != nullptr; entry = next) {
        next = entry->next;
        if (!selects(filter, entry, key)) {
            release(entry);
        } else if (filter != Filter::kKey) {
            release_others(entry, {"name", "config"});
        }
        if (filter == Filter::kLeaf) {
            release_others(checked(find_element(entry, "config")), {"mtu"});
        }
    }
}

void measure_prune(benchmark::State &state, std::size_t n, Filter filter) {
    const char *key = names(n)[selected_entry(n)].c_str();
    const Document source = build_by_handle(n);
    measure(
        state, nodes_selected(filter, n), [&] { return Document(checked(xmlCopyDoc(source.get(), 1))); },
        [&](const Document &document) { prune(document, filter, key); }, count_document);
}

const Benchmark filters[] = {
    {"filter_key", "libxml2", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kKey); }},
    {"filter_leaf", "libxml2", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kLeaf); }},
    {"filter_content", "libxml2", [](auto &state, std::size_t n) { measure_prune(state, n, Filter::kContent); }}};

}  // namespace

}  // namespace tvk::bench
