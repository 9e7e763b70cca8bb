// The print-job renderers: one NEWPRINT element becomes one field on the paper.
// This is the reference behaviour (the TMT70's); models override what differs.
#include <string>

#include "frame/driver_base.h"
#include "frame/output.h"
#include "platform/logo_files.h"

bool DriverBase::PrintField(int fieldType, IXMLDOMNodePtr node) {
  switch (fieldType) {
    case kFieldCut: return FieldCut(node);
    case kFieldLineFeed: return FieldLineFeed(node);
    case kFieldLine: return FieldLine(node);
    case kFieldBarcode: return FieldBarcode(node);
    case kFieldLogo: return FieldLogo(node);
    case kFieldDoubleField: return FieldDoubleField(node);
    case kFieldSingleField: return FieldSingleField(node);
    case kFieldMobileField: return FieldMobileField(node);
    case kFieldMobileBarcode: return FieldMobileBarcode(node);
    default: return true;  // an element that is not a field prints nothing
  }
}

// --- model commands: neutral defaults ---

PrinterResult DriverBase::SelectFont(const TextAttributes&) { return kSuccess; }
PrinterResult DriverBase::SelectRotation(int rotation) { return SetRotation(Port(), rotation, false); }
PrinterResult DriverBase::CutCommand() { return kSuccess; }
PrinterResult DriverBase::PrintLogoImage(const std::vector<std::uint8_t>& bmp) {
  return PrintBitmap(Port(), bmp, false, 0);
}
std::string DriverBase::PrinterText(const Nx_Stringa& text) { return text.GetAscii(codePage); }

PrinterResult DriverBase::PrintTwoColumns(int leftMargin, int rightMargin, std::string_view left,
                                          std::string_view right, char fill) {
  return PrintDoubleField(Port(), leftMargin, rightMargin, left, right, fill);
}
PrinterResult DriverBase::PrintTextLine(std::string_view text) { return PrintCentredField(Port(), 0, 0, text); }
PrinterResult DriverBase::PrintRule(std::string_view pattern) { return PrintPatternLine(Port(), 0, 0, pattern); }

PrinterResult DriverBase::PrintAlignedText(int alignment, std::string_view text) {
  switch (alignment) {
    case kAlignLeft:
    case kAlignLeftPrinter:
      return PrintTwoColumns(0, 0, text, "", ' ');
    case kAlignRight:
    case kAlignRightPrinter:
      return PrintTwoColumns(0, 0, "", text, ' ');
    default:
      return PrintTextLine(text);
  }
}

// --- attribute reading ---

TextAttributes DriverBase::ReadTextAttributes(IXMLDOMNodePtr node) const {
  TextAttributes attributes;
  Nx_Stringa value;
  Attribute(node, L"Rotation", value);
  attributes.rotation = LookupRotation(value.c_str());
  Attribute(node, L"Font", value);
  attributes.font = LookupFontSize(value.c_str());
  Attribute(node, L"Height", value);
  attributes.height = LookupExpansionHeight(value.c_str());
  Attribute(node, L"Width", value);
  attributes.width = LookupExpansionWidth(value.c_str());
  Attribute(node, L"TypeFont", value);
  attributes.style = LookupFontStyle(value.c_str());
  return attributes;
}

bool DriverBase::ApplyTextAttributes(IXMLDOMNodePtr node, bool withOffsets) {
  Nx_Stringa value;
  if (withOffsets) {
    if (AttributeSet(node, L"OffsetY", value) && FeedLines(Port(), AtoiText(value)) != kSuccess) return false;
    if (AttributeSet(node, L"OffsetX", value) && WriteSpaces(Port(), AtoiText(value)) != kSuccess) return false;
  }
  TextAttributes attributes = ReadTextAttributes(node);
  if (SelectRotation(attributes.rotation) != kSuccess) return false;
  return SelectFont(attributes) == kSuccess;
}

int DriverBase::ReadHriPosition(IXMLDOMNodePtr node) const {
  Nx_Stringa value;
  if (!AttributeSet(node, L"HRI", value)) return kTextBelow;
  if (value == L"no") return kTextNone;
  if (value == L"sopra") return kTextAbove;
  if (value == L"sotto") return kTextBelow;
  if (value == L"sotto_sopra" || value == L"sopra_sotto") return kTextBoth;
  return kTextBelow;  // an unknown word keeps the text below the bars
}

