#include "drivers/receipt/PLUS/plus_commands.h"

#include "frame/output.h"
#include "frame/status_query.h"

namespace PLUS {
namespace {

// Paper widths: 576 printable dots on an 80 mm roll, 384 on a 58 mm roll; font A is
// 12 dots wide, font B 9.
struct Columns {
  int fontA;
  int fontB;
};
constexpr Columns kColumns80 = {48, 64};
constexpr Columns kColumns58 = {32, 42};

// A real status byte has bit 1 and bit 4 set and bits 0 and 7 clear; anything else is
// line noise or a byte of some other answer.
bool IsStatusByte(std::uint8_t answer) { return (answer & 0x93) == 0x12; }

}  // namespace

int plus_Columns(const Config& config, bool fontB) {
  const Columns& columns = config.narrowPaper ? kColumns58 : kColumns80;
  return fontB ? columns.fontB : columns.fontA;
}

PrinterResult plus_Initialise(const PortContext& ctx) {
  // ESC @: initialise (clears the print buffer, every mode back to its default)
  return WriteBytes(ctx, "\x1B\x40", 2);
}

PrinterResult plus_SelectCodeTable(const PortContext& ctx, bool euroTable) {
  // ESC t n: character code table (0 = PC437, 19 = PC858 with the euro sign at D5)
  const unsigned char command[] = {0x1B, 0x74, static_cast<unsigned char>(euroTable ? 19 : 0)};
  return WriteBytes(ctx, command, sizeof command);
}

int plus_ReadStatus(PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  std::uint8_t offline = 0;
  // DLE EOT 2: offline causes (bit 2 cover open, bit 5 stopped for paper end, bit 6 error).
  // Whatever the printer sent unasked before the question is thrown away first.
  if (!QueryStatusByte(ctx, "\x10\x04\x02", &offline, Purge::kFirst) || !IsStatusByte(offline))
    return kStatusNoAnswer;
  if (offline & 0x04) return kStatusCoverOpen;
  if (offline & 0x20) return kStatusPaperOut;
  if (offline & 0x40) return kStatusPrinterError;

  std::uint8_t paper = 0;
  // DLE EOT 4: roll paper sensors (bits 2-3 near end, bits 5-6 paper end)
  if (!QueryStatusByte(ctx, "\x10\x04\x04", &paper, Purge::kNo) || !IsStatusByte(paper)) return kStatusNoAnswer;
  if ((paper & 0x60) && !config.ignorePaperEnd) return kStatusPaperOut;
  if ((paper & 0x0C) && !config.ignoreNearEnd) return kStatusPaperNearEnd;
  return kStatusReady;
}

PrinterResult plus_EndPrint(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  if (config.feedLines > 0) {
    // ESC d n: print what is buffered and feed n lines (the last line clears the cutter)
    const unsigned char feed[] = {0x1B, 0x64, config.feedLines};
    if (WriteBytes(ctx, feed, sizeof feed) != kSuccess) return kFailure;
  }
  if (config.cutKind == kCutNone) return kSuccess;
  return plus_Cut(ctx, static_cast<CutKind>(config.cutKind));
}

PrinterResult plus_Cut(const PortContext& ctx, CutKind kind) {
  // GS V m: cut the paper (m = 0 full cut, 1 partial cut: one point left uncut)
  const unsigned char command[] = {0x1D, 0x56, static_cast<unsigned char>(kind == kCutFull ? 0 : 1)};
  return WriteBytes(ctx, command, sizeof command);
}

PrinterResult plus_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp) {
  // ESC a 1: centred; ESC 3 24: 24-dot line spacing, so that the bands touch
  if (WriteBytes(ctx, "\x1B\x61\x01\x1B\x33\x18", 6) != kSuccess) return kFailure;
  // ESC * 33: 24-dot double density, one printer dot a pixel on this 203 dpi head
  PrinterResult result = PrintBitmap(ctx, bmp, false, 0x21);
  // ESC 2: default line spacing; ESC a 0: left again, whatever the picture did
  WriteBytes(ctx, "\x1B\x32\x1B\x61\x00", 5);
  return result;
}

PrinterResult plus_SelectFont(PortContext& ctx, const TextAttributes& attributes) {
  const Config& config = ctx.ConfigAs<Config>();
  // The compressed style is the narrow font B.
  bool fontB = attributes.font == kFontSmall || attributes.style == kStyleCompress;
  std::uint8_t mode = fontB ? 0x01 : 0x00;
  switch (attributes.style) {
    case kStyleDoubleBeat:
    case kStyleDoubleBeatCursive: mode |= 0x08; break;
    case kStyleUnderline:
    case kStyleCursiveUnderline: mode |= 0x80; break;
    case kStyleDoubleBeatUnderline: mode |= 0x88; break;
    default: break;  // no italics on a thermal head: cursive prints upright
  }
  int widthTimes = attributes.width - kWidth1 + 1;    // 1..8
  int heightTimes = attributes.height - kHeight1 + 1;  // 1..8
  std::uint8_t size = static_cast<std::uint8_t>(((widthTimes - 1) << 4) | (heightTimes - 1));
  std::uint8_t reverse = attributes.style == kStyleReverse ? 1 : 0;
  ctx.lineWidth = plus_Columns(config, fontB) / widthTimes;
  const unsigned char command[] = {
      0x1B, 0x21, mode,     // ESC ! n: print mode (bit 0 font B, bit 3 emphasis, bit 7 underline)
      0x1D, 0x21, size,     // GS ! n: character size (bits 4-6 width - 1, bits 0-2 height - 1)
      0x1D, 0x42, reverse,  // GS B n: white on black when n is 1
  };
  return WriteBytes(ctx, command, sizeof command);
}

}  // namespace PLUS
