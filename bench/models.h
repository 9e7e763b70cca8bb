// The printer models the benchmarks run: one row a model. A model whose driver is not
// built into this tree yet has no factory (a weak reference left null) and is skipped.
#pragma once

#include <string>
#include <vector>

#include "bench_job.h"
#include "printer_answers.h"

namespace posprint::bench {

enum class Paper { kReceipt, kLabel };

struct Model {
  std::string name;          // as `posprint run --model` takes it
  Factory factory;           // null: not built yet
  Paper paper;               // which reference job it prints: the receipt or the label
  Parameters parameters;     // so that the reference job prints as described, and no more
  PrinterAnswers answers;    // what the model's printer answers when it is ready
  std::wstring memoryPort;   // "mem:NAME": a memory port answering as above
};

// Every row, built or not.
const std::vector<Model>& Models();

// The directory of the job files and logos (bench/ in the source tree).
std::string BenchDirectory();

}  // namespace posprint::bench
