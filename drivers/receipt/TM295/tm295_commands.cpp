#include "drivers/receipt/TM295/tm295_commands.h"

#include <new>

#include "drivers/receipt/family/family_commands.h"
#include "frame/bar_pattern.h"
#include "frame/output.h"
#include "frame/status_query.h"

namespace TM295 {

using namespace ReceiptFamily;

namespace {

// ESC t: 0 = PC437, 19 = PC858.
constexpr CodePageBytes kCodePages = {0x00, 0x13};

constexpr FontTable kFonts = {
    false,          // ESC ! alone selects the font
    {0, 0x00, 35},  // normal
    {0, 0x01, 42},  // small
    {0, 0x00, 35},  // large: the printer has none, the normal font stands in
    // underline is the only style of this printer
    //   50    51    52    53    54    55    56    57    58    59
    {0x00, 0x00, 0x00, 0x00, 0x80, 0x00, 0x00, 0x00, 0x00, 0x00},
    true,  // double is the largest size: bigger expansions print double
};

// ESC v answers one byte of slip sensors; bit 1 wins over bit 0.
constexpr StatusRule kStatusRules[] = {
    {0, 0x02, Sensor::kNone, kStatusPaperOut},  // no slip under the print head
    {0, 0x01, Sensor::kNone, kStatus103},       // the slip is not at its print position
};

// Most columns ESC * takes (its count is two bytes).
constexpr std::size_t kMaxImageColumns = 0xFFFF;

}  // namespace

PrinterResult tm295_SelectTerminator(PortContext& ctx) {
  ctx.lineWidth = 35;
  ctx.SetTerminator("\r\n");
  return kSuccess;
}

PrinterResult tm295_Initialise(const PortContext& ctx) {
  if (WriteBytes(ctx, "\x1B\x40", 2) != kSuccess) return kFailure;  // ESC @: initialise
  // ESC q (and a NUL the printer ignores): let go of a slip left from before.
  WriteBytes(ctx, "\x1B\x71\x00", 3);
  return kSuccess;
}

int tm295_ReadStatus(PortContext& ctx) {
  std::uint8_t reply = 0;
  // ESC v: sensor status
  if (!QueryStatusByte(ctx, "\x1B\x76", &reply, Purge::kNo)) return kStatusNoAnswer;
  return DecodeStatus(&reply, kStatusRules, 2, false, false);
}

PrinterResult tm295_FeedBeforeEject(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  if (!config.ticketEjectionOff) return kSuccess;
  // ESC d n: print and feed n lines
  const unsigned char command[] = {0x1B, 0x64, static_cast<unsigned char>(config.lineFeed & 0xFF)};
  WriteBytes(ctx, command, sizeof command);
  return kSuccess;
}

PrinterResult tm295_EndSlip(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  if (!config.ticketEjectionOff) {
    if (WriteBytes(ctx, "\x1B\x46\x31", 3) != kSuccess) return kFailure;  // ESC F '1': slip ejection direction
    if (WriteBytes(ctx, "\x0C", 1) != kSuccess) return kFailure;          // FF: eject the slip
  }
  if (config.ticketBlock == 1) return WriteBytes(ctx, "\x0A\x1B\x71", 3);  // LF, ESC q: release the slip
  return kSuccess;
}

PrinterResult tm295_FeedLines(const PortContext& ctx, int count) {
  const unsigned char n = static_cast<unsigned char>(count < 0 ? 0 : count > kMaxFeedLines ? kMaxFeedLines : count);
  // ESC d n: print and feed n lines
  if (WriteBytes(ctx, "\x1B\x64", 2) != kSuccess) return kFailure;
  return WriteBytes(ctx, &n, 1);
}

PrinterResult tm295_SelectCodePage(const PortContext& ctx, int codePage) {
  return SelectCodePageBy(ctx, codePage, kCodePages);
}

PrinterResult tm295_SelectFont(PortContext& ctx, const TextAttributes& attributes) {
  return SelectFontBy(ctx, attributes, kFonts);
}

PrinterResult tm295_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp) {
  // ESC 3 8: one 8-dot band of this printer.
  return PrintBitImageLogo(ctx, bmp, 0x08);
}

// The barcode as a bit image: the ITF bar pattern, one image column a module column,
// each column eight dots high, the band printed barcodeHeight times without gaps.
PrinterResult tm295_PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType) {
  if (data.empty()) return kFailure;
  if (barcodeType != kBarcodeItf) return kErrBarcodeKind;
  const Config& config = ctx.ConfigAs<Config>();
  std::vector<std::uint8_t> pattern;
  if (!ItfBarPattern(data, config.barcodeWidth, pattern)) return kFailure;
  const std::size_t columns = pattern.size() * 8;
  if (columns > kMaxImageColumns) return kFailure;

  std::vector<std::uint8_t> image;
  try {
    image.resize(columns);
  } catch (const std::bad_alloc&) {
    return kErrNoMemory;
  }
  for (std::size_t i = 0; i < columns; ++i) image[i] = (pattern[i / 8] & (0x80 >> (i % 8))) ? 0xFF : 0x00;

  // ESC * 0 nL nH: 8-dot single-density bit image of n columns
  const unsigned char header[] = {0x1B, 0x2A, 0x00, static_cast<unsigned char>(columns & 0xFF),
                                  static_cast<unsigned char>(columns >> 8)};
  // ESC 3 8: bands touch each other, so the repeats make one taller bar
  if (WriteBytes(ctx, "\x1B\x33\x08", 3) != kSuccess) return kFailure;
  for (int band = 0; band < config.barcodeHeight; ++band) {
    if (WriteBytes(ctx, header, sizeof header) != kSuccess) return kFailure;
    if (WriteBytes(ctx, image.data(), image.size()) != kSuccess) return kFailure;
    if (WriteBytes(ctx, ctx.terminator, ctx.TerminatorLength()) != kSuccess) return kFailure;
  }
  if (WriteBytes(ctx, "\x1B\x32", 2) != kSuccess) return kFailure;  // ESC 2: default line spacing
  return kSuccess;
}

}  // namespace TM295
