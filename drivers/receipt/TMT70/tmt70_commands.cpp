#include "drivers/receipt/TMT70/tmt70_commands.h"

#include "frame/output.h"
#include "frame/status_query.h"
#include "platform/codepage.h"

namespace TMT70 {

PrinterResult tmt70_SelectCodeTable(const PortContext& ctx, int codePage) {
  // ESC t n: character code table (0 = PC437, 19 = PC858)
  if (codePage == CodepageTranslator::kPC437) return WriteBytes(ctx, "\x1B\x74\x00", 3);
  if (codePage == CodepageTranslator::kPC858) return WriteBytes(ctx, "\x1B\x74\x13", 3);
  return kFailure;
}

void tmt70_Initialise(const PortContext& ctx) {
  // ESC @: initialise. Then GS b alone: its parameter byte is not sent, so the printer
  // takes the next byte it receives as the parameter. The printers in the field have
  // always received exactly these two bytes; they are kept.
  if (WriteBytes(ctx, "\x1B\x40", 2) == kSuccess) WriteBytes(ctx, "\x1D\x62", 2);
}

int tmt70_ReadStatus(PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  std::uint8_t printer = 0;
  // DLE EOT 2: offline causes (bit 2 cover open, bit 5 paper out stop, bit 6 error)
  if (!QueryStatusByte(ctx, "\x10\x04\x02", &printer, Purge::kNo)) return kStatusNoAnswer;
  if (printer & 0x04) return kStatusCoverOpen;
  if (printer & 0x20) return kStatusPaperOut;
  if (printer & 0x40) return kStatusPrinterError;

  std::uint8_t paper = 0;
  // DLE EOT 4: roll paper sensors (bits 2-3 near end, bits 5-6 paper end)
  if (!QueryStatusByte(ctx, "\x10\x04\x04", &paper, Purge::kNo)) return kStatusNoAnswer;
  if ((paper & 0x60) && !config.ignorePaperEnd) return kStatusPaperOut;
  if (!(paper & 0x0C) || config.ignoreNearEnd) return kStatusReady;
  return kStatusPaperOut;  // paper nearly out, and that sensor is honoured
}

PrinterResult tmt70_EndPrint(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  for (int i = 0; i < config.rollEjectionFeeds; ++i) WriteBytes(ctx, "\x0A", 1);  // LF, one a write
  if (config.cutType == 1) tmt70_Cut(ctx);
  return kSuccess;
}

PrinterResult tmt70_Cut(const PortContext& ctx) {
  // GS V 1: partial cut
  return WriteBytes(ctx, "\x1D\x56\x01", 3);
}

PrinterResult tmt70_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp) {
  WriteBytes(ctx, "\x1B\x33\x00", 3);  // ESC 3 0: no line spacing between the bands
  PrinterResult result = PrintBitmap(ctx, bmp, false, 0);  // 8-dot single-density bands
  WriteBytes(ctx, "\x1B\x32", 2);      // ESC 2: default line spacing, whatever happened
  return result;
}

PrinterResult tmt70_SelectFont(PortContext& ctx, const TextAttributes& attributes) {
  std::uint8_t mode = 0;
  int lineWidth = 42;
  if (attributes.font == kFontSmall) {
    mode |= 0x01;  // font B
    lineWidth = 56;
  }
  // Only single and double size exist on this printer.
  int height = attributes.height > kHeight2 ? kHeight2 : attributes.height;
  int width = attributes.width > kWidth2 ? kWidth2 : attributes.width;
  if (height != kHeight1) mode |= 0x10;
  if (width != kWidth1) mode |= 0x20;
  switch (attributes.style) {
    case kStyleCursiveUnderline:
    case kStyleUnderline: mode |= 0x80; break;
    case kStyleDoubleBeat:
    case kStyleDoubleBeatCursive: mode |= 0x08; break;
    case kStyleDoubleBeatUnderline: mode |= 0x88; break;
    default: break;  // cursive, reverse and compress print as normal text here
  }
  ctx.lineWidth = lineWidth / (width - 40);
  // ESC ! n: print mode (bit 0 font B, bit 3 emphasis, bit 4 double height, bit 5 double width, bit 7 underline)
  const unsigned char command[] = {0x1B, 0x21, mode};
  return WriteBytes(ctx, command, sizeof command);
}

}  // namespace TMT70
