// Every exported operation, with every allocation failing once. docs/out-of-memory.md says the same in words.
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "allocation_failures.h"
#include "operation.h"

using namespace tvk::test;

namespace {

class OperationOutOfMemory : public HeapTest {};

// A paragraph per row: the operation, what it comes to, and below it what else it may when memory runs out. Set
// TVK_REFRESH to write them anew, and read the diff.
TEST_F(OperationOutOfMemory, ComesToWhatIsRecorded) {
    std::string actual;
    for (const Operation &operation : operations()) {
        SCOPED_TRACE(operation.name);
        const Outcomes outcomes = sweep(operation, 0);
        actual += operation.name + ("\n  " + outcomes.whole) + "\n";
        for (const std::string &outcome : outcomes.without_memory) {
            actual += "    " + outcome + "\n";
        }
    }
    if (std::getenv("TVK_REFRESH") != nullptr) {
        std::ofstream(OUTCOMES) << actual;
    }
    std::ostringstream recorded;
    recorded << std::ifstream(OUTCOMES).rdbuf();
    EXPECT_EQ(recorded.str(), actual);
}

// Allocations of the index may fail without effect.
TEST_F(OperationOutOfMemory, ComesToTheSameWithAnIndex) {
    for (const Operation &operation : operations()) {
        SCOPED_TRACE(operation.name);
        Outcomes scanned = sweep(operation, 0);
        const Outcomes indexed = sweep(operation, 1);
        EXPECT_EQ(scanned.whole, indexed.whole);
        scanned.without_memory.insert(scanned.whole);
        for (const std::string &outcome : indexed.without_memory) {
            EXPECT_TRUE(scanned.without_memory.contains(outcome)) << outcome;
        }
    }
}

std::set<std::string> exported() {
    std::set<std::string> names;
    std::ifstream map(EXPORTS);
    for (std::string word; map >> word;) {
        if (word.ends_with(';') && word != "*;" && word != "};") {
            names.insert(word.substr(0, word.size() - 1));
        }
    }
    return names;
}

TEST_F(OperationOutOfMemory, IsLookedAtInEveryExport) {
    std::set<std::string> swept;
    for (const Operation &operation : operations()) {
        swept.insert(operation.name);
    }
    EXPECT_EQ(exported(), swept);
}

// Operators read traces: each line names an exported operation, or a step whose name tells as much.
TEST_F(OperationOutOfMemory, IsTracedByNamesThatSayWhatIsDone) {
    std::set<std::string> known = exported();
    known.insert({"find_child_handler", "refuse_unsupported_child", "check_stitching_record", "add_stitch_node",
                  "install_stitch_node", "give_up_stitching", "tvk_map_is_path_present"});
    std::map<std::string, std::string> unknown;
    std::size_t lines = 0;
    for (const Operation &operation : operations()) {
        const auto trace = [&](AllocationFailure &failure) {
            const LogCapture log(TVK_LOG_LEVEL_ERR);
            World world(operation, 0);
            world.mapping.context.trace_enabled = world.mapping.framework.trace_enabled = 1;
            failure.during([&] { return operation.call(world); });
            for (const std::string &line : log.traces()) {
                const std::size_t name = line.find("C: ") != std::string::npos ? line.find("C: ") : line.find("R: ");
                const std::string step = line.substr(name + 3, line.find(':', name + 3) - name - 3);
                ++lines;
                if (!known.contains(step)) {
                    unknown[step] = line;
                }
            }
        };
        AllocationFailure none(0, false);
        trace(none);
        if (none.allocations() != 0) {
            for_each_allocation_failure(trace);
        }
    }
    EXPECT_EQ((std::map<std::string, std::string>{}), unknown);
    EXPECT_LT(1000u, lines);
}

}  // namespace
