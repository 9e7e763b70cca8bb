// posprint_bench: the driver, logo and status benchmarks (Google Benchmark). Usually run
// through scripts/bench.sh, which builds it in Release and prints the table.
#include <benchmark/benchmark.h>

#include "mem_port.h"
#include "memory_files.h"
#include "models.h"
#include "platform/logo_files.h"

namespace posprint::bench {
void RegisterDriverBenchmarks();
void RegisterLogoBenchmarks();
void RegisterCheckBenchmarks();
}  // namespace posprint::bench

int main(int argc, char** argv) {
  using namespace posprint::bench;
  RegisterMemoryPort();
  // Logos are read from bench/ once, then served from memory.
  posprint::SetLogoDirectory(BenchDirectory());
  static MemoryFiles files;
  posprint::SetTerminalFileSource(&files);

  RegisterDriverBenchmarks();
  RegisterLogoBenchmarks();
  RegisterCheckBenchmarks();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
