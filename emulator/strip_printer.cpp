#include "emulator/strip_printer.h"

#include <algorithm>

namespace posprint::emulator {
namespace {

// Bytes already used are dropped from the front once there are this many, so a command
// that waits for a long image does not copy the whole stream on every byte.
constexpr std::size_t kCompactAt = 65536;

}  // namespace

StripPrinter::StripPrinter(int paperDots, int printableDots, Notes& notes)
    : notes_(notes), paper_(paperDots, printableDots) {}

void StripPrinter::Feed(std::uint8_t byte) {
  ++received_;
  Arrived(byte);
  pending_.push_back(byte);
  while (start_ < pending_.size()) {
    const std::size_t used = Parse(pending_.data() + start_, pending_.size() - start_);
    if (used == 0) break;
    start_ += used;
  }
  if (start_ == pending_.size()) {
    pending_.clear();
    start_ = 0;
  } else if (start_ > kCompactAt) {
    pending_.erase(pending_.begin(), pending_.begin() + static_cast<long>(start_));
    start_ = 0;
  }
}

void StripPrinter::Finish() {
  const std::size_t waiting = PendingBytes();
  if (waiting == 0) return;
  Note("a command was cut short: " + HexBytes(pending_.data() + start_, std::min<std::size_t>(waiting, 8)) +
       (waiting > 8 ? " ..." : "") + " (" + std::to_string(waiting) + " bytes) never ended");
  pending_.clear();
  start_ = 0;
}

void StripPrinter::Note(const std::string& text) { notes_.Add("byte " + std::to_string(CommandStart()) + ": " + text); }

}  // namespace posprint::emulator
