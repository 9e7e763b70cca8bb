// The shared status query. A status byte such as 0x11 or 0x13 looks like XON or XOFF, so
// software flow control is off while the answer is awaited; the read time-out is short
// so that a silent printer is noticed quickly. Both are put back afterwards. What went
// wrong is left in ctx.statusFlags for the ticket printers, which decide from it whether
// the link is worth recovering (see docs/status.md).
#include "frame/status_query.h"

#include "platform/otool.h"

namespace {

constexpr std::uint32_t kQueryFlags = kFlagPortError | kFlagNoAnswer | kFlagUnsolicited | kFlagRequestSent;

// The port settings that the query changes, as they were before.
struct SavedSettings {
  int readTimeout = 0;
  int stateWord = 0;
  bool stateChanged = false;
  bool timeoutChanged = false;
};

bool Prepare(int handle, SavedSettings& saved) {
  if (otool_IOCTL(handle, kPortGetReadTimeout, &saved.readTimeout) == -1) return false;
  if (otool_IOCTL(handle, kPortGetState, &saved.stateWord) == -1) return false;
  if ((saved.stateWord & kPortStateXonXoff) != 0) {
    if (otool_IOCTL(handle, kPortSetState, saved.stateWord & ~kPortStateXonXoff) == -1) return false;
    saved.stateChanged = true;
  }
  if (otool_IOCTL(handle, kPortSetReadTimeout, kStatusQueryTimeoutMs) == -1) return false;
  saved.timeoutChanged = true;
  return true;
}

// Put back what Prepare changed. A port that refuses has failed already: the next
// operation on it reports that, so the results are not looked at here.
void Restore(int handle, const SavedSettings& saved) {
  if (saved.timeoutChanged) otool_IOCTL(handle, kPortSetReadTimeout, saved.readTimeout);
  if (saved.stateChanged) otool_IOCTL(handle, kPortSetState, saved.stateWord);
}

// Purge, request, answer: 1 when a byte arrived.
int Exchange(PortContext& ctx, std::string_view request, std::uint8_t* answer, Purge purge) {
  if (purge == Purge::kFirst) {
    const int discarded = otool_IOCTL(ctx.handle, kPortPurge, 0);
    if (discarded == -1) {
      ctx.statusFlags |= kFlagPortError;
      return 0;
    }
    // Bytes nobody asked for: the printer is talking out of turn, typically still in
    // another scrambled mode.
    if (discarded > 0) ctx.statusFlags |= kFlagUnsolicited;
  }
  const int length = static_cast<int>(request.size());
  if (otool_WRITE(ctx.handle, request.data(), length) != length) {
    ctx.statusFlags |= kFlagPortError;  // failed, or the line took only part of it
    return 0;
  }
  ctx.statusFlags |= kFlagRequestSent;
  char byte = 0;
  const int got = otool_READ(ctx.handle, &byte, 1);
  if (got == -1) {
    ctx.statusFlags |= kFlagPortError;
    return 0;
  }
  if (got == 0) {
    ctx.statusFlags |= kFlagNoAnswer;
    return 0;
  }
  if (answer != nullptr) *answer = static_cast<std::uint8_t>(byte);
  return 1;
}

}  // namespace

int QueryStatusByte(PortContext& ctx, std::string_view request, std::uint8_t* answer, Purge purge) {
  ctx.statusFlags &= ~kQueryFlags;
  if (ctx.handle < 0) {
    ctx.statusFlags |= kFlagPortError;
    return 0;
  }
  SavedSettings saved;
  if (!Prepare(ctx.handle, saved)) {
    ctx.statusFlags |= kFlagPortError;
    Restore(ctx.handle, saved);
    return 0;
  }
  const int answered = Exchange(ctx, request, answer, purge);
  Restore(ctx.handle, saved);
  return answered;
}

bool PortReady(const PortContext& ctx) {
  int word = 0;
  return ctx.handle >= 0 && otool_IOCTL(ctx.handle, kPortGetState, &word) >= 0;
}
