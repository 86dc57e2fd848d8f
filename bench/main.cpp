// The main program of every family.
#include "bench/Bench.h"

int main(int argc, char** argv) {
  bench::registerCases();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
