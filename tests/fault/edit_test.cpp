// A whole edit through the example mapping, with every allocation failing once.
#include <dlfcn.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "allocation_failures.h"
#include "context.h"
#include "status.h"
#include "tree.h"
#include "tvk_map_module.h"

namespace {

using namespace tvk::test;

constexpr char kNs[] = "http://openconfig.net/yang/interfaces";

const tvk_map_module &example() {
    void *module = dlopen(EXAMPLE_MODULE, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(nullptr, module) << dlerror();
    void *get = dlsym(module, TVK_MAP_MODULE_SYMBOL);
    return *reinterpret_cast<tvk_map_module_get_fp>(get)();
}

// One interface of each operation, so that lists, leaves, identities and both passes of a replace are met.
Node edit() {
    return node("interfaces", kNs)(
        node("interface")
            .op(TVK_OPERATION_CREATE)(
                leaf("name", "eth0"),
                node("config")(leaf("name", "eth0"), leaf("type", "ethernetCsmacd"), leaf("mtu", "9000")),
                node("subinterfaces")(node("subinterface")(
                    leaf("index", "1"), node("ipv4")(node("addresses")(node("address")(
                                            leaf("ip", "192.0.2.1"), node("config")(leaf("prefix-length", "24")))))))),
        node("interface").op(TVK_OPERATION_REPLACE)(leaf("name", "eth1"), node("config")(leaf("description", "new"))),
        node("interface")(leaf("name", "eth2"), node("hold-time").op(TVK_OPERATION_DELETE)),
        node("interface").op(TVK_OPERATION_DELETE)(leaf("name", "eth0")));
}

// The lines of a tree, without indent and place among siblings.
std::set<std::string> nodes_of(const Tree &tree) {
    std::set<std::string> lines;
    std::istringstream text(show(tree));
    for (std::string line; std::getline(text, line);) {
        line.erase(0, line.find_first_not_of(' '));
        lines.insert(line.substr(0, line.find(" #")));
    }
    return lines;
}

class EditUnderFailure : public HeapTest {
protected:
    // Runs the edit; returns what it made of the target.
    static Tree run(AllocationFailure &failure, const Node &description, qerrno &status) {
        static const tvk_map_module_container &interfaces = example().containers[0];
        Tree request = description;
        Tree target = root();
        MappingContext mapping;
        status = failure.during([&] { return interfaces.handler(mapping.ctx, request.get(), target.get()); });
        EXPECT_EQ(0, mapping.state->hierarchy_depth);
        return target;
    }
};

TEST_F(EditUnderFailure, LosesNothingOrFails) {
    std::set<std::string> whole;
    for_each_allocation_failure([&](AllocationFailure &failure) {
        qerrno status = TVK_OK;
        const Tree target = run(failure, edit(), status);
        // An entry that could not be searched for is added again, so there may be more than in the whole.
        const std::set<std::string> done = nodes_of(target);
        if (!failure.is_injected()) {
            EXPECT_STATUS(TVK_OK, status);
            whole = done;
        } else if (status == TVK_OK) {
            EXPECT_TRUE(std::includes(done.begin(), done.end(), whole.begin(), whole.end())) << show(target);
        }
    });
    EXPECT_LT(10U, whole.size());
}

// What a propagation meets does not count for the status, so a removal may be lost; nothing else may.
TEST_F(EditUnderFailure, OfAReplacedContainerLeavesATreeToGoOnWith) {
    for_each_allocation_failure([&](AllocationFailure &failure) {
        qerrno status = TVK_OK;
        const Tree target =
            run(failure,
                node("interfaces", kNs)(node("interface")(
                    leaf("name", "eth2"), node("config").op(TVK_OPERATION_REPLACE)(leaf("description", "new")))),
                status);
        EXPECT_EQ(status == TVK_OK, show(target).find("description = new") != std::string::npos) << show(target);
    });
}

}  // namespace
