#include "drivers/receipt/VKP80II/kp_vkp80ii.h"

#include <cstdlib>
#include <cstring>

#include "drivers/receipt/VKP80II/vkp80ii_commands.h"
#include "frame/factory.h"
#include "frame/output.h"

namespace VKP80II {

namespace {
// Lines from 42 characters, and the field format also sends the quarter-turn command.
constexpr ReceiptFamily::FamilyTraits kTraits = {42, true};

// Record positions (docs/records.md).
constexpr std::size_t kTextRecordHeader = 7;       // flags, font, style, height, width, alignment
constexpr std::size_t kSeparatorRecordHeader = 4;  // font, style, height, width
}  // namespace

Nx_KpVKP80II::Nx_KpVKP80II() : ReceiptFamilyDriver(*FindIdentity("create_KpVKP80II"), kTraits) {}

void Nx_KpVKP80II::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (config) ReadRollConfig(*parameters, kConfigKeys, *config);
}

// --- command layer hooks ---

int Nx_KpVKP80II::QueryStatus() { return vkp_ReadStatus(Port()); }
PrinterResult Nx_KpVKP80II::EndTicket() { return vkp_Eject(Port()); }
PrinterResult Nx_KpVKP80II::SelectCodePage(int page) { return vkp_SelectCodePage(Port(), page); }
PrinterResult Nx_KpVKP80II::SelectTerminator() { return vkp_SelectTerminator(Port()); }
PrinterResult Nx_KpVKP80II::Initialise() { return vkp_Initialise(Port()); }
PrinterResult Nx_KpVKP80II::ResetFont() { return vkp_ResetFont(Port()); }
PrinterResult Nx_KpVKP80II::SelectFont(const TextAttributes& attributes) { return vkp_SelectFont(Port(), attributes); }
PrinterResult Nx_KpVKP80II::PrintLogoImage(const std::vector<std::uint8_t>& bmp) {
  return vkp_PrintRasterLogo(Port(), bmp);
}

// --- fields ---

// Only Type="CUT_FULL" cuts: the cut normally belongs to the end of the ticket.
bool Nx_KpVKP80II::FieldCut(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa type;
  if (Attribute(node, L"Type", type) && type == L"CUT_FULL") vkp_Cut(Port());
  return true;
}

PrinterResult Nx_KpVKP80II::PrintBarcodeText(const Nx_Stringa& data, int barcodeType) {
  SetRotation(Port(), kRotation0, traits_.rotationWithTurn);
  vkp_ResetFont(Port());
  return vkp_PrintBarcodeHri(Port(), PrinterText(data), barcodeType);
}

bool Nx_KpVKP80II::FieldBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa type;
  Attribute(node, L"Type", type);
  PrinterResult result = PrintBarcodeText(Text(node), LookupBarcodeType(type.c_str()));
  return result == kSuccess || Fail(result, kErrBarcode);
}

// A barcode placed on the page: OffsetY line feeds, its own rotation, size and human-
// readable text (Height in millimetres, Width the module, HRI as on BARCODE), aligned by
// Justify.
bool Nx_KpVKP80II::FieldMobileBarcode(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  vkp_ResetFont(Port());
  Nx_Stringa value;
  if (AttributeSet(node, L"OffsetY", value) && FeedLines(Port(), AtoiText(value)) != kSuccess)
    return Fail(kErrTextAttributes, kErrTextAttributes);
  Attribute(node, L"Rotation", value);
  if (SetRotation(Port(), LookupRotation(value.c_str()), traits_.rotationWithTurn) != kSuccess)
    return Fail(kErrTextAttributes, kErrTextAttributes);
  BarcodeAttributes barcode = ReadBarcodeAttributes(node, 8);  // millimetres at 8 dots/mm
  if (AttributeSet(node, L"Width", value)) barcode.moduleWidth = AtoiText(value);
  const int height = barcode.height > 255 ? 255 : barcode.height;
  if (SetBarcodeStyle(Port(), barcode.textPosition, height, barcode.moduleWidth) != kSuccess)
    return Fail(kFailure, kErrBarcode);
  Attribute(node, L"Justify", value);
  PrinterResult result =
      vkp_PrintAlignedBarcode(Port(), PrinterText(Text(node)), barcode.type, LookupAlignment(value.c_str()));
  return result == kSuccess || Fail(result, kErrBarcode);
}

// --- records ---

int Nx_KpVKP80II::RecordResult(PrinterResult result) {
  if (result != kSuccess && result != kFailure) set_last_error(result);
  return result;
}

int Nx_KpVKP80II::PrintFormattedText(const char* record) {
  if (!isOpen) return RecordResult(kErrNotOpen);
  if (!record || std::strlen(record) < kTextRecordHeader) return kFailure;
  const char fontFlag = record[0], printFlag = record[1];
  if (fontFlag == '1' || fontFlag == '2') {
    TextAttributes attributes;
    attributes.font = getFontTypeID(record[2]);
    attributes.style = getFontFamilyID(record[3]);
    attributes.height = getExpHeightID(record[4]);
    attributes.width = getExpWidthID(record[5]);
    if (vkp_SelectFont(Port(), attributes) != kSuccess) return RecordResult(kErrTextAttributes);
  }
  if (printFlag != '1' && printFlag != '3') return kSuccess;
  const int alignment = record[6] == 'L' ? kAlignLeft : record[6] == 'R' ? kAlignRight : kAlignCenter;
  std::string text = PrinterText(RecordText(record + kTextRecordHeader));
  return PrintAlignedText(alignment, text) == kSuccess ? kSuccess : RecordResult(kErrTextLine);
}

int Nx_KpVKP80II::PrintLogoByName(const char* record) {
  if (!isOpen) return RecordResult(kErrNotOpen);
  vkp_ResetFont(Port());
  return RecordResult(PrintLogoFile(RecordText(record)));
}

int Nx_KpVKP80II::PrintBarcodeRecord(const char* record) {
  if (!isOpen) return RecordResult(kErrNotOpen);
  if (!record || !*record) return kFailure;
  PrinterResult result = PrintBarcodeText(RecordText(record + 1), getBarcodeTypeID(record[0]));
  return RecordResult(result == kFailure ? kErrBarcode : result);
}

int Nx_KpVKP80II::PrintSeparatorRecord(const char* record) {
  if (!isOpen) return RecordResult(kErrNotOpen);
  if (!record || std::strlen(record) < kSeparatorRecordHeader) return kFailure;
  TextAttributes attributes;
  attributes.font = getFontTypeID(record[0]);
  attributes.style = getFontFamilyID(record[1]);
  attributes.height = getExpHeightID(record[2]);
  attributes.width = getExpWidthID(record[3]);
  if (vkp_SelectFont(Port(), attributes) != kSuccess) return RecordResult(kErrTextAttributes);
  Nx_Stringa pattern = RecordText(record + kSeparatorRecordHeader);
  if (pattern.IsEmpty()) pattern = L"-";
  return PrintRule(PrinterText(pattern)) == kSuccess ? kSuccess : RecordResult(kErrPatternLine);
}

int Nx_KpVKP80II::FeedLinesRecord(const char* record) {
  if (!isOpen) return RecordResult(kErrNotOpen);
  if (!record) return kFailure;
  return WriteTerminators(Port(), std::atoi(record));
}

int Nx_KpVKP80II::CutRecord(const char*) {
  if (!isOpen) return RecordResult(kErrNotOpen);
  return vkp_Cut(Port()) == 2 ? kSuccess : kFailure;
}

}  // namespace VKP80II

POSPRINT_FACTORY(create_KpVKP80II, VKP80II::Nx_KpVKP80II)
