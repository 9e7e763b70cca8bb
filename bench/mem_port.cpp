#include "mem_port.h"

#include <cstring>
#include <memory>
#include <string>

#include "platform/port_backend.h"

namespace posprint::bench {
namespace {

// Large enough for the biggest logo of the benchmarks (832 x 600 dots, about 63 KB of
// raster data, plus the ESC * band headers).
constexpr std::size_t kBufferBytes = 1u << 20;

struct Line {
  unsigned char* buffer = nullptr;
  std::size_t used = 0;
  bool wrapped = false;
  MemoryLine totals;
};

Line& TheLine() {
  static Line line;
  if (!line.buffer) line.buffer = new unsigned char[kBufferBytes];
  return line;
}

// The three strings a ready ZPL printer sends for ~HS: two of 36 bytes framed by STX and
// ETX CR LF, and a third of 10 bytes.
constexpr char kZplAnswer[] =
    "\x02" "030,0,0,0560,000,0,0,0,000,0,0,0" "\x03\r\n"
    "\x02" "000,0,0,0,0,2,4,0,00000000,1,000" "\x03\r\n"
    "\x02" "1234,0" "\x03\r\n";

class MemoryBackend : public PortBackend {
 public:
  explicit MemoryBackend(bool zpl) : zpl_(zpl) {}

  int Read(char* buffer, int count, int) override {
    if (pendingLength_ == 0 || count <= 0) return 0;
    // One answer string a read, as a printer's burst followed by a quiet line.
    std::size_t take = pendingLength_;
    if (zpl_) {
      const void* lf = std::memchr(pending_, '\n', pendingLength_);
      if (lf) take = static_cast<std::size_t>(static_cast<const char*>(lf) - pending_) + 1;
    }
    if (take > static_cast<std::size_t>(count)) take = static_cast<std::size_t>(count);
    std::memcpy(buffer, pending_, take);
    pending_ += take;
    pendingLength_ -= take;
    return static_cast<int>(take);
  }

  int Write(const char* bytes, int count, int) override {
    Line& line = TheLine();
    const std::size_t n = static_cast<std::size_t>(count);
    if (line.used + n > kBufferBytes) {
      line.used = 0;
      line.wrapped = true;
    }
    if (n <= kBufferBytes) {
      std::memcpy(line.buffer + line.used, bytes, n);
      line.used += n;
    }
    line.totals.bytes += n;
    ++line.totals.writes;
    Answer(bytes, n);
    return count;
  }

  int Purge() override {
    const int discarded = static_cast<int>(pendingLength_);
    pendingLength_ = 0;
    return discarded;
  }

  bool Close() override { return true; }

 private:
  // A status request gets its fixed answer; anything else gets none.
  void Answer(const char* bytes, std::size_t n) {
    if (zpl_) {
      if (n >= 3 && std::memcmp(bytes + n - 3, "~HS", 3) == 0) {
        pending_ = kZplAnswer;
        pendingLength_ = sizeof kZplAnswer - 1;
      }
      return;
    }
    // DLE EOT n, DLE ENQ n, ESC v, GS r n, GS a ...: the ESC/POS real-time and
    // transmit-status requests are short and start with DLE, ESC v or GS r.
    const unsigned char first = static_cast<unsigned char>(bytes[0]);
    const bool request = n <= 4 && (first == 0x10 || (n >= 2 && ((first == 0x1B && bytes[1] == 'v') ||
                                                                   (first == 0x1D && bytes[1] == 'r'))));
    if (request) {
      pending_ = kReady;
      pendingLength_ = 1;
    }
  }

  static constexpr char kReady[] = "\x12";
  bool zpl_;
  const char* pending_ = nullptr;
  std::size_t pendingLength_ = 0;
};

}  // namespace

void RegisterMemoryPort() {
  static bool registered = false;
  if (registered) return;
  registered = true;
  RegisterPortKind("mem:", [](const std::string& rest) -> std::unique_ptr<PortBackend> {
    if (rest.empty()) return std::make_unique<MemoryBackend>(false);
    if (rest == "zpl") return std::make_unique<MemoryBackend>(true);
    return nullptr;
  });
}

MemoryLine MemoryPortTotals() { return TheLine().totals; }

void ResetMemoryPort() {
  Line& line = TheLine();
  line.used = 0;
  line.wrapped = false;
  line.totals = MemoryLine{};
}

std::string_view MemoryPortBytes() {
  const Line& line = TheLine();
  if (line.wrapped) return {};
  return {reinterpret_cast<const char*>(line.buffer), line.used};
}

}  // namespace posprint::bench
