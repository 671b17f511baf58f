// A request whose tree is changed step by step, and its equal that keeps an index.
//
// An input is a line of choices and then the steps: a digit or another byte that chooses one, then what the step reads.
#ifndef TVK_FUZZ_WORLD_H
#define TVK_FUZZ_WORLD_H

#include <new>
#include <string>

#include "input.h"
#include "target.h"
#include "tree_holder.h"

namespace tvk::fuzz {

inline constexpr char kNs[] = "urn:one";
inline constexpr char kOtherNs[] = "urn:two";
inline constexpr char kBundle[] = "b1.0";  // the name of a subinterface 0

// "list[3]/id[0]" for a node below tree; "?" when it is not there. Looks at addresses alone.
std::string place_of(const Record &tree, const Record *node);

// A path: one of a few by number, or the text of the next line.
std::string read_path(Input &input);
std::string read_value(Input &input);
const char *read_ns(Input &input);

class World {
public:
    World(std::uint32_t request_type, std::uint32_t index_children_from);
    ~World();
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    tvk_map_ctx ctx() { return scope_.ctx(); }
    tvk_map_request_state &state() { return scope_.state(); }
    Record &tree() { return tree_.root(); }

    // A node not too far below the top of tree.
    Record &some_node(Input &input);
    // What a step came to.
    std::string outcome(qerrno status, const Record *node);

    // Walks into the next node of a small request, or out of the last.
    std::string walk(Input &input);

private:
    tool::TreeHolder request_;
    tool::TreeHolder tree_;
    tool::Framework framework_;
    tool::RequestScope scope_;
};

// The first character of an input says whether allocations may fail (1); without that, two worlds must come to the
// same with every step. Step is called with a world and the input; what it makes itself may throw std::bad_alloc.
template <typename WorldType, typename Step>
void run_worlds(Input input, Step step) {
    constexpr int kMaxSteps = 60;
    constexpr std::uint32_t kTypes[] = {TVK_REQUEST_EDIT_CONFIG, TVK_REQUEST_GET};
    const bool failing = input.flag();
    const std::uint32_t type = input.pick(kTypes);
    input.text('\n');
    WorldType world(type, 1);
    WorldType scanning(type, 0);
    for (int i = 0; i < kMaxSteps && !input.at_end(); ++i) {
        if (failing) {
            const AllocationFailure failure(input.below(32));
            try {
                step(world, input);
            } catch (const std::bad_alloc &) {
            }
            continue;
        }
        Input same = input;
        const std::string expected = step(scanning, same);
        require_equal(expected, step(world, input), "step " + std::to_string(i) + " with an index");
    }
}

}  // namespace tvk::fuzz

#endif
