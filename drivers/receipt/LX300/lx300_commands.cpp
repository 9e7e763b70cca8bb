#include "drivers/receipt/LX300/lx300_commands.h"

#include <algorithm>
#include <string>

#include "frame/output.h"
#include "frame/status_query.h"
#include "platform/otool.h"

namespace LX300 {

const LogoDensity kLogoDensities[3] = {
    {L"VAL_60", 0},   // single density, 60 dots an inch: wide pictures
    {L"VAL_72", 5},   // 72 dots an inch across as down: a pixel prints square (the default)
    {L"VAL_120", 1},  // double density, 120 dots an inch: narrow pictures
};

namespace {

// ESC ( B bar code kinds by BarcodeType.
struct BarcodeKind {
  int barcodeType;
  std::uint8_t k;
};
constexpr BarcodeKind kBarcodeKinds[] = {
    {kBarcodeCode128, 6}, {kBarcodeIndicodEan13, 0}, {kBarcodeEan13, 0},
    {kBarcodeEan8, 1},    {kBarcodeCode39, 5},       {kBarcodeItf, 2},
};

constexpr int kMaxBarcodeData = 90;
constexpr int kTextLine216 = 36;  // the human-readable line under the bars: 1/6 inch

const BarcodeKind* FindBarcodeKind(int barcodeType) {
  for (const BarcodeKind& kind : kBarcodeKinds)
    if (kind.barcodeType == barcodeType) return &kind;
  return nullptr;
}

}  // namespace

int lx300_Columns(const Config& config, bool condensed, bool doubleWidth) {
  // Condensed pitch is 17.14 characters an inch against 10.
  int columns = condensed ? config.columns * 12 / 7 : config.columns;
  columns = std::min(columns, kLongestLine);
  return doubleWidth ? columns / 2 : columns;
}

void lx300_SwitchOnXonXoff(int handle) {
  // The printer's buffer fills far faster than the head prints: it holds the line with
  // XOFF while it catches up. The state word keeps the port's other settings.
  int state = 0;
  if (otool_IOCTL(handle, kPortGetState, static_cast<void*>(&state)) < 0) return;
  otool_IOCTL(handle, kPortSetState, state | kPortStateXonXoff);
}

PrinterResult lx300_Initialise(const PortContext& ctx) {
  // ESC @: initialise (every mode off, the page starts at the current line)
  if (WriteBytes(ctx, "\x1B\x40", 2) != kSuccess) return kFailure;
  // ESC t 1: the graphics character table (PC437, box-drawing characters)
  return WriteBytes(ctx, "\x1B\x74\x01", 3);
}

PrinterResult lx300_PageSetup(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  // ESC x n: print quality (0 draft, 1 near letter quality)
  const unsigned char quality[] = {0x1B, 0x78, config.nlq};
  if (WriteBytes(ctx, quality, sizeof quality) != kSuccess) return kFailure;
  if (config.pageLines == 0) return kSuccess;
  // ESC C n: page length in lines of the current spacing (1/6 inch after ESC @)
  const unsigned char pageLength[] = {0x1B, 0x43, config.pageLines};
  return WriteBytes(ctx, pageLength, sizeof pageLength);
}

// A printer of this kind never answers: the one thing to tell is whether its port is
// still usable. The handle must be valid, and the device must take a request: a purge of
// unread input reaches the device itself, so a serial adapter pulled out fails it. The
// printer sends nothing worth keeping (its XON and XOFF never reach the input).
int lx300_PortStatus(PortContext& ctx) {
  ctx.statusFlags &= ~kFlagPortError;
  if (PortReady(ctx) && otool_IOCTL(ctx.handle, kPortPurge, 0) >= 0) return kStatusReady;
  ctx.statusFlags |= kFlagPortError;
  return kStatusNoAnswer;
}

PrinterResult lx300_FormFeed(const PortContext& ctx) {
  // FF: print and move to the top of the next page
  return WriteBytes(ctx, "\x0C", 1);
}

PrinterResult lx300_EndPrint(const PortContext& ctx) {
  return ctx.ConfigAs<Config>().formFeed ? lx300_FormFeed(ctx) : kSuccess;
}

PrinterResult lx300_SelectFont(PortContext& ctx, const TextAttributes& attributes) {
  const int style = attributes.style;
  bool bold = style == kStyleDoubleBeat || style == kStyleDoubleBeatCursive || style == kStyleDoubleBeatUnderline;
  bool underline = style == kStyleUnderline || style == kStyleCursiveUnderline || style == kStyleDoubleBeatUnderline;
  bool italic = style == kStyleCursive || style == kStyleCursiveUnderline || style == kStyleDoubleBeatCursive;
  // A 9-pin head cannot print emphasised text condensed: bold wins, at the normal pitch.
  bool condensed = (attributes.font == kFontSmall || style == kStyleCompress) && !bold;
  bool doubleWidth = attributes.width != kWidth1;    // widths above 2 print as 2
  bool doubleHeight = attributes.height != kHeight1;  // heights above 2 print as 2
  ctx.lineWidth = lx300_Columns(ctx.ConfigAs<Config>(), condensed, doubleWidth);
  const unsigned char command[] = {
      static_cast<unsigned char>(condensed ? 0x0F : 0x12),  // SI: condensed; DC2: condensed off
      0x1B, static_cast<unsigned char>(bold ? 0x45 : 0x46), // ESC E: emphasised on; ESC F: off
      0x1B, 0x2D, static_cast<unsigned char>(underline),    // ESC - n: underline on (1) or off (0)
      0x1B, static_cast<unsigned char>(italic ? 0x34 : 0x35),  // ESC 4: italic on; ESC 5: off
      0x1B, 0x57, static_cast<unsigned char>(doubleWidth),  // ESC W n: double width on or off
      0x1B, 0x77, static_cast<unsigned char>(doubleHeight), // ESC w n: double height on or off
      // Double-height characters reach down into the next line: ESC 3 72 (1/3 inch) keeps
      // the next line clear of them; ESC 2 is the usual 1/6 inch.
      0x1B, static_cast<unsigned char>(doubleHeight ? 0x33 : 0x32), 0x48,
  };
  return WriteBytes(ctx, command, doubleHeight ? sizeof command : sizeof command - 1);
}

PrinterResult lx300_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp) {
  // ESC 3 24: line spacing 24/216 inch, the height of one 8-dot band, so the bands touch
  if (WriteBytes(ctx, "\x1B\x33\x18", 3) != kSuccess) return kFailure;
  // ESC * m: 8-dot bit-image bands (a 9-pin head has no 24-dot modes), each ended by CR LF
  PrinterResult result = PrintBitmap(ctx, bmp, false, ctx.ConfigAs<Config>().logoMode);
  // ESC 2: line spacing 1/6 inch again, whatever the picture did
  WriteBytes(ctx, "\x1B\x32", 2);
  return result;
}

