// The main program of every family: Google Benchmark's, whose output also names the peers that were not installed.
#include "bench/Bench.h"

int main(int argc, char** argv) {
  benchmark::AddCustomContext("missing_peers", BENCH_MISSING_PEERS);
  bench::registerCases();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
