// The record operations (slots 9 to 14): one 8-bit text in the terminal's ANSI code page
// a call, printed with the same commands as the job elements.
#include <cstring>

#include "drivers/ticket/stb_family/stb_driver.h"
#include "frame/output.h"
#include "platform/codepage.h"

namespace StbFamily {
namespace {

Nx_Stringa RecordText(const char* bytes, std::size_t count) {
  std::wstring text;
  for (std::size_t i = 0; i < count; ++i)
    text.push_back(CodepageTranslator::Decode(CodepageTranslator::kAnsi, static_cast<std::uint8_t>(bytes[i])));
  return Nx_Stringa(std::move(text));
}

Nx_Stringa RecordText(const char* bytes) { return RecordText(bytes, std::strlen(bytes)); }

// The HRI digit of a barcode record: '0' none, '1' above, '2' below, '3' both.
int HriFromDigit(char digit) { return digit >= '0' && digit <= '3' ? digit - '0' : kTextBelow; }

}  // namespace

int StbFamilyDriver::RecordResult(PrinterResult result) {
  if (result != kSuccess && result != kFailure) set_last_error(result);
  return result;
}

// Fill character, then the left text, a TAB and the right text: "." "Total" TAB "12.00".
int StbFamilyDriver::PrintFormattedText(const char* record) {
  if (!traits_.recordOperations) return DriverBase::PrintFormattedText(record);
  if (!isOpen) return RecordResult(kErrNotOpen);
  if (!record || !*record) return kFailure;
  const char fill = record[0];
  const char* text = record + 1;
  const char* tab = std::strchr(text, '\t');
  const std::size_t leftLength = tab ? static_cast<std::size_t>(tab - text) : std::strlen(text);
  const std::string left = PrinterText(RecordText(text, leftLength));
  const std::string right = tab ? PrinterText(RecordText(tab + 1)) : std::string();
  const std::string fillText = PrinterText(RecordText(&fill, 1));
  return PrintTwoColumns(0, 0, left, right, fillText[0]) == kSuccess ? kSuccess : RecordResult(kErrTextLine);
}

// The logo's file name, as in the LOGO element (print mode reset, not rotated).
int StbFamilyDriver::PrintLogoByName(const char* record) {
  if (!traits_.recordOperations) return DriverBase::PrintLogoByName(record);
  if (!isOpen) return RecordResult(kErrNotOpen);
  ResetPrintMode(Port());
  SetRotation(Port(), kRotation0, false);
  std::vector<std::uint8_t> bmp;
  const PrinterResult loaded = LoadLogo(RecordText(record ? record : ""), bmp);
  if (loaded != kSuccess) return RecordResult(loaded);
  const PrinterResult result = PrintLogoImage(bmp);
  return RecordResult(result == kFailure ? kErrLogoPrint : result);
}

// Kind character, HRI digit, then the data: "12TKT0001" is CODE128 with the text below.
int StbFamilyDriver::PrintBarcodeRecord(const char* record) {
  if (!traits_.recordOperations) return DriverBase::PrintBarcodeRecord(record);
  if (!isOpen) return RecordResult(kErrNotOpen);
  if (!record || std::strlen(record) < 2) return kFailure;
  BarcodeAttributes barcode;
  barcode.type = getBarcodeTypeID(record[0]);
  barcode.textPosition = HriFromDigit(record[1]);
  const PrinterResult result = PrintBarcodeData(RecordText(record + 2), barcode);
  return RecordResult(result == kFailure ? kErrBarcode : result);
}

// The pattern repeated across the line; empty gives "-".
int StbFamilyDriver::PrintSeparatorRecord(const char* record) {
  if (!traits_.recordOperations) return DriverBase::PrintSeparatorRecord(record);
  if (!isOpen) return RecordResult(kErrNotOpen);
  Nx_Stringa pattern = RecordText(record ? record : "");
  if (pattern.IsEmpty()) pattern = L"-";
  return PrintRule(PrinterText(pattern)) == kSuccess ? kSuccess : RecordResult(kErrPatternLine);
}

// A decimal count of empty lines, at most 29.
int StbFamilyDriver::FeedLinesRecord(const char* record) {
  if (!traits_.recordOperations) return DriverBase::FeedLinesRecord(record);
  if (!isOpen) return RecordResult(kErrNotOpen);
  return WriteTerminators(Port(), AtoiText(RecordText(record ? record : "")));
}

// The cut word of the CUT element's Type: "CUT_FULL", "CUT_PARTIAL", anything else.
int StbFamilyDriver::CutRecord(const char* record) {
  if (!traits_.recordOperations) return DriverBase::CutRecord(record);
  if (!isOpen) return RecordResult(kErrNotOpen);
  CutByType(RecordText(record ? record : ""));
  return kSuccess;
}

}  // namespace StbFamily
