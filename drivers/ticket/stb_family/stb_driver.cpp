#include "drivers/ticket/stb_family/stb_driver.h"

#include <algorithm>

#include "frame/output.h"
#include "platform/codepage.h"

namespace StbFamily {

StbFamilyDriver::StbFamilyDriver(const ModelIdentity& identity, const ModelTraits& traits)
    : DriverBase(identity), traits_(traits) {}

// --- open ---

bool StbFamilyDriver::OpenPrinter() {
  if (!OpenPort()) return false;
  PortContext port;
  port.handle = portHandle;
  ChoosePortMode(port);
  ApplyTimeouts();
  PortContext& ctx = NewContext(42);
  ctx.SetTerminator("\r\n");
  // The printer starts in PC437; texts switch to PC858 and back as they need.
  codePage = CodepageTranslator::kPC437;
  codePageSet = 1;
  StartLink();
  isOpen = 1;
  return true;
}

void StbFamilyDriver::StartLink() {
  stb_SelectCodeTable(Port(), codePage);
  SetRowWidth();
  Setup();  // a printer that misses a setting still prints: the open succeeds
}

PrinterResult StbFamilyDriver::SetRowWidth() {
  Port().lineWidth = 42;
  Port().SetTerminator("\r\n");
  return kSuccess;
}

bool StbFamilyDriver::StartPrint() {
  if (!RequireOpen()) return false;
  return StartTicket() == kSuccess;
}

// --- fields ---

PrinterResult StbFamilyDriver::CutByType(const Nx_Stringa& type) {
  Cut cut = traits_.cutRule.otherwise;
  if (type == L"CUT_FULL") cut = traits_.cutRule.full;
  else if (type == L"CUT_PARTIAL") cut = traits_.cutRule.partial;
  return stb_Cut(Port(), cut);
}

// The cut's own write result is not the field's: a printer that missed the cut has still
// printed the ticket.
bool StbFamilyDriver::FieldCut(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa type;
  Attribute(node, L"Type", type);
  CutByType(type);
  return true;
}

PrinterResult StbFamilyDriver::PrintBarcodeData(const Nx_Stringa& data, const BarcodeAttributes& barcode) {
  SetRotation(Port(), kRotation0, true);  // a barcode is never printed turned
  if (traits_.barcode == BarcodeStyle::kPlain) {
    ResetPrintMode(Port());
    return PrintBarcode(Port(), PrinterText(data), barcode.type, kAlignCenter);
  }
  stb_SelectNormalFont(Port());
  return PrintBarcodeWithText(Port(), PrinterText(data), barcode.type, barcode.height, barcode.moduleWidth,
                              barcode.textPosition);
}

bool StbFamilyDriver::FieldBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  // Height is in dots on these printers (default 80, 10 mm).
  const BarcodeAttributes barcode = ReadBarcodeAttributes(node, 1);
  const PrinterResult result = PrintBarcodeData(Text(node), barcode);
  return result == kSuccess || Fail(result, kErrBarcode);
}

// The family prints every text in the printer's normal font; the field's Font only
// decides where a double field starts (see LineFonts).
PrinterResult StbFamilyDriver::SelectFont(const TextAttributes& attributes) {
  fieldFont_ = attributes.font;
  return kSuccess;
}

PrinterResult StbFamilyDriver::PrintLogoImage(const std::vector<std::uint8_t>& bmp) {
  return stb_PrintLogo(Port(), bmp, LogoWidthDots());
}

// The printer holds one code table at a time: keep the current one while it can carry the
// text, else switch to the other before the text goes out.
std::string StbFamilyDriver::PrinterText(const Nx_Stringa& text) {
  if (codePageSet) {
    const int other = codePage == CodepageTranslator::kPC437 ? CodepageTranslator::kPC858
                                                              : CodepageTranslator::kPC437;
    const int wanted = text.FindCodePageIn({codePage, other});
    if (wanted != codePage && stb_SelectCodeTable(Port(), wanted) == kSuccess) codePage = wanted;
  }
  return text.GetAscii(codePage);
}

// --- text lines ---

bool StbFamilyDriver::IsSideAlignment(int alignment) const {
  return alignment == kAlignLeft || alignment == kAlignLeftPrinter || alignment == kAlignRight ||
         alignment == kAlignRightPrinter;
}

int StbFamilyDriver::DoubleFieldFont() const {
  return portContext->lineWidth == kTicketRowWidth ? kTicketFont : fieldFont_;
}

int StbFamilyDriver::SingleFieldFont() const {
  return portContext->lineWidth == kTicketRowWidth ? kTicketFont : traits_.lineFonts.singleFieldFont;
}

int StbFamilyDriver::LineStart(int fontCode) const {
  if (fontCode <= 0 || fontCode >= kFontNormal) return 0;  // no column: a font of its own
  if (traits_.lineFonts.mode == 0) return fontCode;
  return std::min(fontCode, std::max(0, HeadColumns() - portContext->lineWidth));
}

PrinterResult StbFamilyDriver::PrintTwoColumns(int leftMargin, int rightMargin, std::string_view left,
                                               std::string_view right, char fill) {
  const int start = LineStart(DoubleFieldFont());
  if (start == 0) return PrintDoubleField(Port(), leftMargin, rightMargin, left, right, fill);
  // The same layout over the printable area, pushed right by its start column.
  PortContext shifted = Port();
  shifted.lineWidth += start;
  return PrintDoubleField(shifted, leftMargin + start, rightMargin, left, right, fill);
}

PrinterResult StbFamilyDriver::PrintTextLine(std::string_view text) {
  return PrintCentredField(Port(), 0, LineStart(SingleFieldFont()), text);
}

PrinterResult StbFamilyDriver::PrintRule(std::string_view pattern) {
  return PrintPatternLine(Port(), 0, LineStart(SingleFieldFont()), pattern);
}

}  // namespace StbFamily
