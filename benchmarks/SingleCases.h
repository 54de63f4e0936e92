#pragma once

namespace nuv::zero::benchmarks {

/// Registers every walk, by the library and by hand, with Google Benchmark and runs those that the
/// command line selects. For looking into one case, under a profiler for instance; comparisons are
/// what the tables are for, since they take turns.
void runSingleCases(int argc, char** argv);

}  // namespace nuv::zero::benchmarks
