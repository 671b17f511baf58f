// Registers benchmarks and times them.
//
// A benchmark is called work/variant/N: the kind of work, who does it and the size. One call on a subject of its own is
// timed; preparing and releasing the subject is not. After the first call of a run the nodes of the subject are
// counted. If they are not the number that the work must come to, the run ends with a fault.
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
// The largest size of work whose cost grows with the square of the size.
inline constexpr std::size_t kLargestQuadratic = 10000;

// Returns 10, 100 and so on up to largest.
std::vector<std::size_t> sizes_up_to(std::size_t largest);

using Body = std::function<void(benchmark::State &state, std::size_t n)>;

// Registers work/variant/N for each size, at file scope, before main. An exception out of body is a fault. Without a
// number of iterations, or of repetitions, the command line decides on it.
class Benchmark {
public:
    Benchmark(const std::string &work, const std::string &variant, const Body &body,
              const std::vector<std::size_t> &sizes = sizes_up_to(kLargest), int iterations = 0, int repetitions = 0);
};

// Registers work that takes seconds at the largest size. There it is always repeated three times.
void add_benchmarks_of_seconds(const std::string &work, const std::string &variant, const Body &body);

// Tells whether a benchmark of this process ended with a fault.
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

// The work is a function of its own, so that a profiler can be told to count inside it alone.
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
