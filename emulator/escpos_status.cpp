#include "emulator/escpos_status.h"

namespace posprint::emulator {
namespace {

// Bits 1 and 4 of the one-byte DLE EOT answers are always set: a status byte never looks
// like XON, XOFF or a character.
constexpr std::uint8_t kFixedBits = 0x12;

// DLE EOT 1: printer status (bit 3 offline).
std::uint8_t PrinterByte(PrinterState state) {
  const bool offline = state == PrinterState::kPaperOut || state == PrinterState::kCoverOpen ||
                       state == PrinterState::kError;
  return kFixedBits | (offline ? 0x08 : 0x00);
}

// DLE EOT 2: why the printer is offline (bit 2 cover open, bit 5 stopped at paper end,
// bit 6 an error occurred).
std::uint8_t OfflineByte(PrinterState state) {
  switch (state) {
    case PrinterState::kCoverOpen: return kFixedBits | 0x04;
    case PrinterState::kPaperOut: return kFixedBits | 0x20;
    case PrinterState::kError: return kFixedBits | 0x40;
    default: return kFixedBits;
  }
}

// DLE EOT 3: error causes (bit 6 an error that clears itself: the head cools down).
std::uint8_t ErrorByte(PrinterState state) {
  return kFixedBits | (state == PrinterState::kError ? 0x40 : 0x00);
}

// DLE EOT 4: roll paper sensors (bits 2-3 near end, bits 5-6 paper end).
std::uint8_t RollByte(PrinterState state) {
  switch (state) {
    case PrinterState::kNearEnd: return kFixedBits | 0x0C;
    case PrinterState::kPaperOut: return kFixedBits | 0x0C | 0x60;
    default: return kFixedBits;
  }
}

// STB112 DLE EOT 0x11: paper byte (bit 2 near end, bit 5 paper out).
std::uint8_t StbPaperByte(PrinterState state) {
  switch (state) {
    case PrinterState::kNearEnd: return kFixedBits | 0x04;
    case PrinterState::kPaperOut: return kFixedBits | 0x04 | 0x20;
    default: return kFixedBits;
  }
}

std::string Byte(std::uint8_t b) { return std::string(1, static_cast<char>(b)); }

// The six-byte full status: 10 0F, then paper, user, recoverable-error and
// unrecoverable-error bytes. VKP80II layout: paper bit 0 out, bit 2 near end; user bit 1
// cover open; recoverable bit 0 head too hot.
std::string VkpFullStatus(PrinterState state) {
  std::uint8_t paper = 0, user = 0, recoverable = 0;
  switch (state) {
    case PrinterState::kNearEnd: paper = 0x04; break;
    case PrinterState::kPaperOut: paper = 0x05; break;
    case PrinterState::kCoverOpen: user = 0x02; break;
    case PrinterState::kError: recoverable = 0x01; break;
    default: break;
  }
  return std::string("\x10\x0F", 2) + Byte(paper) + Byte(user) + Byte(recoverable) + Byte(0);
}

// The STB80 and Q-series full status (DLE EOT 0x14): the same frame; their user byte
// also carries paper low in bit 3, which is where their drivers look for it.
std::string StbFullStatus(PrinterState state) {
  std::string frame = VkpFullStatus(state);
  if (state == PrinterState::kNearEnd) frame[3] = static_cast<char>(0x08);
  return frame;
}

std::optional<std::string> EpsonDleEot(PrinterState state, std::uint8_t n) {
  switch (n) {
    case 1: return Byte(PrinterByte(state));
    case 2: return Byte(OfflineByte(state));
    case 3: return Byte(ErrorByte(state));
    case 4: return Byte(RollByte(state));
    default: return std::nullopt;
  }
}

}  // namespace

std::optional<std::string> DleEotAnswer(StatusKind kind, PrinterState state, std::uint8_t n) {
  if (state == PrinterState::kSilent) return std::nullopt;
  switch (kind) {
    case StatusKind::kTmt70: return EpsonDleEot(state, n);
    case StatusKind::kVkp80ii:
      if (n == 20) return VkpFullStatus(state);
      return EpsonDleEot(state, n);
    case StatusKind::kStb112:
      if (n == 2) return Byte(OfflineByte(state));
      if (n == 0x11) return Byte(StbPaperByte(state));
      return std::nullopt;
    case StatusKind::kStbFull:
      if (n == 2) return Byte(OfflineByte(state));
      if (n == 0x14) return StbFullStatus(state);
      return std::nullopt;
    default: return std::nullopt;
  }
}

std::optional<std::string> EscVAnswer(StatusKind kind, PrinterState state) {
  // Offline with the cover open or after an error, these printers take no command:
  // the request goes unanswered.
  if (state == PrinterState::kSilent || state == PrinterState::kCoverOpen || state == PrinterState::kError)
    return std::nullopt;
  switch (kind) {
    case StatusKind::kTm300:
    case StatusKind::kStb60:
      // Bits 0-1: roll near its end; bits 2-3: paper end.
      if (state == PrinterState::kNearEnd) return Byte(0x03);
      if (state == PrinterState::kPaperOut) return Byte(0x0F);
      return Byte(0x00);
    case StatusKind::kTm295:
      // Bit 1: no slip under the head; bit 0: the slip's end is near (it has left the
      // lower sensor).
      if (state == PrinterState::kNearEnd) return Byte(0x01);
      if (state == PrinterState::kPaperOut) return Byte(0x03);
      return Byte(0x00);
    default: return std::nullopt;
  }
}

}  // namespace posprint::emulator
