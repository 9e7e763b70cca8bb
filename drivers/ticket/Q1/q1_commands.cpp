#include "drivers/ticket/Q1/q1_commands.h"

#include "drivers/ticket/stb_family/stb_commands.h"
#include "drivers/ticket/stb_family/stb_config.h"
#include "frame/output.h"

namespace Q1 {

using namespace StbFamily;

PrinterResult q1_Identify(PortContext& ctx) {
  ctx.SetTerminator("\r\n");
  stb_CryptOff(ctx);
  // GS I 1: printer model identification, one byte
  WriteBytes(ctx, "\x1D\x49\x31", 3);
  std::uint8_t id = 0;
  if (stb_ReadAnswer(ctx, &id, 1) == 1) ctx.reserved = id;
  ctx.lineWidth = 42;
  if (PrinterId(ctx) != kPlainPrinterId && ctx.handle != -1 && !(ctx.statusFlags & kFlagPortError)) stb_CryptOn(ctx);
  return kSuccess;
}

PrinterResult q1_Setup(const PortContext& ctx) { return stb_Initialise(ctx); }

PrinterResult q1_StartTicket(const PortContext& ctx) {
  stb_Purge(ctx);
  return kSuccess;
}

PrinterResult q1_EndTicket(const PortContext& ctx) {
  const RollConfig& config = ctx.ConfigAs<RollConfig>();
  return stb_FeedAndCut(ctx, config.ejectFeeds, config.cutType != 0 ? 2 : 0);
}

int q1_Status(PortContext& ctx) {
  std::uint8_t status = 0;
  const bool mayResync = PrinterId(ctx) != kPlainPrinterId;
  if (!stb_PrinterStatus(ctx, Purge::kFirst, mayResync, &status)) return kStatusNoAnswer;
  return stb_ExtendedStatus(ctx, status);
}

}  // namespace Q1
