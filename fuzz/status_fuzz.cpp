// Every status answer decoder: a printer that answers each write of the driver with
// arbitrary bursts, through INIT_PRINTER (identification), two CHECKs (one-byte and
// six-byte status, the three "~HS" strings, text answers, the link recovery of the
// scrambling ticket printers) and the end of a ticket (status polling before ejection).
//
// Input: byte 0 picks the model, byte 1 the configuration (sensor words, paper kinds,
// scrambling); then, for each write of the driver in turn, answer bursts, each a header
// byte (bits 0-5 length, bit 6 another burst follows for the same write, bit 7 the burst
// comes after the driver stopped waiting) and its bytes.
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/fuzz_support.h"

namespace {

using Parameters = std::vector<std::pair<std::wstring, std::wstring>>;

// Configuration words that change how an answer is read; bit i of the options byte
// turns row i on.
const std::pair<const wchar_t*, const wchar_t*> kOptionWords[] = {
    {L"param_EndPaperSensor", L"FALSE"},  {L"param_NearlyEndPaperSensor", L"FALSE"},
    {L"param_EndPaper", L"FALSE"},        {L"param_NearlyEndPaper", L"FALSE"},
    {L"param_Cripted", L"TRUE"},          {L"param_TypePaper", L"val_Ticket"},
    {L"param_Sensor", L"val_Software"},   {L"param_TicketEjection", L"FALSE"},
};

// Longer than any read time-out: the burst misses the read that waits for it.
constexpr int kLateMs = 10000;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  posprint::fuzz::InitialiseHarness();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace posprint;
  const auto& models = fuzz::LinkedModels();
  if (models.empty() || size < 2) return 0;
  fuzz::Input input(data, size);
  const fuzz::LinkedModel& model = models[input.Byte() % models.size()];
  const std::uint8_t options = input.Byte();
  Parameters parameters;
  for (unsigned i = 0; i < 8; ++i)
    if (options & (1u << i)) parameters.push_back(kOptionWords[i]);

  fuzz::Session session(model, parameters);
  session.Port().OnWrite([&input](ScriptedPort& port, const std::string&) {
    for (bool more = true; more && !input.Empty();) {
      const std::uint8_t header = input.Byte();
      more = header & 0x40;
      port.Answer(input.Bytes(header & 0x3F), (header & 0x80) ? kLateMs : 0);
    }
  });
  session.Command("INIT_PRINTER");
  session.Command("CHECK");
  session.Command("CHECK");
  session.Command("START_PRINT");
  session.Command("STOP_PRINT");
  session.Port().OnWrite(nullptr);
  return 0;
}