DriverBase::BarcodeAttributes DriverBase::ReadBarcodeAttributes(IXMLDOMNodePtr node, int heightScale) const {
  BarcodeAttributes barcode;
  Nx_Stringa value;
  if (AttributeSet(node, L"Type", value)) barcode.type = LookupBarcodeType(value.c_str());
  if (AttributeSet(node, L"Height", value)) {
    // The terminal's 32-bit arithmetic wraps round on a height of millions of millimetres;
    // so does this, in unsigned arithmetic, instead of overflowing a signed int.
    barcode.height = static_cast<int>(static_cast<unsigned>(AtoiText(value)) * static_cast<unsigned>(heightScale));
  }
  if (AttributeSet(node, L"ModuleWidth", value)) barcode.moduleWidth = AtoiText(value);
  barcode.textPosition = ReadHriPosition(node);
  return barcode;
}

// --- fields ---

bool DriverBase::FieldCut(IXMLDOMNodePtr) {
  if (!RequireOpen()) return false;
  CutCommand();
  return true;
}

bool DriverBase::FieldLineFeed(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  Attribute(node, L"Value", value);
  PrinterResult result = WriteTerminators(Port(), AtoiText(value));
  if (result == kSuccess) return true;
  set_last_error(result);  // the failure's own result, 0, is what the host has always seen
  return false;
}

bool DriverBase::FieldLine(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa pattern;
  if (!Attribute(node, L"Char", pattern) || pattern.IsEmpty()) pattern = L"-";
  if (!ApplyTextAttributes(node, false)) return Fail(kErrTextAttributes, kErrTextAttributes);
  PrinterResult result = PrintRule(PrinterText(pattern));
  return result == kSuccess || Fail(kErrPatternLine, kErrPatternLine);
}

bool DriverBase::FieldBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  SetRotation(Port(), kRotation0, true);  // a barcode is never printed turned
  ResetPrintMode(Port());
  BarcodeAttributes barcode = ReadBarcodeAttributes(node, 8);  // millimetres at 8 dots/mm
  std::string data = PrinterText(ElementText(node));
  PrinterResult result = PrintBarcodeWithText(Port(), data, barcode.type, barcode.height, barcode.moduleWidth,
                                              barcode.textPosition);
  return result == kSuccess || Fail(result, kErrBarcode);
}

PrinterResult DriverBase::LoadLogo(const Nx_Stringa& fileName, std::vector<std::uint8_t>& bmp) {
  if (fileName.IsEmpty()) return kErrLogoNameEmpty;
  if (fileName.Upper().FindString(L".BMP") < 0) return kErrLogoNotBmp;
  std::string path = std::string(posprint::kTerminalLogoFolder) + fileName.ToUtf8();
  switch (posprint::ReadTerminalFile(path, bmp)) {
    case posprint::FileReadResult::kOk: return kSuccess;
    case posprint::FileReadResult::kNoMemory: return kErrNoMemory;
    default: return kErrLogoCannotOpen;
  }
}

bool DriverBase::FieldLogo(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa fileName, rotation;
  Attribute(node, L"FileName", fileName);
  Attribute(node, L"Rotation", rotation);
  ResetPrintMode(Port());
  SelectRotation(LookupRotation(rotation.c_str()));
  std::vector<std::uint8_t> bmp;
  PrinterResult loaded = LoadLogo(fileName, bmp);
  if (loaded != kSuccess) return Fail(loaded, kErrLogoPrint);
  PrinterResult result = PrintLogoImage(bmp);
  return result == kSuccess || Fail(result, kErrLogoPrint);
}

bool DriverBase::FieldSingleField(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa justify;
  int alignment = AttributeSet(node, L"Justify", justify) ? LookupAlignment(justify.c_str())
                                                           : SingleFieldDefaultAlignment();
  if (IsSideAlignment(alignment)) return RenderDoubleField(node);
  if (!ApplyTextAttributes(node, false)) return Fail(kErrTextAttributes, kErrTextAttributes);
  for (IXMLDOMNodePtr field = FirstChild(node, L"Field"); !field.IsNull(); field = NextSibling(field, L"Field")) {
    if (PrintTextLine(PrinterText(ElementText(field))) != kSuccess) return Fail(kErrTextLine, kErrTextLine);
  }
  return true;
}

bool DriverBase::FieldDoubleField(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  return RenderDoubleField(node);
}

