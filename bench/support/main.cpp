// The program of the benchmarks. Its exit status is 0 when at least one ran and all built the nodes that they claim,
// 2 for a usage error, else 1.
#include <cstdio>

#include "harness.h"

int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    if (benchmark::RunSpecifiedBenchmarks() == 0) {
        std::fprintf(stderr, "no benchmark was run\n");
        return 1;
    }
    if (tvk::bench::fault_met()) {
        std::fprintf(stderr, "a benchmark ended with a fault: see above\n");
        return 1;
    }
    return 0;
}
