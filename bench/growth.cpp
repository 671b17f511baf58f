// Growing child arrays by one record at a time to N records. Each run is a fork of this program, so that its heap is as
// good as new.
//
// Beside the time a run tells how often an array was moved, and how many bytes the moves copied for each byte that the
// arrays have at the end. Growth in proportion holds that number below a constant, in any state of the heap.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "harness.h"
#include "inputs.h"
#include "kel_memory.h"
#include "qidl_tvk_datatree.h"
#include "tvk_string.h"

namespace tvk::bench {

namespace {

using Node = qidl_tvk_datatree;

using Resize = void *(*)(void *block, std::size_t size);

struct Array {
    Node *records = nullptr;
    std::size_t count = 0;
    std::size_t capacity = 0;
};

enum class Growth { kByOne, kDoubling };

class Grower {
public:
    Grower(Resize resize, Growth growth) : resize_(resize), growth_(growth) {}

    Node &append(Array &array) {
        if (array.count == array.capacity) {
            grow(array);
        }
        return array.records[array.count++] = Node{};
    }

    // Appends an entry of a list, with its key leaf.
    void append_entry(Array &array, const std::string &key) {
        Node &entry = append(array);
        entry.tag = tvk_strdup("interface", nullptr);
        entry.subtrees = static_cast<Node *>(kel_named_calloc_(1, sizeof(Node), nullptr, 0));
        entry.subtree_count = 1;
        entry.subtrees->tag = tvk_strdup("name", nullptr);
        entry.subtrees->data = tvk_strdup(key.c_str(), nullptr);
    }

    std::size_t moves() const { return moves_; }
    std::size_t copied_bytes() const { return copied_bytes_; }

private:
    void grow(Array &array) {
        const std::size_t doubled = array.capacity == 0 ? 1 : 2 * array.capacity;
        const std::size_t capacity = growth_ == Growth::kByOne ? array.capacity + 1 : doubled;
        const Node *former = array.records;
        const auto former_address = reinterpret_cast<std::uintptr_t>(former);
        void *block = resize_(array.records, capacity * sizeof(Node));
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        array.records = static_cast<Node *>(block);
        array.capacity = capacity;
        if (former_address != 0 && reinterpret_cast<std::uintptr_t>(block) != former_address) {
            ++moves_;
            copied_bytes_ += array.count * sizeof(Node);
        }
    }

    Resize resize_;
    Growth growth_;
    std::size_t moves_ = 0;
    std::size_t copied_bytes_ = 0;
};

void release(Array &array) {
    for (std::size_t i = 0; i < array.count; ++i) {
        qidl_tvk_datatree_free_ext(&array.records[i], tvk_gpb_free, nullptr, 0);
    }
    kel_named_free(array.records);
    array = {};
}

// ---- Scenarios ----

struct Scenario {
    const char *work;
    std::size_t arrays;  // they grow in turn, to N records in all
    bool has_entries;    // records have strings and a child, so that other blocks are made between two growths
    bool is_fragmented;  // the process built and released a big tree before
};

constexpr Scenario kScenarios[] = {
    {"growth_bare", 1, false, false},        {"growth_entries", 1, true, false},
    {"growth_two", 2, true, false},          {"growth_many", 200, true, false},
    {"growth_after_release", 1, true, true}, {"growth_two_after_release", 2, true, true}};

struct Outcome {
    double seconds;
    std::size_t moves;
    std::size_t copied_bytes;
    std::size_t records;
};

void leave_holes(std::size_t n) {
    Grower grower(kel_named_realloc, Growth::kByOne);
    Array array;
    for (std::size_t i = 0; i < n; ++i) {
        grower.append_entry(array, names(n)[i]);
    }
    release(array);
}

// Counts the records that came out as they were put in.
std::size_t count_intact(const std::vector<Array> &arrays, const Scenario &scenario) {
    std::size_t intact = 0;
    for (std::size_t a = 0; a < arrays.size(); ++a) {
        for (std::size_t i = 0; i < arrays[a].count; ++i) {
            const Node &record = arrays[a].records[i];
            const std::string &key = names(0)[i * arrays.size() + a];
            intact += !scenario.has_entries || key == record.subtrees->data ? 1 : 0;
        }
    }
    return intact;
}

Outcome run(const Scenario &scenario, Resize resize, Growth growth, std::size_t n) {
    const Texts &keys = names(n);
    std::vector<Array> arrays(scenario.arrays);
    if (scenario.is_fragmented) {
        leave_holes(n);
    }
    Grower grower(resize, growth);
    const Stopwatch watch;
    for (std::size_t i = 0; i < n; ++i) {
        Array &array = arrays[i % arrays.size()];
        if (scenario.has_entries) {
            grower.append_entry(array, keys[i]);
        } else {
            grower.append(array);
        }
    }
    const double seconds = watch.seconds();
    return {seconds, grower.moves(), grower.copied_bytes(), count_intact(arrays, scenario)};
}

// The heap that a run meets must not depend on the runs before it.
Outcome run_in_child(const Scenario &scenario, Resize resize, Growth growth, std::size_t n) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const Outcome outcome = run(scenario, resize, growth, n);
        _exit(write(ends[1], &outcome, sizeof outcome) == sizeof outcome ? 0 : 1);
    }
    close(ends[1]);
    Outcome outcome{};
    const bool told = child > 0 && read(ends[0], &outcome, sizeof outcome) == sizeof outcome;
    close(ends[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    if (!told) {
        throw std::runtime_error("a run told nothing");
    }
    return outcome;
}

void measure_growth(benchmark::State &state, const Scenario &scenario, Resize resize, Growth growth, std::size_t n) {
    names(n);
    Outcome outcome{};
    for (auto _ : state) {
        outcome = run_in_child(scenario, resize, growth, n);
        state.SetIterationTime(outcome.seconds);
    }
    expect_nodes(n, outcome.records);
    state.counters["nodes"] = static_cast<double>(n);
    state.counters["moves"] = static_cast<double>(outcome.moves);
    state.counters["copied"] = static_cast<double>(outcome.copied_bytes) / static_cast<double>(n * sizeof(Node));
}

const std::vector<std::size_t> kSizes{kSmallest, 1000, 10000, kLargest};
constexpr int kRuns = 3;

const bool registered = [] {
    const struct {
        const char *name;
        Resize resize;
        Growth growth;
    } variants[] = {{"tvk_map", kel_named_realloc, Growth::kByOne},
                    {"malloc_by_one", std::realloc, Growth::kByOne},
                    {"malloc_doubling", std::realloc, Growth::kDoubling}};
    for (const Scenario &scenario : kScenarios) {
        for (const auto &variant : variants) {
            Benchmark(
                scenario.work, variant.name,
                [=, &scenario](benchmark::State &state, std::size_t n) {
                    measure_growth(state, scenario, variant.resize, variant.growth, n);
                },
                kSizes, kRuns);
        }
    }
    return true;
}();

}  // namespace

}  // namespace tvk::bench
