// Whole requests on the models of the two example mappings, in the bytes that a client sends.
//
// An entry is an interface with a subinterface, of 14 nodes, or a BGP neighbor, of 10. One entry in ten has another
// mtu, or peer-as, than the others.
#pragma once

#include <cstddef>
#include <string>

namespace tvk::bench {

enum class Model { kInterfaces, kBgp };
inline constexpr Model kModels[] = {Model::kInterfaces, Model::kBgp};

// ---- Edits ----

// All but the first change a tree that holds the same entries already.
enum class Edit { kMerge, kReplaceEntries, kReplaceContainer, kDelete };
inline constexpr Edit kEdits[] = {Edit::kMerge, Edit::kReplaceEntries, Edit::kReplaceContainer, Edit::kDelete};

// The name of the benchmark.
std::string work_of(Edit edit, Model model);

// Returns a top container with all entries, made on demand and kept. That of kMerge is also the configuration itself.
const std::string &edit_request(Model model, Edit edit, std::size_t entries);

// ---- Reads ----

// A get asks for everything, for one leaf of all entries, for one entry by its key, or for the config of one entry in
// ten by the value of a leaf.
enum class Get { kAll, kLeaf, kEntry, kContent };
inline constexpr Get kGets[] = {Get::kAll, Get::kLeaf, Get::kEntry, Get::kContent};

std::string work_of(Get get, Model model);
// The name of the benchmark of kEntry on data that is in memory already.
std::string work_of_get_in_memory(Model model);

// Returns a <get-config>.
std::string get_request(Model model, Get get, std::size_t entries);
// Returns the same question as an xpath of libyang, with the model's prefix on the first step.
std::string get_xpath(Model model, Get get, std::size_t entries);
// The number of nodes that are selected, with those around them and the keys.
std::size_t nodes_selected(Model model, Get get, std::size_t entries);

}  // namespace tvk::bench
