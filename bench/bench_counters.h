// What every driver benchmark reports beside its time: heap allocations, bytes and
// writes that reached the port, each per timed operation.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

#include "alloc_counter.h"
#include "mem_port.h"
#include "platform/clock.h"

namespace posprint::bench {

// Every benchmark registered through Remember gets the fixed iteration count of
// POSPRINT_BENCH_ITERATIONS (FixIterations), for deterministic profiles.
benchmark::internal::Benchmark* Remember(benchmark::internal::Benchmark* b);

// The clock of every benchmark: the waits a driver makes (a presenter's second, a
// printer's settling time) are counted, not waited; they are the printer's time, not the
// driver's, and the wire-speed run reports them apart.
FakeClock& BenchClock();

class OperationCounters {
 public:
  OperationCounters() {
    ResetMemoryPort();
    allocations_ = AllocationCount();
    sleptMs_ = BenchClock().TotalSleptMs();
  }

  void Report(benchmark::State& state) const {
    const double operations = static_cast<double>(state.iterations());
    if (operations == 0) return;
    const MemoryLine line = MemoryPortTotals();
    state.counters["allocs"] = static_cast<double>(AllocationCount() - allocations_) / operations;
    state.counters["out_bytes"] = static_cast<double>(line.bytes) / operations;
    state.counters["writes"] = static_cast<double>(line.writes) / operations;
    const long slept = BenchClock().TotalSleptMs() - sleptMs_;
    if (slept > 0) state.counters["waits_ms"] = static_cast<double>(slept) / operations;
  }

 private:
  std::uint64_t allocations_;
  long sleptMs_;
};

}  // namespace posprint::bench