bool DriverBase::RenderDoubleField(IXMLDOMNodePtr node) {
  Nx_Stringa value;
  int margin = AttributeSet(node, L"Margin", value) ? AtoiText(value) : 0;
  char fill = ' ';
  if (Attribute(node, L"Char", value)) fill = value.IsEmpty() ? '\0' : PrinterText(value)[0];
  if (!ApplyTextAttributes(node, false)) return Fail(kErrTextAttributes, kErrTextAttributes);

  // Only an element written exactly "SingleField" prints its Field children here; the
  // test keeps case, so "SINGLEFIELD" looks for LeftField children and prints nothing.
  if (NodeNameIs(node, L"SingleField")) {
    int alignment = AttributeSet(node, L"Justify", value) ? LookupAlignment(value.c_str()) : kAlignLeft;
    for (IXMLDOMNodePtr field = FirstChild(node, L"Field"); !field.IsNull(); field = NextSibling(field, L"Field")) {
      std::string text = PrinterText(ElementText(field));
      PrinterResult result = alignment == kAlignLeft ? PrintTwoColumns(margin, 0, text, "", fill)
                                                     : PrintTwoColumns(margin, 0, "", text, fill);
      if (result != kSuccess) return Fail(kErrTextLine, kErrTextLine);
    }
    return true;
  }

  int marginLeft = 0, marginRight = 0;
  if (margin == 0) {
    if (AttributeSet(node, L"MarginSx", value)) marginLeft = AtoiText(value);
    if (AttributeSet(node, L"MarginDx", value)) marginRight = AtoiText(value);
  }
  bool sideMargins = margin == 0 && (marginLeft != 0 || marginRight != 0);
  for (IXMLDOMNodePtr left = FirstChild(node, L"LeftField"); !left.IsNull();) {
    IXMLDOMNodePtr right = NextSibling(left, L"RightField");
    if (right.IsNull()) return Fail(kErrNoRightField, kErrNoRightField);
    std::string leftText = PrinterText(ElementText(left));
    std::string rightText = PrinterText(ElementText(right));
    PrinterResult result = sideMargins ? PrintTwoColumns(marginLeft, marginRight, leftText, rightText, fill)
                                       : PrintTwoColumns(margin, 0, leftText, rightText, fill);
    if (result != kSuccess) return Fail(kErrTextLine, kErrTextLine);
    left = NextSibling(right, L"LeftField");
  }
  return true;
}

bool DriverBase::FieldMobileField(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  Attribute(node, L"Alignment", value);
  int alignment = LookupAlignment(value.c_str());
  if (!ApplyTextAttributes(node, true)) return Fail(kErrTextAttributes, kErrTextAttributes);
  for (IXMLDOMNodePtr field = FirstChild(node, L"Field"); !field.IsNull(); field = NextSibling(field, L"Field")) {
    if (PrintAlignedText(alignment, PrinterText(ElementText(field))) != kSuccess) return Fail(kErrTextLine, kErrTextLine);
  }
  return true;
}

// A barcode placed on the page: line feeds before it (OffsetY), its own rotation and
// alignment (Justify), module width from Width, height in millimetres.
bool DriverBase::FieldMobileBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  if (AttributeSet(node, L"OffsetY", value) && FeedLines(Port(), AtoiText(value)) != kSuccess)
    return Fail(kErrTextAttributes, kErrTextAttributes);
  Attribute(node, L"Rotation", value);
  if (SetRotation(Port(), LookupRotation(value.c_str()), true) != kSuccess || ResetPrintMode(Port()) != kSuccess)
    return Fail(kErrTextAttributes, kErrTextAttributes);
  BarcodeAttributes barcode = ReadBarcodeAttributes(node, 8);
  if (AttributeSet(node, L"Width", value)) barcode.moduleWidth = AtoiText(value);
  int height = barcode.height > 255 ? 255 : barcode.height;
  Attribute(node, L"Justify", value);
  int alignment = LookupAlignment(value.c_str());
  if (SetBarcodeStyle(Port(), barcode.textPosition, height, barcode.moduleWidth) != kSuccess)
    return Fail(kFailure, kErrBarcode);
  PrinterResult result = PrintBarcode(Port(), PrinterText(ElementText(node)), barcode.type, alignment);
  return result == kSuccess || Fail(result, kErrBarcode);
}
