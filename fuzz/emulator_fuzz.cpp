// The virtual printers' byte-stream parsers (the ESC/POS-family and ZPL interpreters) on
// arbitrary bytes, in bursts as a driver writes them, with the answers read between the
// bursts as a driver reads them; then what was printed is drawn.
//
// Input: byte 0 picks the model, byte 1 the resolution (bits 0-1), the printer's state
// (bits 2-4), whether unread answers are purged (bit 6) and whether the whole preview is
// drawn (bit 7); then bursts, each a length byte (1 to 64) and its bytes.
#include <cstddef>
#include <cstdint>
#include <string>

#include "emulator/virtual_printer.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr int kDotsPerMm[] = {6, 8, 12, 24};
constexpr int kStates = 6;  // ready, near end, paper out, cover open, error, silent
// Enough pages to reach every drawing path; more only repeat them.
constexpr int kMaxPagesDrawn = 4;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  posprint::fuzz::InitialiseHarness();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace posprint::emulator;
  static const std::vector<std::string> models = VirtualModels();
  if (models.empty() || size < 2) return 0;
  posprint::fuzz::Input input(data, size);
  const std::string& model = models[input.Byte() % models.size()];
  const std::uint8_t options = input.Byte();
  auto printer = VirtualPrinter::ForModel(model, kDotsPerMm[options & 3]);
  if (!printer) return 0;
  printer->SetState(static_cast<PrinterState>(((options >> 2) & 7) % kStates));
  while (!input.Empty()) {
    const std::size_t burst = 1 + input.Byte() % 64;
    printer->Receive(input.Bytes(burst));
    std::string answer;
    if (options & 0x40) {
      printer->DiscardAnswers();
    } else {
      while (printer->TakeAnswer(&answer)) {
      }
    }
  }
  printer->Finish();
  for (int i = 0; i < printer->FinishedPages() && i < kMaxPagesDrawn; ++i) printer->Page(i);
  printer->Unfinished();
  if (options & 0x80) printer->Preview();
  return 0;
}
