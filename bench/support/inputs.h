// The inputs that every variant of a work gets. They are made on demand and kept, outside of the timed calls.
//
// One entry is 13 nodes: interface, its key name, config with five leaves, subinterfaces, subinterface with its key
// index, config, enabled. One entry in ten has an mtu of 9000, the others of 1500.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <string>

namespace tvk::bench {

inline constexpr char kNs[] = "http://openconfig.net/yang/interfaces";
inline constexpr std::size_t kNodesPerEntry = 13;

// The nodes of a tree, with the container around the entries.
constexpr std::size_t nodes_of(std::size_t entries) {
    return 1 + kNodesPerEntry * entries;
}

// The same for entries that have their key and nothing else.
constexpr std::size_t nodes_of_bare(std::size_t entries) {
    return 1 + 2 * entries;
}

// At least as many texts as asked for. They stay where they are when more are made.
using Texts = std::deque<std::string>;

const Texts &names(std::size_t count);

// The leaves of an entry in the order in which they are added. The key leaves come with their entries.
struct Leaf {
    const char *path;  // below the entry; "subinterfaces/subinterface" stands for the one of index 0
    bool is_of_subinterface;
};
inline constexpr std::size_t kLeavesPerEntry = 6;
inline constexpr std::array<Leaf, kLeavesPerEntry> kLeaves{{{"config/name", false},
                                                            {"config/type", false},
                                                            {"config/mtu", false},
                                                            {"config/description", false},
                                                            {"config/enabled", false},
                                                            {"config/enabled", true}}};
// Returns the value of a leaf. It is ready once the names or the paths of as many entries were asked for.
const char *value_of(std::size_t leaf, std::size_t entry);

// The full path of each leaf of each entry, entry by entry. Plain paths are xpaths of this library, with keys without
// quotes. Quoted ones are xpaths of libyang, with quotes and the model's prefix on the first step.
const Texts &plain_paths(std::size_t entries);
const Texts &quoted_paths(std::size_t entries);

// The predicates of libyang for the entries' keys.
const Texts &predicates(std::size_t count);

// A subtree filter, and the number of nodes of the response that it leaves.
enum class Filter { kKey, kLeaf, kContent };
std::size_t nodes_selected(Filter filter, std::size_t entries);
// The entry that kKey selects.
constexpr std::size_t selected_entry(std::size_t entries) {
    return entries / 2;
}

}  // namespace tvk::bench
