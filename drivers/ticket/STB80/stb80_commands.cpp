#include "drivers/ticket/STB80/stb80_commands.h"

#include "drivers/ticket/stb_family/stb_commands.h"
#include "drivers/ticket/stb_family/stb_config.h"

namespace STB80 {

using namespace StbFamily;

PrinterResult stb80_SetRowWidth(PortContext& ctx) {
  ctx.lineWidth = 42;
  ctx.SetTerminator("\r\n");
  if (ctx.handle != -1 && !(ctx.statusFlags & kFlagPortError)) stb_CryptOn(ctx);
  return kSuccess;
}

PrinterResult stb80_Setup(const PortContext& ctx) { return stb_Setup(ctx, {{kSettingPaperWidth, 1, false}}); }

PrinterResult stb80_StartTicket(const PortContext& ctx) { return stb_Initialise(ctx); }

PrinterResult stb80_EndTicket(const PortContext& ctx) {
  const RollConfig& config = ctx.ConfigAs<RollConfig>();
  return stb_FeedAndCut(ctx, config.ejectFeeds, config.cutType);
}

int stb80_Status(PortContext& ctx) {
  std::uint8_t status = 0;
  if (!stb_PrinterStatus(ctx, Purge::kNo, true, &status)) return kStatusNoAnswer;
  return stb_ExtendedStatus(ctx, status);
}

}  // namespace STB80
