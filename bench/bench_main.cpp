// posprint_bench: the driver, logo and status benchmarks (Google Benchmark). Usually run
// through scripts/bench.sh, which builds it in Release and prints the table.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "bench_counters.h"
#include "mem_port.h"
#include "memory_files.h"
#include "models.h"
#include "platform/logo_files.h"

namespace posprint::bench {
void RegisterDriverBenchmarks();
void RegisterLogoBenchmarks();
void RegisterCheckBenchmarks();
void FixIterations(long long iterations);
}  // namespace posprint::bench

int main(int argc, char** argv) {
  using namespace posprint::bench;
  RegisterMemoryPort();
  // Logos are read from bench/ once, then served from memory.
  posprint::SetLogoDirectory(BenchDirectory());
  static MemoryFiles files;
  posprint::SetTerminalFileSource(&files);
  posprint::SetClock(&BenchClock());

  RegisterDriverBenchmarks();
  RegisterLogoBenchmarks();
  RegisterCheckBenchmarks();
  // A fixed count of iterations, for a profiler: under callgrind the instruction count of
  // one operation is then the inclusive count divided by the count (plus one warm-up).
  if (const char* fixed = std::getenv("POSPRINT_BENCH_ITERATIONS")) FixIterations(std::atoll(fixed));
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
