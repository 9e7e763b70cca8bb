#include "drivers/label/ITALORA/kp_italora.h"

#include <algorithm>

#include "frame/config_values.h"
#include "frame/factory.h"
#include "frame/keywords.h"
#include "platform/codepage.h"

namespace ITALORA {
namespace {

// Millimetres from a configuration value: a decimal number within [low, high], rounded to
// the printer's step; anything else keeps what the field holds.
void ReadMillimetres(const IParameterCollection& keys, const wchar_t* key, float low, float high, float step,
                     float& field) {
  double value = 0;
  if (DecimalNumber(ParameterText(keys, key), value) && value >= low && value <= high)
    field = RoundToStep(static_cast<float>(value), step);
}

template <class Field>
void ReadWhole(const IParameterCollection& keys, const wchar_t* key, int low, int high, Field& field) {
  int value = 0;
  if (WholeNumber(ParameterText(keys, key), value) && value >= low && value <= high) field = static_cast<Field>(value);
}

// The name a picture is stored under in the printer: the file name up to its first dot,
// upper-cased, letters, digits, "_" and "-" only, at most 16 characters.
std::string StoredLogoName(const std::string& fileName) {
  std::string name;
  for (char c : fileName.substr(0, fileName.find('.'))) {
    if (name.size() == 16) break;
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    bool kept = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    name += kept ? c : '_';
  }
  return name.empty() ? "LOGO" : name;
}

// OffsetY / OffsetX: 0 to 99 as on the receipt printers; any other number fails the field.
bool ReadOffset(int value, int& offset) {
  if (value < 0 || value > 99) return false;
  offset = value;
  return true;
}

}  // namespace

KpITALORA::KpITALORA() : DriverBase(*FindIdentity("create_KpITALORA")) {}

// Configuration: the resolution first, since every millimetre value is rounded to its
// step; then the label, whose size bounds the margins.
void KpITALORA::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (!config) return;
  const IParameterCollection& keys = *parameters;

  int dotsPerMm = 0;
  if (WholeNumber(ParameterText(keys, L"param_Resolution"), dotsPerMm) &&
      (dotsPerMm == 8 || dotsPerMm == 12 || dotsPerMm == 24))
    config->dotsPerMm = dotsPerMm;
  const float step = 1.0f / static_cast<float>(config->dotsPerMm);
  config->step = step;

  ReadMillimetres(keys, L"param_WidthLabel", 10, 216, step, config->labelWidth);
  ReadMillimetres(keys, L"param_LenghtLabel", 5, 1000, step, config->labelLength);
  ReadMillimetres(keys, L"param_LengthLabel", 5, 1000, step, config->labelLength);  // the spelling people expect
  ReadMillimetres(keys, L"param_Origin_X", 0, config->labelWidth / 2 - step, step, config->originX);
  ReadMillimetres(keys, L"param_Origin_Y", 0, config->labelLength / 2 - step, step, config->originY);

  ReadWhole(keys, L"param_Darkness", 1, 15, config->darkness);
  ReadWhole(keys, L"param_Speed", 25, 200, config->speed);
  ReadWhole(keys, L"param_Copies", 1, 99, config->copies);
  if (ParameterText(keys, L"param_PrintFoilType").Upper() == L"TRUE") config->media = 'T';
}

// Open: port, time-outs, context, Windows-1252 text, then reset and print settings.
bool KpITALORA::OpenPrinter() {
  if (!OpenPort()) return false;
  ApplyTimeouts();
  const Config& config = ConfigAs<Config>();
  layout_.Reset(config);
  PortContext& ctx = NewContext(layout_.CharactersPerLine());
  codePage = CodepageTranslator::kAnsi;
  codePageSet = 1;
  labelOpen_ = false;
  storedLogos_.clear();  // the reset below makes the printer forget its pictures
  // A printer that takes nothing shows up at CHECK; the port itself is open.
  if (italora_Reset(ctx) == kSuccess) italora_Setup(ctx);
  isOpen = 1;
  return true;
}

int KpITALORA::QueryStatus() { return italora_QueryStatus(Port()); }

// --- the label ---

PrinterResult KpITALORA::StartLabel() {
  layout_.Reset(Settings());
  Port().lineWidth = layout_.CharactersPerLine();
  labelOpen_ = true;
  return italora_LabelStart(Port());
}

bool KpITALORA::StartPrint() {
  if (!RequireOpen()) return false;
  return StartLabel() == kSuccess;
}

// STOP_PRINT (through the framework's end of print): the label is printed. Without a
// label there is nothing to print.
PrinterResult KpITALORA::EndTicket() {
  if (!labelOpen_) return kSuccess;
  labelOpen_ = false;
  return italora_LabelEnd(Port());
}

