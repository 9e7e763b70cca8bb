// Bar patterns for printers that cannot draw a barcode themselves: the symbol is built
// here as a row of modules and the driver prints it as a bit image.
//
// Interleaved 2 of 5 (ITF): every digit is five elements, two of them wide. Digits go in
// pairs: the first digit of a pair is drawn in the bars, the second in the spaces between
// them, so a pair is ten alternating elements starting with a bar. The symbol is
//
//   quiet zone | start: bar space bar space, all narrow | pairs | stop: wide bar,
//   narrow space, narrow bar | quiet zone
//
// A narrow element is `moduleWidth` columns, a wide one kItfWideRatio times that. Data
// with an odd number of digits gets a leading 0 (ITF has no odd symbols); any character
// that is not a digit makes the data unprintable.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// A wide element is three narrow ones: the widest ratio the symbology allows, which
// scanners read most reliably on dot-matrix print.
constexpr int kItfWideRatio = 3;
// Blank modules on each side of the symbol (the minimum a scanner needs to find it).
constexpr int kItfQuietZoneModules = 10;
// The widest module accepted, in columns.
constexpr int kItfMaxModuleWidth = 255;

// The ITF symbol of `digits` as bits, one a column, most significant bit first, 1 for a
// bar. The last byte is padded with spaces. False (pattern left empty) for empty data, a
// character that is not a digit, or a module width outside 1..kItfMaxModuleWidth.
bool ItfBarPattern(std::string_view digits, int moduleWidth, std::vector<std::uint8_t>& pattern);
