// A lean in-memory printer port for the benchmarks: "mem:" port names.
//
// Unlike the test suite's ScriptedPort, which keeps every write in strings and vectors,
// this port copies each write into one buffer allocated once, and answers status
// requests from fixed answers, so that the port costs no allocation and next to no time:
// what a benchmark measures is the driver.
//
//   "mem:NAME"  a printer that answers its status requests as a ready printer of the
//               answer table registered under NAME does (printer_answers.h)
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "printer_answers.h"

namespace posprint::bench {

// Registers the "mem:" port kind (once; later calls do nothing).
void RegisterMemoryPort();
// The answers of the printer behind "mem:NAME" (kept; register before opening).
void SetMemoryPrinterAnswers(const std::string& name, const PrinterAnswers* answers);

// What the open memory ports received since the last Reset: the byte count, the write
// count, and the last bytes (up to the buffer size; the buffer starts again from its
// beginning when full, so a long run keeps only its tail).
struct MemoryLine {
  std::uint64_t bytes = 0;
  std::uint64_t writes = 0;
};
MemoryLine MemoryPortTotals();
void ResetMemoryPort();
// The bytes received since the last Reset, when they fitted the buffer (else empty).
std::string_view MemoryPortBytes();

}  // namespace posprint::bench
