// Barcode and QR code symbols encoded with zint and drawn in printer dots: the virtual
// printers draw the bars themselves from zint's modules, so module width, bar height and
// the wide-to-narrow ratio are exactly what the printer was told.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "emulator/image.h"

namespace posprint::emulator {

enum class Symbology { kUpcA, kUpcE, kEan13, kEan8, kCode39, kItf, kCodabar, kCode93, kCode128, kQrCode };

// One encoded symbol: rows x width modules, 1 for a dark module.
struct Symbol {
  int width = 0;
  int rows = 0;
  std::vector<std::uint8_t> modules;
  std::string text;   // the human-readable line (with the check digit where the code has one)
  std::string error;  // why the data could not be encoded; empty when it could
  bool Ok() const { return error.empty() && width > 0 && rows > 0; }
  bool Dark(int x, int y) const { return modules[static_cast<std::size_t>(y) * width + x] != 0; }
};

// QR error correction levels.
enum class QrLevel { kL = 1, kM = 2, kQ = 3, kH = 4 };

Symbol Encode(Symbology symbology, const std::string& data, QrLevel level = QrLevel::kM);

// The bars of a one-row symbol: every module moduleDots wide, the bars heightDots high.
// wideRatio > 0 redraws the wide elements of Code 39 and interleaved 2 of 5 at that
// multiple of the narrow one (ZPL's ^BY ratio); 0 keeps zint's 3 to 1.
Image DrawBars(const Symbol& symbol, Symbology symbology, int moduleDots, int heightDots, double wideRatio = 0);
// A two-dimensional symbol, each module moduleDots square.
Image DrawMatrix(const Symbol& symbol, int moduleDots);

}  // namespace posprint::emulator
