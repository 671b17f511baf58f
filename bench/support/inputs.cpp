// Names, values and paths of the entries.
#include "inputs.h"

namespace tvk::bench {

namespace {

// Fills texts up to count with the results of make(i).
template <class Make>
const Texts &filled(Texts &texts, std::size_t count, Make make) {
    for (std::size_t i = texts.size(); i < count; ++i) {
        texts.push_back(make(i));
    }
    return texts;
}

const Texts &descriptions(std::size_t count) {
    static Texts texts;
    return filled(texts, count, [](std::size_t i) { return "uplink port " + std::to_string(i); });
}

std::string leaf_path(const std::string &list, const char *quote, std::size_t i) {
    const std::size_t entry = i / kLeavesPerEntry;
    const Leaf &leaf = kLeaves[i % kLeavesPerEntry];
    std::string path = list + "[name=" + quote + names(entry + 1)[entry] + quote + "]/";
    if (leaf.is_of_subinterface) {
        path += std::string("subinterfaces/subinterface[index=") + quote + "0" + quote + "]/";
    }
    return path + leaf.path;
}

}  // namespace

const Texts &names(std::size_t count) {
    static Texts texts;
    descriptions(count);
    return filled(texts, count, [](std::size_t i) { return "GigabitEthernet0/0/0/" + std::to_string(i); });
}

const char *value_of(std::size_t leaf, std::size_t entry) {
    switch (leaf) {
        case 0:
            return names(entry + 1)[entry].c_str();
        case 1:
            return "ethernetCsmacd";
        case 2:
            return entry % 10 == 0 ? "9000" : "1500";
        case 3:
            return descriptions(entry + 1)[entry].c_str();
        default:
            return "true";
    }
}

const Texts &plain_paths(std::size_t entries) {
    static Texts texts;
    names(entries);
    return filled(texts, entries * kLeavesPerEntry,
                  [](std::size_t i) { return leaf_path("/interfaces/interface", "", i); });
}

const Texts &quoted_paths(std::size_t entries) {
    static Texts texts;
    names(entries);
    return filled(texts, entries * kLeavesPerEntry,
                  [](std::size_t i) { return leaf_path("/bench-interfaces:interfaces/interface", "'", i); });
}

const Texts &predicates(std::size_t count) {
    static Texts texts;
    return filled(texts, count, [](std::size_t i) { return "[name='" + names(i + 1)[i] + "']"; });
}

std::size_t nodes_selected(Filter filter, std::size_t entries) {
    switch (filter) {
        case Filter::kKey:
            return nodes_of(1);
        case Filter::kLeaf:
            return 1 + 4 * entries;  // interface, name, config, mtu
        default:
            return 1 + 8 * ((entries + 9) / 10);  // interface, name, config with its five leaves
    }
}

}  // namespace tvk::bench
