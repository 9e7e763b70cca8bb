// Test-side helpers for interleaved 2 of 5: a hand-written symbol and an independent
// decoder that reads a bar pattern back to its digits.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace receipt_test {

// "12" at module width 1, written out by hand, one character a column (1 bar, 0 space):
// quiet zone, start (narrow bar/space x2), the pair 1|2 (bars of 1 = W N N N W, spaces
// of 2 = N W N N W, a wide element three columns), stop (wide bar, narrow space, narrow
// bar), quiet zone, and one column of padding to a whole byte.
inline const char* kItf12Columns =
    "0000000000"
    "1010"
    "111" "0" "1" "000" "1" "0" "1" "0" "111" "000"
    "111" "0" "1"
    "0000000000"
    "0";

// "1010" -> {0xFF, 0x00, 0xFF, 0x00}: the bit-image columns of a bar pattern.
inline std::string ColumnBytes(const std::string& columns) {
  std::string bytes;
  for (char c : columns) bytes += c == '1' ? '\xFF' : '\x00';
  return bytes;
}

// Reads an ITF bar pattern (bits MSB first, 1 = bar). Returns the digits, or a text
// starting with '!' that says what is wrong with the symbol.
inline std::string DecodeItf(const std::vector<std::uint8_t>& pattern) {
  std::vector<std::pair<bool, int>> runs;  // (bar, width)
  for (std::size_t i = 0; i < pattern.size() * 8; ++i) {
    const bool bar = (pattern[i / 8] >> (7 - i % 8)) & 1;
    if (!runs.empty() && runs.back().first == bar) {
      ++runs.back().second;
    } else {
      runs.push_back({bar, 1});
    }
  }
  if (runs.size() < 9 || runs.front().first || runs.back().first) return "!no quiet zones";
  const int leading = runs.front().second, trailing = runs.back().second;
  runs.erase(runs.begin());
  runs.pop_back();
  const int narrow = runs[0].second;
  if (leading < 10 * narrow || trailing < 10 * narrow) return "!quiet zone too small";
  for (int i = 0; i < 4; ++i) {
    if (runs[i].second != narrow) return "!bad start";
  }
  const std::size_t n = runs.size();
  if (runs[n - 3].second <= narrow || runs[n - 2].second != narrow || runs[n - 1].second != narrow) return "!bad stop";
  const std::size_t body = n - 7;
  if (body % 10 != 0) return "!bad length";

  // Wide (1) and narrow (0) elements of each digit, written as in the symbology's table.
  const char* table[10] = {"00110", "10001", "01001", "11000", "00101", "10100", "01100", "00011", "10010", "01010"};
  auto digitOf = [&](const std::string& widths) -> int {
    for (int d = 0; d < 10; ++d) {
      if (widths == table[d]) return d;
    }
    return -1;
  };
  std::string digits;
  for (std::size_t p = 4; p < 4 + body; p += 10) {
    std::string bars, spaces;
    for (int e = 0; e < 10; ++e) {
      const int width = runs[p + e].second;
      if (width != narrow && width < 2 * narrow) return "!ambiguous element";
      (e % 2 == 0 ? bars : spaces) += width == narrow ? '0' : '1';
    }
    const int first = digitOf(bars), second = digitOf(spaces);
    if (first < 0 || second < 0) return "!not a digit";
    digits += static_cast<char>('0' + first);
    digits += static_cast<char>('0' + second);
  }
  return digits;
}

}  // namespace receipt_test
