// The printer models the benchmarks run: one row a model. A model whose driver is not
// built into this tree yet has no factory (a weak reference left null) and is skipped.
#pragma once

#include <string>
#include <vector>

#include "bench_job.h"

namespace posprint::bench {

enum class Paper { kReceipt, kLabel };

struct Model {
  std::string name;          // as `posprint run --model` takes it
  Factory factory;           // null: not built yet
  Paper paper;               // which reference job it prints: the receipt or the label
  std::wstring memoryPort;   // "mem:" (ESC/POS answers) or "mem:zpl"
  Parameters parameters;     // so that the reference job prints as described, and no more
};

// Every row, built or not.
const std::vector<Model>& Models();

// The directory of the job files and logos (bench/ in the source tree).
std::string BenchDirectory();

}  // namespace posprint::bench
