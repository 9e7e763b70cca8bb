#include "mem_port.h"

#include <algorithm>
#include <cstring>
#include <map>
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

std::map<std::string, const PrinterAnswers*>& AnswerTables() {
  static std::map<std::string, const PrinterAnswers*> tables;
  return tables;
}

class MemoryBackend : public PortBackend {
 public:
  explicit MemoryBackend(const PrinterAnswers* answers) : answers_(answers) {
    if (!answers) return;
    for (const PrinterAnswer& rule : answers->rules) {
      if (rule.request.empty()) continue;
      const auto last = static_cast<unsigned char>(rule.request.back());
      requestEnds_[last] = true;
      requestEnds_[last ^ answers->scrambleKey] = true;
    }
  }

  // An answer is one burst: a read takes what it asks for of it, the rest stays for the
  // next read.
  int Read(char* buffer, int count, int) override {
    if (!pending_ || count <= 0) return 0;
    const std::size_t left = pending_->size() - taken_;
    const std::size_t take = std::min(left, static_cast<std::size_t>(count));
    std::memcpy(buffer, pending_->data() + taken_, take);
    taken_ += take;
    if (taken_ == pending_->size()) pending_ = nullptr;
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
    // A request goes out in one write: the printer answers when a write ends with one.
    // Only a write whose last byte can end a request is matched, so that the printer's
    // side costs next to nothing while the driver prints.
    if (answers_ && n > 0 && n <= kLongestRequest && requestEnds_[static_cast<unsigned char>(bytes[n - 1])] &&
        AnswerOnLine(*answers_, std::string_view(bytes, n), answer_)) {
      pending_ = &answer_;
      taken_ = 0;
    }
    return count;
  }

  int Purge() override {
    const int discarded = pending_ ? static_cast<int>(pending_->size() - taken_) : 0;
    pending_ = nullptr;
    return discarded;
  }

  bool Close() override { return true; }

 private:
  // Status requests are short; longer writes are print data.
  static constexpr std::size_t kLongestRequest = 8;
  const PrinterAnswers* answers_;
  bool requestEnds_[256] = {};  // the last bytes of the requests, plain and scrambled
  std::string answer_;  // its storage is reused: answers are short
  const std::string* pending_ = nullptr;
  std::size_t taken_ = 0;
};

}  // namespace

void RegisterMemoryPort() {
  static bool registered = false;
  if (registered) return;
  registered = true;
  RegisterPortKind("mem:", [](const std::string& rest) -> std::unique_ptr<PortBackend> {
    auto it = AnswerTables().find(rest);
    return std::make_unique<MemoryBackend>(it == AnswerTables().end() ? nullptr : it->second);
  });
}

void SetMemoryPrinterAnswers(const std::string& name, const PrinterAnswers* answers) {
  AnswerTables()[name] = answers;
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
