// A request whose tree is changed step by step, and its equal that keeps an index.
//
// An input is a line of choices and then the steps: a digit or another byte that chooses one, then what the step reads.
#ifndef TVK_FUZZ_WORLD_H
#define TVK_FUZZ_WORLD_H

#include <span>
#include <string>

#include "input.h"
#include "target.h"
#include "tree.h"
#include "tvk_map.h"

namespace tvk::fuzz {

inline constexpr const char *kNs[] = {"urn:one", "urn:two"};
inline constexpr const char *kTags[] = {
    "box", "list", "id", "name", "a", "vrrp", "interface-configuration", "interface-name", "interface-virtual"};
inline constexpr char kBundle[] = "b1.0";  // the name of a subinterface 0

// A path: one of a few by number, or the text of the next line.
std::string read_path(Input &input);
std::string read_value(Input &input);

class World {
public:
    World(std::uint32_t request_type, std::uint32_t index_children_from);
    ~World();
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    tvk_map_ctx ctx() { return mapping_.ctx; }
    tvk_map_request_state &state() { return *mapping_.state; }
    Record &tree() { return *tree_; }

    // A node not too far below the top of tree.
    Record &some_node(Input &input);
    // Returns the outcome of a step with the contents of the state.
    std::string outcome(qerrno status, const Record *node = nullptr);

private:
    test::Tree request_;
    test::Tree tree_{test::root()};
    test::MappingContext mapping_;
};

// Says what came of it. What a step makes itself may throw std::bad_alloc.
struct Step {
    const char *name;
    std::string (*take)(World &world, Input &input);
};

// Walks into the next node of a small request, or out of the last.
std::string walk(World &world, Input &input);
// Changes children as mapping code does itself, and announces it.
std::string change_announced(World &world, Input &input);

// The first choice of an input is 1 when allocations may fail. Without that, two worlds must come to the same with
// every step, in the same words. The second is the type of the request, the third says how the index is kept.
void run_worlds(Input input, std::span<const Step> steps);

}  // namespace tvk::fuzz

#endif
