// What every driver benchmark reports beside its time: heap allocations, bytes and
// writes that reached the port, each per timed operation.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

#include "alloc_counter.h"
#include "mem_port.h"

namespace posprint::bench {

// Every benchmark registered through Remember gets the fixed iteration count of
// POSPRINT_BENCH_ITERATIONS (FixIterations), for deterministic profiles.
benchmark::internal::Benchmark* Remember(benchmark::internal::Benchmark* b);

class OperationCounters {
 public:
  OperationCounters() { ResetMemoryPort(); allocations_ = AllocationCount(); }

  void Report(benchmark::State& state) const {
    const double operations = static_cast<double>(state.iterations());
    if (operations == 0) return;
    const MemoryLine line = MemoryPortTotals();
    state.counters["allocs"] = static_cast<double>(AllocationCount() - allocations_) / operations;
    state.counters["out_bytes"] = static_cast<double>(line.bytes) / operations;
    state.counters["writes"] = static_cast<double>(line.writes) / operations;
  }

 private:
  std::uint64_t allocations_;
};

}  // namespace posprint::bench