PrinterResult lx300_PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType, int heightDots,
                                 int moduleWidth, bool withText) {
  if (data.empty()) return kErrBarcodeEmpty;
  if (data.size() > static_cast<std::size_t>(kMaxBarcodeData)) return kErrBarcodeTooLong;
  const BarcodeKind* kind = FindBarcodeKind(barcodeType);
  if (!kind) return kErrBarcodeKind;

  // Bar length in 1/180 inch from dots at 8 a millimetre; no height gives 10 mm, at most 100 mm.
  if (heightDots <= 0) heightDots = 80;
  heightDots = std::min(heightDots, 800);
  int barLength = (heightDots * 225 + 127) / 254;
  int module = std::clamp(moduleWidth, 2, 5);
  std::size_t count = data.size() + 6;

  // ESC ( B nL nH k m s v1 v2 c data: bar code kind k, module width m dots, no extra
  // space s, bar length v1 + 256 v2, control c (bit 1: no human-readable line)
  std::string command = "\x1B\x28\x42";
  command += static_cast<char>(count % 256);
  command += static_cast<char>(count / 256);
  command += static_cast<char>(kind->k);
  command += static_cast<char>(module);
  command += '\0';
  command += static_cast<char>(barLength % 256);
  command += static_cast<char>(barLength / 256);
  command += static_cast<char>(withText ? 0x00 : 0x02);
  command.append(data);
  if (WriteBytes(ctx, command) != kSuccess) return kFailure;

  // CR, then ESC J n (feed n/216 inch) past the bars and their text, at most 255 a command
  int feed = barLength * 6 / 5 + (withText ? kTextLine216 : 0);
  std::string past = "\r";
  for (; feed > 0; feed -= 255) {
    past += "\x1B\x4A";
    past += static_cast<char>(std::min(feed, 255));
  }
  return WriteBytes(ctx, past);
}

}  // namespace LX300
