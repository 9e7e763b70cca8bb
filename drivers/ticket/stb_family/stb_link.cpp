// The family's link to the printer: the scrambled port mode, its recovery, and the first
// status stage that decides when recovery is worth trying.
#include <algorithm>

#include "drivers/ticket/stb_family/stb_commands.h"
#include "frame/output.h"
#include "platform/clock.h"
#include "platform/otool.h"

namespace StbFamily {
namespace {

constexpr int kResyncTimeoutMs = 50;      // a printer in the other mode answers at once or never
constexpr int kModeSwitchSettleMs = 100;  // the printer's time to take up the new mode
constexpr char kStatusRequest[] = "\x10\x04\x02";  // DLE EOT 2: printer status

void Scramble(const PortContext& ctx, int key) {
  // The port XORs every byte both ways with the low byte of the record's first word;
  // 0 switches it off.
  const int record[1] = {key};
  otool_IOCTL(ctx.handle, kPortScramble, static_cast<const void*>(record));
}

}  // namespace

void stb_CryptOn(const PortContext& ctx) { Scramble(ctx, kScrambleKey); }
void stb_CryptOff(const PortContext& ctx) { Scramble(ctx, 0); }

PortTimeouts stb_GetTimeouts(const PortContext& ctx) {
  PortTimeouts timeouts;
  otool_IOCTL(ctx.handle, kPortGetReadTimeout, static_cast<void*>(&timeouts.first));
  otool_IOCTL(ctx.handle, kPortGetWriteTimeout, static_cast<void*>(&timeouts.second));
  return timeouts;
}

void stb_SetTimeouts(const PortContext& ctx, const PortTimeouts& timeouts) {
  otool_IOCTL(ctx.handle, kPortSetReadTimeout, static_cast<const void*>(&timeouts.first));
  otool_IOCTL(ctx.handle, kPortSetWriteTimeout, static_cast<const void*>(&timeouts.second));
}

void stb_Purge(const PortContext& ctx) { otool_IOCTL(ctx.handle, kPortPurge, 0); }

int stb_ReadAnswer(const PortContext& ctx, std::uint8_t* buffer, int count) {
  int got = 0;
  while (got < count) {
    const int n = otool_READ(ctx.handle, reinterpret_cast<char*>(buffer) + got, count - got);
    if (n <= 0) break;  // time-out or a failed port: what came is all there is
    got += n;
  }
  return got;
}

// The terminal and the printer disagree on the port mode when the printer heard a
// request but its answer made no sense. Try the request plain: a printer that answers
// there was reset or never switched, and is told to take up the scrambled mode again.
int stb_Resync(PortContext& ctx, std::uint8_t* answer) {
  const PortTimeouts saved = stb_GetTimeouts(ctx);
  stb_SetTimeouts(ctx, {kResyncTimeoutMs, kResyncTimeoutMs});
  stb_CryptOff(ctx);
  stb_Purge(ctx);
  WriteBytes(ctx, kStatusRequest, 3);
  std::uint8_t plain = 0;
  if (stb_ReadAnswer(ctx, &plain, 1) == 1) {
    stb_SetTimeouts(ctx, saved);
    // ESC 0xF9 k: take up the scrambled mode with key k (sent plain: the printer is plain)
    const std::uint8_t cmd[] = {0x1B, 0xF9, kScrambleKey};
    WriteBytes(ctx, cmd, sizeof cmd);
    stb_CryptOn(ctx);
    delay(kModeSwitchSettleMs);
    WriteBytes(ctx, kStatusRequest, 3);
    return stb_ReadAnswer(ctx, answer, 1);
  }
  // Silent in plain mode too: back to scrambled, the mode this family runs in.
  stb_CryptOn(ctx);
  stb_SetTimeouts(ctx, saved);
  return 0;
}

bool stb_WorthResync(const PortContext& ctx) {
  const std::uint32_t flags = ctx.statusFlags;
  if (flags & kFlagPortError) return false;
  const bool heardButSilent = (flags & kFlagNoAnswer) && (flags & kFlagRequestSent);
  return (flags & kFlagUnsolicited) || heardButSilent;
}

bool stb_PrinterStatus(PortContext& ctx, Purge purge, bool mayResync, std::uint8_t* status) {
  if (QueryStatusByte(ctx, std::string_view(kStatusRequest, 3), status, purge)) return true;
  if (!stb_WorthResync(ctx) || !mayResync) return false;
  return stb_Resync(ctx, status) > 0;
}

int stb_ExtendedStatus(PortContext& ctx, std::uint8_t first) {
  if (first & 0x04) return kStatusCoverOpen;
  if (first & 0x20) return kStatusPaperOut;
  // DLE EOT 0x14: the six-byte extended status
  if (WriteBytes(ctx, "\x10\x04\x14", 3) != kSuccess) return kStatusNoAnswer;
  std::uint8_t answer[6] = {};
  if (stb_ReadAnswer(ctx, answer, 6) < 6) return kStatusNoAnswer;
  if (answer[3] & 0x08) return kStatus104;
  return kStatusReady;
}

}  // namespace StbFamily
