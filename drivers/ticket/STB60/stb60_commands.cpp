#include "drivers/ticket/STB60/stb60_commands.h"

#include "drivers/ticket/stb_family/stb_commands.h"
#include "frame/output.h"
#include "frame/status_query.h"

namespace STB60 {

using namespace StbFamily;

PrinterResult stb60_SetRowWidth(PortContext& ctx) {
  ctx.lineWidth = ctx.ConfigAs<Config>().paperType == kPaperLabel ? 31 : 32;
  ctx.SetTerminator("\r\n");
  return kSuccess;
}

PrinterResult stb60_Setup(const PortContext& ctx) {
  const auto density = static_cast<std::uint8_t>(ctx.ConfigAs<Config>().density & 0xFF);
  return stb_Setup(ctx, {{kSettingDensity, density, false}});
}

PrinterResult stb60_StartTicket(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  if (config.paperType != kPaperLabel || config.sensor != kSensorSoftware) return kSuccess;
  return stb_PaperCommand(ctx, 0xF4);  // GS 0xF4: the printer's start of a label
}

PrinterResult stb60_EndTicket(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  if (config.paperType == kPaperRoll) return stb_FeedAndCut(ctx, config.ejectFeeds, 0);
  if (config.paperType != kPaperLabel) return kSuccess;
  // The printer's label ends, one a sensor: GS 0xF8 its own, GS 0xF5 the software's,
  // GS 0xF6 none
  switch (config.sensor) {
    case kSensorPrinter: return stb_PaperCommand(ctx, 0xF8);
    case kSensorSoftware: return stb_PaperCommand(ctx, 0xF5);
    default: return stb_PaperCommand(ctx, 0xF6);
  }
}

int stb60_Status(PortContext& ctx) {
  std::uint8_t status = 0;
  // ESC v: the printer's one status byte (bit 0x04 paper out)
  if (!QueryStatusByte(ctx, "\x1B\x76", &status, Purge::kFirst)) return kStatusNoAnswer;
  return status & 0x04 ? kStatusPaperOut : kStatusReady;
}

PrinterResult stb60_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp) {
  WriteBytes(ctx, "\x1B\x61\x31", 3);  // ESC a 1: centre
  const PrinterResult result = PrintBitmap(ctx, bmp, false, 33);  // 24-dot double density bands
  WriteBytes(ctx, "\x1B\x61\x00", 3);  // ESC a 0: back to the left
  return result;
}

}  // namespace STB60
