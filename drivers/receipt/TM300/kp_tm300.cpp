#include "drivers/receipt/TM300/kp_tm300.h"

#include "drivers/receipt/TM300/tm300_commands.h"
#include "frame/factory.h"
#include "platform/clock.h"

namespace TM300 {

namespace {
// 33 characters a line; the field format sends no quarter turn.
constexpr ReceiptFamily::FamilyTraits kTraits = {33, false};

// After the cut the printer is busy and stays silent for a while: at most this many
// further status queries, half a second apart.
constexpr int kReadyRetries = 6;
constexpr int kReadyRetryWaitMs = 500;
}  // namespace

KpTM300::KpTM300() : ReceiptFamilyDriver(*FindIdentity("create_KpTM300"), kTraits) {}

void KpTM300::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (config) ReadRollConfig(*parameters, kConfigKeys, *config);
}

int KpTM300::QueryStatus() { return tm300_ReadStatus(Port()); }
PrinterResult KpTM300::EndTicket() { return tm300_Eject(Port()); }
PrinterResult KpTM300::SelectCodePage(int page) { return tm300_SelectCodePage(Port(), page); }
PrinterResult KpTM300::SelectTerminator() { return tm300_SelectTerminator(Port()); }
PrinterResult KpTM300::Initialise() { return tm300_Initialise(Port()); }
PrinterResult KpTM300::SelectFont(const TextAttributes& attributes) { return tm300_SelectFont(Port(), attributes); }
PrinterResult KpTM300::PrintLogoImage(const std::vector<std::uint8_t>& bmp) { return tm300_PrintLogo(Port(), bmp); }

bool KpTM300::checkStopPrint() {
  if (!EndPrint()) return false;
  int status = CheckStatus();
  for (int retries = 0; status == kStatusNoAnswer && retries < kReadyRetries; ++retries) {
    status = CheckStatus();
    Sleep(kReadyRetryWaitMs);
  }
  if (status == kStatusReady) return true;
  set_last_error(status);
  return false;
}

}  // namespace TM300

POSPRINT_FACTORY(create_KpTM300, TM300::KpTM300)
