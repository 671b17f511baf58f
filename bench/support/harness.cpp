// Registering benchmarks, and the count that each must come to.
#include "harness.h"

#include <exception>
#include <stdexcept>

namespace tvk::bench {

namespace {

bool any_fault = false;

void run(benchmark::State &state, const Body &body, std::size_t n) {
    try {
        body(state, n);
    } catch (const std::exception &error) {
        any_fault = true;
        state.SkipWithError(error.what());
    }
}

}  // namespace

std::vector<std::size_t> sizes_up_to(std::size_t largest) {
    std::vector<std::size_t> sizes;
    for (std::size_t n = kSmallest; n <= largest; n *= 10) {
        sizes.push_back(n);
    }
    return sizes;
}

Benchmark::Benchmark(const std::string &work, const std::string &variant, const Body &body,
                     const std::vector<std::size_t> &sizes, int iterations, int repetitions) {
    for (const std::size_t n : sizes) {
        const std::string name = work + "/" + variant + "/" + std::to_string(n);
        benchmark::internal::Benchmark *registered =
            benchmark::RegisterBenchmark(name.c_str(), [body, n](benchmark::State &state) { run(state, body, n); });
        registered->UseManualTime()->Unit(benchmark::kNanosecond);
        if (iterations > 0) {
            registered->Iterations(iterations);
        }
        if (repetitions > 0) {
            registered->Repetitions(repetitions);
        }
    }
}

void add_benchmarks_of_seconds(const std::string &work, const std::string &variant, const Body &body) {
    Benchmark(work, variant, body, sizes_up_to(kLargest / 10));
    Benchmark(work, variant, body, {kLargest}, 0, 3);
}

bool fault_met() {
    return any_fault;
}

void expect_nodes(std::size_t expected, std::size_t counted) {
    if (counted != expected) {
        throw std::runtime_error("built " + std::to_string(counted) + " nodes instead of " + std::to_string(expected));
    }
}

}  // namespace tvk::bench
