// The label's job elements (NEWPRINT). Every field is laid out by the ZPL layer at the
// print cursor; nothing of the receipt printers' rendering applies here.
#include <charconv>
#include <string>

#include "drivers/label/ZEBRA/kp_zebra.h"

namespace ZEBRA {

namespace {

// Barcode defaults of the BARCODE element.
constexpr int kBarcodeHeightMm = 10;
constexpr int kBarcodeModuleWidth = 3;
constexpr float kBarcodeRatio = 3.0f;

// A decimal fraction by the atof rule ("2.5", " 2.5mm" -> 2.5; "abc" -> 0), with a point
// whatever the host's locale.
float DecimalFraction(const Nx_Stringa& value) {
  std::string text = value.ToUtf8();
  std::size_t at = text.find_first_not_of(" \t\n\v\f\r");
  if (at == std::string::npos) return 0.0f;
  if (text[at] == '+') ++at;
  float result = 0.0f;
  std::from_chars(text.data() + at, text.data() + text.size(), result, std::chars_format::fixed);
  return result;
}

bool IsLeftAlignment(int alignment) { return alignment == kAlignLeft || alignment == kAlignLeftPrinter; }
bool IsRightAlignment(int alignment) { return alignment == kAlignRight || alignment == kAlignRightPrinter; }

}  // namespace

bool KpZEBRA::PrintField(int fieldType, IXMLDOMNodePtr node) {
  switch (fieldType) {
    case kFieldCut:  // labels are not cut
    case kFieldMobileField:
    case kFieldMobileBarcode: return RequireOpen();
    case kFieldLineFeed: return LabelLineFeed(node);
    case kFieldLine: return LabelLine(node);
    case kFieldBarcode: return LabelBarcode(node);
    case kFieldLogo: return LabelLogo(node);
    case kFieldDoubleField: return RequireOpen() && LabelDoubleField(node);
    case kFieldSingleField: return LabelSingleField(node);
    default: return true;  // an element that is not a field prints nothing
  }
}

// Height and Width scale the printer's font; the Font attribute has nothing to choose
// from, as the label is printed in the one scalable font set by ^CF.
PrinterResult KpZEBRA::ApplyLabelFont(IXMLDOMNodePtr node) {
  if (zpl_FontNormal(Port()) != kSuccess) return kFailure;
  Nx_Stringa value;
  Attribute(node, L"Height", value);
  const int height = LookupExpansionHeight(value.c_str());
  Attribute(node, L"Width", value);
  const int width = LookupExpansionWidth(value.c_str());
  const int heightMultiplier = height > kHeight1 && height <= kHeight8 ? height - 30 : 1;
  const int widthMultiplier = width > kWidth1 && width <= kWidth8 ? width - 40 : 1;
  return zpl_FontCustom(Port(), widthMultiplier, heightMultiplier);
}

bool KpZEBRA::LabelLineFeed(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  Attribute(node, L"Value", value);
  const int lines = AtoiText(value);
  zpl_LineFeed(Port(), lines > 0 ? static_cast<std::uint32_t>(lines) : 0);  // a negative count does not move up
  return true;
}

bool KpZEBRA::LabelLine(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa pattern;
  if (!Attribute(node, L"Char", pattern) || pattern.IsEmpty()) pattern = L"-";
  if (ApplyLabelFont(node) != kSuccess) return Fail(kErrTextAttributes, kErrTextAttributes);
  return zpl_FillLine(Port(), PrinterText(pattern)) == kSuccess || Fail(kErrPatternLine, kErrPatternLine);
}

bool KpZEBRA::LabelBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  const int type = AttributeSet(node, L"Type", value) ? LookupBarcodeType(value.c_str()) : kBarcodeCode128;
  const int height = AttributeSet(node, L"Height", value) ? AtoiText(value) : kBarcodeHeightMm;
  const int moduleWidth = AttributeSet(node, L"ModuleWidth", value) ? AtoiText(value) : kBarcodeModuleWidth;
  const float ratio = AttributeSet(node, L"BarRatio", value) ? DecimalFraction(value) : kBarcodeRatio;
  // The interpretation line is printed below the bars ("sotto") or not at all.
  const bool humanReadable = !AttributeSet(node, L"HRI", value) || value == L"sotto";
  std::string data = PrinterText(Text(node));
  const PrinterResult result = zpl_Barcode(Port(), data, type, height, moduleWidth, ratio, humanReadable ? 1 : 0);
  return result == kSuccess || Fail(kErrBarcode, kErrBarcode);
}

