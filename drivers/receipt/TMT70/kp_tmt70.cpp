#include "drivers/receipt/TMT70/kp_tmt70.h"

#include "drivers/receipt/TMT70/tmt70_commands.h"
#include "frame/factory.h"
#include "platform/codepage.h"

namespace TMT70 {

KpTMT70::KpTMT70() : DriverBase(*FindIdentity("create_KpTMT70")) {}

// Configuration: each key keeps its default unless its value is the model's word.
// The sensor bytes are inverted (1 = sensor ignored), as the printers have always had them.
void KpTMT70::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (!config) return;
  const IParameterCollection& keys = *parameters;
  if (ParameterText(keys, L"param_RollEjection").Upper() == L"FALSE") config->rollEjectionFeeds = 0;
  if (ParameterText(keys, L"param_NearlyEndPaperSensor").Upper() == L"FALSE") config->ignoreNearEnd = 1;
  if (ParameterText(keys, L"param_EndPaperSensor").Upper() == L"FALSE") config->ignorePaperEnd = 1;
  // Compared as written: "VAL_PARTIAL" is not the word.
  if (ParameterText(keys, L"param_CutType") == L"val_Partial") config->cutType = 1;
}

// Open: port, time-outs, context (42 characters), code page 8, ESC @ and GS b.
bool KpTMT70::OpenPrinter() {
  if (!OpenPort()) return false;
  ApplyTimeouts();
  PortContext& ctx = NewContext(42);
  codePage = CodepageTranslator::kPC437;
  codePageSet = 1;
  tmt70_SelectCodeTable(ctx, codePage);
  ctx.SetTerminator("\r\n");
  tmt70_Initialise(ctx);
  isOpen = 1;
  return true;
}

int KpTMT70::QueryStatus() { return tmt70_ReadStatus(Port()); }

PrinterResult KpTMT70::EndTicket() { return tmt70_EndPrint(Port()); }

PrinterResult KpTMT70::SelectFont(const TextAttributes& attributes) { return tmt70_SelectFont(Port(), attributes); }

// The CUT element cuts whatever the configuration says.
PrinterResult KpTMT70::CutCommand() { return tmt70_Cut(Port()); }

PrinterResult KpTMT70::PrintLogoImage(const std::vector<std::uint8_t>& bmp) { return tmt70_PrintLogo(Port(), bmp); }

}  // namespace TMT70

POSPRINT_FACTORY(create_KpTMT70, TMT70::KpTMT70)
