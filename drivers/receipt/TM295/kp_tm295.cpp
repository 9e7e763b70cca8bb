#include "drivers/receipt/TM295/kp_tm295.h"

#include <climits>

#include "drivers/receipt/TM295/tm295_commands.h"
#include "frame/factory.h"
#include "frame/output.h"
#include "platform/otool.h"

namespace TM295 {

namespace {
// 35 characters a line; the field format sends no quarter turn.
constexpr ReceiptFamily::FamilyTraits kTraits = {35, false};

// A number key: its atoi value when the key is set and the value lies in [low, high];
// otherwise the default stays.
void ReadNumber(const IParameterCollection& keys, const wchar_t* key, int low, int high, int& value) {
  const Nx_Stringa text = ParameterText(keys, key).Upper();
  if (text.IsEmpty()) return;
  const int number = AtoiText(text);
  if (number >= low && number <= high) value = number;
}
}  // namespace

KpTM295::KpTM295() : ReceiptFamilyDriver(*FindIdentity("create_KpTM295"), kTraits) {}

void KpTM295::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (!config) return;
  const IParameterCollection& keys = *parameters;
  if (ParameterText(keys, L"param_TicketBlock").Upper() == L"FALSE") config->ticketBlock = 1;
  if (ParameterText(keys, L"param_TicketEjection").Upper() == L"FALSE") config->ticketEjectionOff = 1;
  int lineFeed = config->lineFeed, linefeedExit = config->linefeedExit;
  ReadNumber(keys, L"param_LineFeed", 0, INT_MAX, lineFeed);
  ReadNumber(keys, L"param_LinefeedExit", 0, INT_MAX, linefeedExit);
  config->lineFeed = lineFeed;
  config->linefeedExit = linefeedExit;
  // Band repeats and module width: 0 (or a word) keeps the default, as do values that do
  // not fit the printer's byte.
  int height = config->barcodeHeight, width = config->barcodeWidth;
  ReadNumber(keys, L"param_BarcodeHeight", 1, 255, height);
  ReadNumber(keys, L"param_BarcodeWidth", 1, 255, width);
  config->barcodeHeight = static_cast<std::uint8_t>(height);
  config->barcodeWidth = static_cast<std::uint8_t>(width);
}

int KpTM295::QueryStatus() { return tm295_ReadStatus(Port()); }
PrinterResult KpTM295::SelectCodePage(int page) { return tm295_SelectCodePage(Port(), page); }
PrinterResult KpTM295::SelectTerminator() { return tm295_SelectTerminator(Port()); }
PrinterResult KpTM295::Initialise() { return tm295_Initialise(Port()); }
PrinterResult KpTM295::SelectFont(const TextAttributes& attributes) { return tm295_SelectFont(Port(), attributes); }
PrinterResult KpTM295::PrintLogoImage(const std::vector<std::uint8_t>& bmp) { return tm295_PrintLogo(Port(), bmp); }

// A slip that stays in the printer is first fed clear of the print head.
PrinterResult KpTM295::EndTicket() {
  tm295_FeedBeforeEject(Port());
  return tm295_EndSlip(Port());
}

bool KpTM295::checkStopPrint() {
  const int status = CheckStatus();
  if (status == kStatusReady) return EndPrint();
  if (status != 1) set_last_error(status);  // 1: not open, already recorded as 3
  return false;
}

bool KpTM295::OwnCommand(const Nx_Stringa& command, IXMLDOMNodePtr node) {
  std::int32_t code = 0;
  if (ownCommands.lookUp(command, code) && code == kCmdOwn && isOpen && NodeName(node).Upper() == L"XONXOFF") {
    otool_IOCTL(portHandle, kPortSetState, kPortStateXonXoff);
  }
  return true;
}

// ESC d feeds whole lines on a slip; up to 29 at a time.
bool KpTM295::FieldLineFeed(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  Attribute(node, L"Value", value);
  PrinterResult result = tm295_FeedLines(Port(), AtoiText(value));
  if (result == kSuccess) return true;
  set_last_error(result);  // 0, as every model records a failed feed
  return false;
}

bool KpTM295::FieldBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  SetRotation(Port(), kRotation0, traits_.rotationWithTurn);
  ResetPrintMode(Port());
  Nx_Stringa type;
  Attribute(node, L"Type", type);
  PrinterResult result = tm295_PrintBarcode(Port(), PrinterText(Text(node)), LookupBarcodeType(type.c_str()));
  return result == kSuccess || Fail(result, kErrBarcode);
}

// A bit-image barcode starts at the left margin: only OffsetY places it.
bool KpTM295::FieldMobileBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  if (AttributeSet(node, L"OffsetY", value) && FeedLines(Port(), AtoiText(value)) != kSuccess)
    return Fail(kErrTextAttributes, kErrTextAttributes);
  return FieldBarcode(node);
}

}  // namespace TM295

POSPRINT_FACTORY(create_KpTM295, TM295::KpTM295)