// A field that arrives without START_PRINT starts a label of its own.
bool KpITALORA::PrintField(int fieldType, IXMLDOMNodePtr node) {
  if (isOpen && !labelOpen_ && fieldType != kFieldUnknown && fieldType != kFieldCut) StartLabel();
  return DriverBase::PrintField(fieldType, node);
}

// --- text ---

bool KpITALORA::ApplyTextAttributes(IXMLDOMNodePtr node, bool withOffsets) {
  layout_.SetText(TextStyleOf(ReadTextAttributes(node)));
  Port().lineWidth = layout_.CharactersPerLine();
  indent_ = 0;
  if (!withOffsets) return true;
  Nx_Stringa value;
  int lines = 0;
  if (AttributeSet(node, L"OffsetY", value)) {
    if (!ReadOffset(AtoiText(value), lines)) return false;
    layout_.Down(lines * layout_.NormalLineHeight());
  }
  if (AttributeSet(node, L"OffsetX", value) && !ReadOffset(AtoiText(value), indent_)) return false;
  return true;
}

PrinterResult KpITALORA::TextAt(float x, std::string_view text) {
  TextCommand command = layout_.Text();
  command.x = x;
  command.y = layout_.Y();
  return italora_Text(Port(), command, text);
}

// Left text, fill, right text across the line, cut as on the receipt printers: a right
// text that fills the line is printed alone; else the left text leaves one cell free.
PrinterResult KpITALORA::PrintTwoColumns(int leftMargin, int rightMargin, std::string_view left,
                                         std::string_view right, char fill) {
  leftMargin = std::max(leftMargin, 0);
  rightMargin = std::max(rightMargin, 0);
  const int width = layout_.CharactersPerLine() - leftMargin - rightMargin;
  if (width <= 0) return kFailure;
  const float cell = layout_.CellWidth();
  const float x = layout_.Left() + leftMargin * cell;
  PrinterResult result = kSuccess;
  if (right.size() < static_cast<std::size_t>(width)) {
    if (left.size() + right.size() >= static_cast<std::size_t>(width)) left = left.substr(0, width - right.size() - 1);
    const int gap = width - static_cast<int>(left.size() + right.size());
    if (!left.empty()) result = TextAt(x, left);
    if (result == kSuccess && fill != ' ' && fill != '\0' && gap > 0)
      result = TextAt(x + left.size() * cell, std::string(gap, fill));
    if (result == kSuccess && !right.empty()) result = TextAt(x + (left.size() + gap) * cell, right);
  } else {
    result = TextAt(x, right.substr(0, width));
  }
  layout_.Down(layout_.LineHeight());
  return result;
}

PrinterResult KpITALORA::PrintTextLine(std::string_view text) { return PrintAlignedText(kAlignCenter, text); }

PrinterResult KpITALORA::PrintAlignedText(int alignment, std::string_view text) {
  const float cell = layout_.CellWidth();
  text = text.substr(0, layout_.CharactersPerLine());
  const float length = text.size() * cell;
  float x = layout_.Left() + (layout_.Width() - length) / 2;
  if (alignment == kAlignLeft || alignment == kAlignLeftPrinter) x = layout_.Left() + indent_ * cell;
  if (alignment == kAlignRight || alignment == kAlignRightPrinter) x = layout_.LineEnd() - length;
  PrinterResult result = text.empty() ? kSuccess : TextAt(x, text);
  layout_.Down(layout_.LineHeight());
  return result;
}

// A separator across the label, in the middle of one text line. A pattern of blanks
// leaves the line empty.
PrinterResult KpITALORA::PrintRule(std::string_view pattern) {
  PrinterResult result = kSuccess;
  if (pattern.find_first_not_of(' ') != std::string_view::npos) {
    const float y = layout_.Y() + (layout_.LineHeight() - kRuleThickness) / 2;
    result = italora_Line(Port(), layout_.Left(), y, layout_.Width(), kRuleThickness);
  }
  layout_.Down(layout_.LineHeight());
  return result;
}

// Empty lines of the normal font, at most 29 as on the receipt printers. Nothing is sent:
// the next field is simply placed lower.
bool KpITALORA::FieldLineFeed(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  Attribute(node, L"Value", value);
  layout_.Down(std::clamp(AtoiText(value), 0, 29) * layout_.NormalLineHeight());
  return true;
}

// --- barcodes ---

bool KpITALORA::FieldBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  BarcodeCommand placement;  // centred on the label, upright
  placement.x = layout_.Centre();
  return PrintBarcodeField(node, ReadBarcodeAttributes(node, 8), placement);
}

