#include "drivers/ticket/stb_family/stb_commands.h"

#include "frame/output.h"
#include "frame/raster_logo.h"
#include "platform/codepage.h"

namespace StbFamily {

PrinterResult stb_SettingFrame(const PortContext& ctx, std::uint8_t setting, std::uint8_t value) {
  // GS 0xFF 0x0A 0x32 n v s: change setting n to v; s = low byte of the sum of the six
  // bytes before it, GS and 0xFF included.
  std::uint8_t frame[7] = {0x1D, 0xFF, 0x0A, 0x32, setting, value, 0};
  unsigned sum = 0;
  for (int i = 0; i < 6; ++i) sum += frame[i];
  frame[6] = static_cast<std::uint8_t>(sum & 0xFF);
  return WriteBytes(ctx, frame, sizeof frame);
}

PrinterResult stb_Setup(const PortContext& ctx, const std::vector<Setting>& settings) {
  if (stb_Initialise(ctx) != kSuccess) return kFailure;
  for (const Setting& setting : settings) {
    if (stb_SettingFrame(ctx, setting.number, setting.value) != kSuccess) return kFailure;
    std::uint8_t answer = 0;
    // The printer confirms some settings; the byte itself carries nothing we use.
    if (setting.answered && stb_ReadAnswer(ctx, &answer, 1) != 1) return kFailure;
  }
  return kSuccess;
}

PrinterResult stb_Initialise(const PortContext& ctx) {
  // ESC @: initialise the printer
  return WriteBytes(ctx, "\x1B\x40", 2);
}

PrinterResult stb_SelectCodeTable(const PortContext& ctx, int codePage) {
  // ESC t n: character code table (0 = PC437, 0x13 = PC858 with the euro sign)
  if (codePage == CodepageTranslator::kPC437) return WriteBytes(ctx, "\x1B\x74\x00", 3);
  if (codePage == CodepageTranslator::kPC858) return WriteBytes(ctx, "\x1B\x74\x13", 3);
  return kFailure;
}

PrinterResult stb_PaperCommand(const PortContext& ctx, std::uint8_t command) {
  // GS n: the family's one-byte paper commands
  const std::uint8_t cmd[] = {0x1D, command};
  return WriteBytes(ctx, cmd, sizeof cmd);
}

PrinterResult stb_SelectNormalFont(const PortContext& ctx) {
  // ESC G 0: double strike off; ESC ! n: print mode, font A on a 32-character row, font B
  // on the wider ones; ESC 0xC1: the family's own command that closes a font selection
  const std::uint8_t mode = ctx.lineWidth == 32 ? 0x00 : 0x01;
  const std::uint8_t cmd[] = {0x1B, 0x47, 0x30, 0x1B, 0x21, mode, 0x1B, 0xC1};
  return WriteBytes(ctx, cmd, sizeof cmd);
}

PrinterResult stb_CutFull(const PortContext& ctx) {
  // ESC i: full cut
  return WriteBytes(ctx, "\x1B\x69", 2);
}

PrinterResult stb_CutPartial(const PortContext& ctx) {
  // ESC m: partial cut
  return WriteBytes(ctx, "\x1B\x6D", 2);
}

PrinterResult stb_CutRetract(const PortContext& ctx) {
  // ESC ( v nL nH: feed by a signed 16-bit count of dot lines. Forward 100 brings the
  // printed part past the blade, ESC i cuts, back 100 (0xFF9C) returns the new top edge
  // under the head so the next ticket does not start with a blank margin.
  if (WriteBytes(ctx, "\x1B\x28\x76\x64\x00", 5) != kSuccess) return kFailure;
  if (stb_CutFull(ctx) != kSuccess) return kFailure;
  return WriteBytes(ctx, "\x1B\x28\x76\x9C\xFF", 5);
}

PrinterResult stb_Cut(const PortContext& ctx, Cut cut) {
  switch (cut) {
    case Cut::kFull: return stb_CutFull(ctx);
    case Cut::kPartial: return stb_CutPartial(ctx);
    case Cut::kRetract: return stb_CutRetract(ctx);
    case Cut::kNone: break;
  }
  return kSuccess;
}

PrinterResult stb_FeedAndCut(const PortContext& ctx, int feeds, int cutType) {
  for (int i = 0; i < feeds; ++i) WriteBytes(ctx, "\x0A", 1);  // LF, one a write
  if (cutType == 1) stb_CutPartial(ctx);
  if (cutType == 2) stb_CutFull(ctx);
  return kSuccess;
}

PrinterResult stb_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp, int lineWidthDots) {
  return PrintRasterLogo(ctx, bmp, lineWidthDots, true, RasterMargin::kWrapUnsigned);
}

}  // namespace StbFamily
