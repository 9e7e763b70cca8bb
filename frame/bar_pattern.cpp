#include "frame/bar_pattern.h"

#include <string>

namespace {

// The five elements of each digit, 1 for wide (the ITF digit table).
constexpr std::uint8_t kItfDigits[10][5] = {
    {0, 0, 1, 1, 0},  // 0
    {1, 0, 0, 0, 1},  // 1
    {0, 1, 0, 0, 1},  // 2
    {1, 1, 0, 0, 0},  // 3
    {0, 0, 1, 0, 1},  // 4
    {1, 0, 1, 0, 0},  // 5
    {0, 1, 1, 0, 0},  // 6
    {0, 0, 0, 1, 1},  // 7
    {1, 0, 0, 1, 0},  // 8
    {0, 1, 0, 1, 0},  // 9
};

// Appends columns to a bit row, most significant bit first.
class BitRow {
 public:
  explicit BitRow(std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}
  void Append(bool bar, int columns) {
    for (int i = 0; i < columns; ++i) {
      if (bits_ % 8 == 0) bytes_.push_back(0);
      if (bar) bytes_.back() |= static_cast<std::uint8_t>(0x80 >> (bits_ % 8));
      ++bits_;
    }
  }

 private:
  std::vector<std::uint8_t>& bytes_;
  long bits_ = 0;
};

}  // namespace

bool ItfBarPattern(std::string_view digits, int moduleWidth, std::vector<std::uint8_t>& pattern) {
  pattern.clear();
  if (digits.empty() || moduleWidth < 1 || moduleWidth > kItfMaxModuleWidth) return false;
  for (char c : digits) {
    if (c < '0' || c > '9') return false;
  }
  std::string data = digits.size() % 2 ? "0" + std::string(digits) : std::string(digits);

  const int narrow = moduleWidth;
  const int wide = moduleWidth * kItfWideRatio;
  BitRow row(pattern);
  row.Append(false, kItfQuietZoneModules * narrow);
  for (int i = 0; i < 4; ++i) row.Append(i % 2 == 0, narrow);  // start: bar space bar space
  for (std::size_t i = 0; i < data.size(); i += 2) {
    const std::uint8_t* bars = kItfDigits[data[i] - '0'];
    const std::uint8_t* spaces = kItfDigits[data[i + 1] - '0'];
    for (int e = 0; e < 5; ++e) {
      row.Append(true, bars[e] ? wide : narrow);
      row.Append(false, spaces[e] ? wide : narrow);
    }
  }
  row.Append(true, wide);  // stop: wide bar, narrow space, narrow bar
  row.Append(false, narrow);
  row.Append(true, narrow);
  row.Append(false, kItfQuietZoneModules * narrow);
  return true;
}
