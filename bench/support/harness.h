// Registers benchmarks and times them.
//
// A benchmark is called work/variant/N: the kind of work, who does it and the size. What is timed is one call on a
// subject of its own; neither preparing nor releasing the subject is. After the first call of a run the nodes that the
// subject then has are counted: another number than the work must come to ends the run with a fault.
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tvk::bench {

inline constexpr std::size_t kSmallest = 10;
inline constexpr std::size_t kLargest = 100000;
// Work whose cost grows with the square of the size goes no further.
inline constexpr std::size_t kLargestQuadratic = 10000;

// 10, 100 and so on up to largest.
std::vector<std::size_t> sizes_up_to(std::size_t largest);

using Body = std::function<void(benchmark::State &state, std::size_t n)>;

// Registers work/variant/N for each size. An exception out of body is a fault. Made at file scope, before main.
// Without a number of iterations there are as many as the time that is asked for takes, and without one of repetitions
// as many as are asked for.
class Benchmark {
public:
    Benchmark(const std::string &work, const std::string &variant, const Body &body,
              const std::vector<std::size_t> &sizes = sizes_up_to(kLargest), int iterations = 0, int repetitions = 0);
};

// For work that takes seconds at the largest size: it is repeated three times there, whatever is asked for.
void add_benchmarks_of_seconds(const std::string &work, const std::string &variant, const Body &body);

// Whether any benchmark of this process ended with a fault.
bool fault_met();

// Throws unless both numbers agree.
void expect_nodes(std::size_t expected, std::size_t counted);

class Stopwatch {
public:
    double seconds() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point start_ = Clock::now();
};

// A function of its own, so that a profiler can be told to count what happens inside it and nothing else.
template <class Work, class Subject>
[[gnu::noinline]] void timed_work(Work &work, Subject &subject) {
    work(subject);
}

template <class Prepare, class Work, class Count>
void measure(benchmark::State &state, std::size_t expected, Prepare prepare, Work work, Count count) {
    bool is_counted = false;
    for (auto _ : state) {
        decltype(auto) subject = prepare();
        const Stopwatch watch;
        timed_work(work, subject);
        state.SetIterationTime(watch.seconds());
        if (!is_counted) {
            expect_nodes(expected, count(subject));
            is_counted = true;
        }
    }
    state.counters["nodes"] = static_cast<double>(expected);
}

}  // namespace tvk::bench
