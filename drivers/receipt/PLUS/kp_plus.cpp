#include "drivers/receipt/PLUS/kp_plus.h"

#include "drivers/receipt/PLUS/plus_commands.h"
#include "frame/config_values.h"
#include "frame/factory.h"
#include "platform/codepage.h"

namespace PLUS {

KpPLUS::KpPLUS() : DriverBase(*FindIdentity("create_KpPLUS")) {}

// Configuration: each key keeps its default unless its value (upper-cased) is one of
// the words below.
void KpPLUS::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (!config) return;
  const IParameterCollection& keys = *parameters;

  Nx_Stringa feeds = ParameterText(keys, L"param_RollEjection").Upper();
  int lines = 0;
  if (feeds == L"FALSE") config->feedLines = 0;
  else if (WholeNumber(feeds, lines) && lines >= 0 && lines <= kMaxFeedLines) config->feedLines = static_cast<std::uint8_t>(lines);

  Nx_Stringa cut = ParameterText(keys, L"param_CutType").Upper();
  if (cut == L"VAL_FULL") config->cutKind = kCutFull;
  else if (cut == L"VAL_NONE" || cut == L"NONE" || cut == L"FALSE") config->cutKind = kCutNone;
  else if (cut == L"VAL_PARTIAL") config->cutKind = kCutPartial;

  if (ParameterText(keys, L"param_NearlyEndPaperSensor").Upper() == L"FALSE") config->ignoreNearEnd = 1;
  if (ParameterText(keys, L"param_EndPaperSensor").Upper() == L"FALSE") config->ignorePaperEnd = 1;
  if (ParameterText(keys, L"param_PaperWidth").Upper() == L"VAL_58MM") config->narrowPaper = 1;
  if (ParameterText(keys, L"param_CodeTable").Upper() == L"VAL_PC858") config->euroTable = 1;
}

// Open: port, time-outs, context (font A columns of the roll), ESC @, then the code table
// (after the initialise, which would reset it).
bool KpPLUS::OpenPrinter() {
  if (!OpenPort()) return false;
  ApplyTimeouts();
  const Config& config = ConfigAs<Config>();
  PortContext& ctx = NewContext(plus_Columns(config, false));
  codePage = config.euroTable ? CodepageTranslator::kPC858 : CodepageTranslator::kPC437;
  codePageSet = 1;
  // A printer that takes nothing shows up at CHECK; the port itself is open.
  if (plus_Initialise(ctx) == kSuccess) plus_SelectCodeTable(ctx, config.euroTable);
  isOpen = 1;
  return true;
}

int KpPLUS::QueryStatus() { return plus_ReadStatus(Port()); }

PrinterResult KpPLUS::EndTicket() { return plus_EndPrint(Port()); }

PrinterResult KpPLUS::SelectFont(const TextAttributes& attributes) { return plus_SelectFont(Port(), attributes); }

// The CUT element asks for a cut even when the end of a receipt is configured without
// one: a full cut where full cuts are configured, else a partial one.
PrinterResult KpPLUS::CutCommand() {
  return plus_Cut(Port(), Port().ConfigAs<Config>().cutKind == kCutFull ? kCutFull : kCutPartial);
}

PrinterResult KpPLUS::PrintLogoImage(const std::vector<std::uint8_t>& bmp) { return plus_PrintLogo(Port(), bmp); }

}  // namespace PLUS

POSPRINT_FACTORY(create_KpPLUS, PLUS::KpPLUS)
