// The record operations (slots 9 to 13): the host hands one 8-bit line whose first
// characters are a fixed-position header, counted from 0. See docs/zebra.md.
#include <cstring>
#include <string>
#include <string_view>

#include "drivers/label/ZEBRA/kp_zebra.h"
#include "frame/output.h"
#include "platform/codepage.h"

namespace ZEBRA {

namespace {

// Header positions.
constexpr std::size_t kSelector = 2;        // slot 9: L, R or C; slot 11: barcode kind
constexpr std::size_t kHeightFlag = 9;      // slot 9: '2' prints the line double height
constexpr std::size_t kFillChar = 12;       // slot 9: fill between the left and right parts
constexpr std::size_t kLineText = 14;       // slot 9: the text
constexpr std::size_t kLogoName = 2;        // slot 10: the logo file name
constexpr std::size_t kBarcodeData = 3;     // slot 11: the barcode data
constexpr std::size_t kSeparatorText = 6;   // slot 12: the pattern
constexpr std::size_t kFeedCount = 2;       // slot 13: the number of lines

std::string_view Record(const char* record) { return record ? std::string_view(record) : std::string_view(); }

std::string_view From(std::string_view text, std::size_t position) {
  return position < text.size() ? text.substr(position) : std::string_view();
}

char At(std::string_view text, std::size_t position) { return position < text.size() ? text[position] : '\0'; }

// The record's 8-bit text back as framework text (the host wrote it in the ANSI code page).
Nx_Stringa Wide(std::string_view text) {
  std::wstring wide;
  for (char c : text) wide += CodepageTranslator::Decode(CodepageTranslator::kAnsi, static_cast<std::uint8_t>(c));
  return Nx_Stringa(wide);
}

}  // namespace

// 'L' keeps the left part of a line, 'R' prints it with its right part, 'C' prints a
// centred line.
int KpZEBRA::PrintFormattedText(const char* record) {
  if (!RequireOpen()) return 0;
  const std::string_view text = Record(record);
  switch (At(text, kSelector)) {
    case 'L': {
      std::memset(leftPart_, 0, sizeof leftPart_);
      text.copy(leftPart_, sizeof leftPart_ - 1);
      return 1;
    }
    case 'R': {
      if (At(text, kHeightFlag) == '2') zpl_FontDoubleHeight(Port());
      const PrinterResult result = zpl_ThreePart(Port(), From(leftPart_, kLineText), From(text, kLineText),
                                                 At(text, kFillChar));
      zpl_FontNormal(Port());
      return result == kSuccess || Fail(kErrTextLine, kErrTextLine) ? 1 : 0;
    }
    case 'C':
      return zpl_Centred(Port(), From(text, kLineText)) == kSuccess || Fail(kErrTextLine, kErrTextLine) ? 1 : 0;
    default:
      set_last_error(kErrTextLine);
      return 0;
  }
}

int KpZEBRA::PrintLogoByName(const char* record) {
  if (!RequireOpen()) return 0;
  return RecallLogo(Wide(From(Record(record), kLogoName))) ? 1 : 0;
}

// The rotation and print-mode reset go out as the receipt printers' ESC/POS bytes, as
// this record has always sent them; a ZPL printer ignores them outside a format.
int KpZEBRA::PrintBarcodeRecord(const char* record) {
  if (!RequireOpen()) return 0;
  SetRotation(Port(), kRotation0, true);
  ResetPrintMode(Port());
  const std::string_view text = Record(record);
  std::string data(From(text, kBarcodeData));
  const PrinterResult result = zpl_Barcode(Port(), data, getBarcodeTypeID(At(text, kSelector)), 10, 3, 3.0f, 1);
  return result == kSuccess || Fail(kErrBarcode, kErrBarcode) ? 1 : 0;
}

int KpZEBRA::PrintSeparatorRecord(const char* record) {
  if (!RequireOpen()) return 0;
  const std::string_view pattern = From(Record(record), kSeparatorText);
  // An empty pattern has nothing to repeat: refused like a line that was not written.
  if (pattern.empty() || zpl_FillLine(Port(), pattern) != kSuccess) return Fail(kErrPatternLine, kErrPatternLine);
  return 1;
}

int KpZEBRA::FeedLinesRecord(const char* record) {
  if (!RequireOpen()) return 0;
  const int lines = AtoiText(Wide(From(Record(record), kFeedCount)));
  zpl_LineFeed(Port(), lines > 0 ? static_cast<std::uint32_t>(lines) : 0);
  return 1;
}

}  // namespace ZEBRA
