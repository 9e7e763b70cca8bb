#include "drivers/ticket/STB112/stb112_commands.h"

#include <vector>

#include "drivers/ticket/stb_family/stb_commands.h"
#include "frame/output.h"

namespace STB112 {

using namespace StbFamily;

PrinterResult stb112_SetRowWidth(PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  ctx.lineWidth = config.paperType == kPaperTicket ? kTicketRowWidth : config.rowWidthCode;
  ctx.SetTerminator("\r\n");
  return kSuccess;
}

PrinterResult stb112_Setup(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  std::vector<Setting> settings;
  if (config.rowWidthCode == 32) settings.push_back({kSettingPaperWidth, 1, false});
  if (config.rowWidthCode == 42) settings.push_back({kSettingPaperWidth, 0, false});
  switch (config.paperType) {
    case kPaperTicket:
      settings.insert(settings.end(), {{kSettingSheetKind, 0, false}, {kSettingSheets, 1, true}});
      break;
    case kPaperLabel:
      settings.insert(settings.end(),
                      {{kSettingSheetKind, 1, false}, {kSettingSheets, 1, true}, {kSettingLabels, 1, false}});
      break;
    default:
      settings.push_back({kSettingSheets, 0, false});
      break;
  }
  settings.push_back({kSettingDensity, static_cast<std::uint8_t>(config.density & 0xFF), false});
  return stb_Setup(ctx, settings);
}

PrinterResult stb112_StartTicket(const PortContext& ctx) {
  if (ctx.ConfigAs<Config>().paperType != kPaperTicket) return kSuccess;
  return stb_PaperCommand(ctx, 0xF6);  // GS 0xF6: the printer's start of a ticket
}

PrinterResult stb112_EndTicket(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  switch (config.paperType) {
    case kPaperRoll:
      return stb_FeedAndCut(ctx, config.ejectFeeds, config.cutType);
    case kPaperLabel:
      // The printer's label ends: GS 0xF6 without a cut or with the partial one, GS 0xF8
      // with the full cut
      if (config.cutType <= 1) return stb_PaperCommand(ctx, 0xF6);
      if (config.cutType == 2) return stb_PaperCommand(ctx, 0xF8);
      return kSuccess;
    default:
      return kSuccess;  // tickets come out by themselves
  }
}

int stb112_Status(PortContext& ctx) {
  std::uint8_t status = 0;
  if (!stb_PrinterStatus(ctx, Purge::kNo, true, &status)) return kStatusNoAnswer;
  if (status & 0x04) return kStatusCoverOpen;
  // DLE EOT 0x11: the paper status
  if (WriteBytes(ctx, "\x10\x04\x11", 3) != kSuccess) return kStatusNoAnswer;
  std::uint8_t paper = 0;
  if (stb_ReadAnswer(ctx, &paper, 1) != 1) return kStatusNoAnswer;
  if (paper & 0x20) return kStatusPaperOut;
  if (paper & 0x04) return kStatus104;
  return kStatusReady;
}

}  // namespace STB112
