#include "drivers/receipt/LX300/kp_lx300.h"

#include "drivers/receipt/LX300/lx300_commands.h"
#include "frame/config_values.h"
#include "frame/factory.h"
#include "frame/output.h"
#include "platform/codepage.h"

namespace LX300 {

KpLX300::KpLX300() : DriverBase(*FindIdentity("create_KpLX300")) {}

// Configuration: each key keeps its default unless its value (upper-cased) is one of
// the words or numbers below.
void KpLX300::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (!config) return;
  const IParameterCollection& keys = *parameters;

  Nx_Stringa quality = ParameterText(keys, L"param_PrintQuality").Upper();
  if (quality == L"VAL_NLQ") config->nlq = 1;
  else if (quality == L"VAL_DRAFT") config->nlq = 0;

  if (ParameterText(keys, L"param_FormFeed").Upper() == L"FALSE") config->formFeed = 0;

  int number = 0;
  if (WholeNumber(ParameterText(keys, L"param_PageLength"), number) && number >= 1 && number <= 127)
    config->pageLines = static_cast<std::uint8_t>(number);
  if (WholeNumber(ParameterText(keys, L"param_Columns"), number) && number >= 20 && number <= 136)
    config->columns = static_cast<std::uint8_t>(number);

  Nx_Stringa density = ParameterText(keys, L"param_LogoDensity").Upper();
  for (const LogoDensity& row : kLogoDensities)
    if (density == row.word) config->logoMode = row.mode;

  if (ParameterText(keys, L"param_XonXoff").Upper() == L"FALSE") config->xonXoff = 0;
}

// Open: port, time-outs, flow control before the first byte, context (columns at 10 cpi),
// ESC @ with the PC437 table, then quality and page length.
bool KpLX300::OpenPrinter() {
  if (!OpenPort()) return false;
  ApplyTimeouts();
  const Config& config = ConfigAs<Config>();
  if (config.xonXoff) lx300_SwitchOnXonXoff(portHandle);
  PortContext& ctx = NewContext(lx300_Columns(config, false, false));
  codePage = CodepageTranslator::kPC437;
  codePageSet = 1;
  // A printer that takes nothing shows up at CHECK; the port itself is open.
  if (lx300_Initialise(ctx) == kSuccess) lx300_PageSetup(ctx);
  isOpen = 1;
  return true;
}

int KpLX300::QueryStatus() { return lx300_PortStatus(Port()); }

// STOP_PRINT: the framework's end of print reaches here; the page is fed out.
PrinterResult KpLX300::EndTicket() { return lx300_EndPrint(Port()); }

PrinterResult KpLX300::SelectFont(const TextAttributes& attributes) { return lx300_SelectFont(Port(), attributes); }

// A dot-matrix head prints along its line only: a turned field prints upright.
PrinterResult KpLX300::SelectRotation(int) { return kSuccess; }

PrinterResult KpLX300::PrintLogoImage(const std::vector<std::uint8_t>& bmp) { return lx300_PrintLogo(Port(), bmp); }

bool KpLX300::FieldBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  return PrintBarcodeField(node, ReadBarcodeAttributes(node, 8));  // millimetres as dots at 8/mm
}

// A barcode placed on the page: line feeds before it (OffsetY) and the module width from
// Width. The printer places a bar code at the left margin, upright: Justify and Rotation
// have nothing to change.
bool KpLX300::FieldMobileBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  if (AttributeSet(node, L"OffsetY", value) && FeedLines(Port(), AtoiText(value)) != kSuccess)
    return Fail(kErrTextAttributes, kErrTextAttributes);
  BarcodeAttributes barcode = ReadBarcodeAttributes(node, 8);
  if (AttributeSet(node, L"Width", value)) barcode.moduleWidth = AtoiText(value);
  return PrintBarcodeField(node, barcode);
}

bool KpLX300::PrintBarcodeField(IXMLDOMNodePtr node, const BarcodeAttributes& barcode) {
  // ESC ! 0: master select, every mode off, so the human-readable line prints plain
  if (ResetPrintMode(Port()) != kSuccess) return Fail(kFailure, kErrBarcode);
  PrinterResult result = lx300_PrintBarcode(Port(), PrinterText(Text(node)), barcode.type, barcode.height,
                                            barcode.moduleWidth, barcode.textPosition != kTextNone);
  return result == kSuccess || Fail(result, kErrBarcode);
}

}  // namespace LX300

POSPRINT_FACTORY(create_KpLX300, LX300::KpLX300)