// The Rotation attribute does not apply: a stored graphic is recalled as it was stored.
bool KpZEBRA::LabelLogo(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa fileName;
  Attribute(node, L"FileName", fileName);
  return RecallLogo(fileName);
}

bool KpZEBRA::RecallLogo(const Nx_Stringa& fileName) {
  if (fileName.IsEmpty()) return Fail(kErrLogoNameEmpty, kErrLogoNameEmpty);
  if (fileName.Upper().FindString(L".BMP") < 0) return Fail(kErrLogoNotBmp, kErrLogoNotBmp);
  return zpl_RecallLogo(Port(), fileName) == kSuccess || Fail(kErrLogoPrint, kErrLogoPrint);
}

bool KpZEBRA::LabelSingleField(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa justify;
  Attribute(node, L"Justify", justify);
  const int alignment = LookupAlignment(justify.c_str());
  if (IsLeftAlignment(alignment) || IsRightAlignment(alignment)) return LabelDoubleField(node);
  if (ApplyLabelFont(node) != kSuccess) return Fail(kErrTextAttributes, kErrTextAttributes);
  for (IXMLDOMNodePtr field = FirstChild(node, L"Field"); !field.IsNull(); field = NextSibling(field, L"Field")) {
    if (zpl_Centred(Port(), PrinterText(Text(field))) != kSuccess) return Fail(kErrTextLine, kErrTextLine);
  }
  return true;
}

// Also SINGLEFIELD with a side alignment. Only an element written exactly "SingleField"
// prints its Field children here; the test keeps case, so "SINGLEFIELD" looks for
// LeftField children like a DOUBLEFIELD and, finding none, prints nothing.
bool KpZEBRA::LabelDoubleField(IXMLDOMNodePtr node) {
  Nx_Stringa value;
  char fill = ' ';
  if (Attribute(node, L"Char", value)) fill = value.IsEmpty() ? '\0' : PrinterText(value)[0];
  if (ApplyLabelFont(node) != kSuccess) return Fail(kErrTextAttributes, kErrTextAttributes);

  if (NodeName(node) == L"SingleField") {
    const int alignment = AttributeSet(node, L"Justify", value) ? LookupAlignment(value.c_str()) : kAlignLeft;
    for (IXMLDOMNodePtr field = FirstChild(node, L"Field"); !field.IsNull(); field = NextSibling(field, L"Field")) {
      const std::string text = PrinterText(Text(field));
      const PrinterResult result = IsLeftAlignment(alignment) ? zpl_ThreePart(Port(), text, "", fill)
                                                              : zpl_ThreePart(Port(), "", text, fill);
      if (result != kSuccess) return Fail(kErrTextLine, kErrTextLine);
    }
    return true;
  }

  for (IXMLDOMNodePtr left = FirstChild(node, L"LeftField"); !left.IsNull();) {
    IXMLDOMNodePtr right = NextSibling(left, L"RightField");
    if (right.IsNull()) return Fail(kErrNoRightField, kErrNoRightField);
    const PrinterResult result = zpl_ThreePart(Port(), PrinterText(Text(left)), PrinterText(Text(right)), fill);
    if (result != kSuccess) return Fail(kErrTextLine, kErrTextLine);
    left = NextSibling(right, L"LeftField");
  }
  return true;
}

}  // namespace ZEBRA