// A barcode placed by the job: empty lines before it (OffsetY), its side (Justify), its
// turn (Rotation) and its module width (Width).
bool KpITALORA::FieldMobileBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa value;
  int lines = 0;
  if (AttributeSet(node, L"OffsetY", value)) {
    if (!ReadOffset(AtoiText(value), lines)) return Fail(kErrTextAttributes, kErrTextAttributes);
    layout_.Down(lines * layout_.NormalLineHeight());
  }
  BarcodeAttributes barcode = ReadBarcodeAttributes(node, 8);
  if (AttributeSet(node, L"Width", value)) barcode.moduleWidth = AtoiText(value);
  BarcodeCommand placement;
  Attribute(node, L"Justify", value);
  switch (LookupAlignment(value.c_str())) {
    case kAlignLeft:
    case kAlignLeftPrinter: placement.justify = 'L'; placement.x = layout_.Left(); break;
    case kAlignRight:
    case kAlignRightPrinter: placement.justify = 'R'; placement.x = layout_.Right(); break;
    default: placement.x = layout_.Centre(); break;
  }
  Attribute(node, L"Rotation", value);
  placement.degrees = DegreesOf(LookupRotation(value.c_str()));
  return PrintBarcodeField(node, barcode, placement);
}

// Heights come in dots at 8 a millimetre (the job's millimetres); the module width is in
// printer dots, 1 to 10 (else 3).
bool KpITALORA::PrintBarcodeField(IXMLDOMNodePtr node, const BarcodeAttributes& barcode, BarcodeCommand placement) {
  const Symbology* symbology = italora_FindSymbology(barcode.type);
  if (!symbology) return Fail(kErrBarcodeKind, kErrBarcode);
  std::string data = PrinterText(Text(node));
  if (data.empty()) return Fail(kErrBarcodeEmpty, kErrBarcode);
  if (data.size() > static_cast<std::size_t>(symbology->longest)) return Fail(kErrBarcodeTooLong, kErrBarcode);

  const float step = Settings().step;
  int moduleDots = barcode.moduleWidth >= 1 && barcode.moduleWidth <= 10 ? barcode.moduleWidth : 3;
  bool textAbove = barcode.textPosition == kTextAbove || barcode.textPosition == kTextBoth;
  bool textBelow = barcode.textPosition == kTextBelow || barcode.textPosition == kTextBoth;
  placement.symbology = symbology->name;
  placement.module = moduleDots * step;
  placement.height = barcode.height > 0 ? barcode.height / 8.0f : 10.0f;
  placement.textPosition = barcode.textPosition;
  placement.y = layout_.Y() + (textAbove ? kReadableLine : 0);  // y is the top of the bars

  PrinterResult result = italora_Barcode(Port(), placement, data);
  layout_.Down((textAbove ? kReadableLine : 0) + placement.height + (textBelow ? kReadableLine : 0) + kBarcodeGap);
  return result == kSuccess || Fail(result, kErrBarcode);
}

// --- logos ---

// The picture is read from the logo folder like on every printer, sent to the printer's
// memory the first time it is used after the port opened, and then recalled by name,
// centred, one printer dot a pixel.
bool KpITALORA::FieldLogo(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa fileName, rotation;
  Attribute(node, L"FileName", fileName);
  Attribute(node, L"Rotation", rotation);
  std::vector<std::uint8_t> bmp;
  PrinterResult loaded = LoadLogo(fileName, bmp);
  if (loaded != kSuccess) return Fail(loaded, kErrLogoPrint);
  BmpImage image;
  switch (ReadMonoBmp(bmp, image)) {
    case BmpCheck::kOk: break;
    case BmpCheck::kNotBitmap: return true;  // not a picture: nothing printed, as on every printer
    default: return Fail(kFailure, kErrLogoPrint);  // not 1 bit a pixel, or broken
  }

  std::string name = StoredLogoName(fileName.ToUtf8());
  if (storedLogos_.count(name) == 0) {
    PrinterResult stored = italora_StoreLogo(Port(), name, bmp, image);
    if (stored != kSuccess) return Fail(stored, kErrLogoPrint);
    storedLogos_.insert(name);
  }
  const int degrees = DegreesOf(LookupRotation(rotation.c_str()));
  const bool turned = degrees == 90 || degrees == 270;
  const float step = Settings().step;
  const float across = (turned ? image.height : image.width) * step;
  const float down = (turned ? image.width : image.height) * step;
  PrinterResult result = italora_RecallLogo(Port(), layout_.Centre() - across / 2, layout_.Y(), degrees, name);
  layout_.Down(down + kBarcodeGap);
  return result == kSuccess || Fail(result, kErrLogoPrint);
}

}  // namespace ITALORA

POSPRINT_FACTORY(create_KpITALORA, ITALORA::KpITALORA)
