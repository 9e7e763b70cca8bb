#include "drivers/receipt/TM300/tm300_commands.h"

#include "frame/output.h"
#include "frame/status_query.h"

namespace TM300 {

using namespace ReceiptFamily;

const RollConfigKeys kConfigKeys = {
    L"param_RollEjection", 9, L"param_NearlyEndPaperSensor", L"param_EndPaperSensor",
    L"param_CutType", {{L"val_Partial", kCutPartial}, {L"val_Full", kCutFull}}, false,
};

namespace {

// ESC t: 0 = PC437, 2 = PC850 (this printer's multilingual table).
constexpr CodePageBytes kCodePages = {0x00, 0x02};

constexpr FontTable kFonts = {
    false,          // ESC ! alone selects the font
    {0, 0x00, 33},  // normal
    {0, 0x01, 40},  // small
    {0, 0x00, 33},  // large: the printer has none, the normal font stands in
    //   50    51    52    53    54    55    56    57    58    59
    {0xC0, 0x00, 0x08, 0x40, 0x80, 0x00, 0x04, 0x00, 0x48, 0x88},
    true,  // double is the largest size: bigger expansions print double
};

// ESC v answers one byte: bit 0 paper near its end, bit 2 paper out. Both report 102;
// each has its own sensor setting.
constexpr StatusRule kStatusRules[] = {
    {0, 0x01, Sensor::kNearEnd, kStatusPaperOut},
    {0, 0x04, Sensor::kPaperEnd, kStatusPaperOut},
};

}  // namespace

PrinterResult tm300_SelectTerminator(PortContext& ctx) {
  ctx.lineWidth = 33;
  ctx.SetTerminator("\r\n");
  return kSuccess;
}

PrinterResult tm300_Initialise(const PortContext& ctx) {
  return WriteBytes(ctx, "\x1B\x40", 2);  // ESC @: initialise
}

int tm300_ReadStatus(PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  std::uint8_t reply = 0;
  // ESC v: paper sensor status
  if (!QueryStatusByte(ctx, "\x1B\x76", &reply, Purge::kNo)) return kStatusNoAnswer;
  return DecodeStatus(&reply, kStatusRules, 2, config.ignoreNearEnd, config.ignorePaperEnd);
}

PrinterResult tm300_Eject(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  FeedOneByOne(ctx, config.ejectFeedLines);
  if (config.cutMode == kCutPartial) WriteBytes(ctx, "\x1B\x6D", 2);  // ESC m: partial cut
  if (config.cutMode == kCutFull) WriteBytes(ctx, "\x1B\x69", 2);     // ESC i: full cut
  return kSuccess;
}

PrinterResult tm300_SelectCodePage(const PortContext& ctx, int codePage) {
  return SelectCodePageBy(ctx, codePage, kCodePages);
}

PrinterResult tm300_SelectFont(PortContext& ctx, const TextAttributes& attributes) {
  return SelectFontBy(ctx, attributes, kFonts);
}

PrinterResult tm300_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp) {
  // ESC 3 16: 16/144 inch, one 8-dot band of this printer's 72-dpi head.
  return PrintBitImageLogo(ctx, bmp, 0x10);
}

}  // namespace TM300
