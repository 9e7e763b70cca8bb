// Helpers for the virtual printer tests: feeding written-out bytes, finding ink in a
// rendering, and reading barcodes back from it with zxing-cpp.
#pragma once

// zxing-cpp hands results out as UTF-8 text.
#define ZX_USE_UTF8 1
#include <ZXing/DecodeHints.h>
#include <ZXing/ReadBarcode.h>

#include <ostream>
#include <string>
#include <vector>

#include "emulator/image.h"
#include "emulator/virtual_printer.h"
#include "support/bytes.h"

namespace emulator_test {

using posprint::emulator::Image;
using posprint::emulator::PrinterState;
using posprint::emulator::VirtualPrinter;
using posprint::test::Hex;
using posprint::test::ToHex;

// The box around every black dot; width 0 when there is none.
struct Box {
  int x = 0, y = 0, width = 0, height = 0;
  bool operator==(const Box& other) const {
    return x == other.x && y == other.y && width == other.width && height == other.height;
  }
};

// How gtest shows a box that differs: {x, y, width, height}.
inline void PrintTo(const Box& box, std::ostream* out) {
  *out << "{" << box.x << ", " << box.y << ", " << box.width << ", " << box.height << "}";
}

inline Box InkBox(const Image& image, int fromY = 0, int toY = -1) {
  if (toY < 0) toY = image.Height();
  int x0 = image.Width(), y0 = toY, x1 = -1, y1 = -1;
  for (int y = fromY; y < toY; ++y)
    for (int x = 0; x < image.Width(); ++x)
      if (image.At(x, y) == posprint::emulator::kBlack) {
        x0 = std::min(x0, x), x1 = std::max(x1, x), y0 = std::min(y0, y), y1 = std::max(y1, y);
      }
  if (x1 < 0) return Box();
  return {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
}

// The rows that hold ink, as runs: each [first, last] band of inked rows.
inline std::vector<std::pair<int, int>> InkBands(const Image& image) {
  std::vector<std::pair<int, int>> bands;
  bool inBand = false;
  for (int y = 0; y < image.Height(); ++y) {
    const bool ink = image.Count(posprint::emulator::kBlack, 0, y, image.Width(), 1) > 0;
    if (ink && !inBand) bands.push_back({y, y});
    if (ink) bands.back().second = y;
    inBand = ink;
  }
  return bands;
}

// Every barcode zxing finds in the picture (its text), in no particular order.
inline std::vector<std::string> ReadBarcodes(const Image& image) {
  std::vector<std::uint8_t> grey(image.Dots().size());
  for (std::size_t i = 0; i < grey.size(); ++i) grey[i] = image.Dots()[i] == posprint::emulator::kBlack ? 0 : 255;
  std::vector<std::string> texts;
  // Read each band of the picture on its own: zxing finds one symbol a call.
  for (const auto& band : InkBands(image)) {
    const int top = std::max(0, band.first - 20), bottom = std::min(image.Height(), band.second + 21);
    ZXing::ImageView view(grey.data() + static_cast<std::size_t>(top) * image.Width(), image.Width(), bottom - top,
                          ZXing::ImageFormat::Lum);
    ZXing::DecodeHints hints;
    hints.setTryHarder(true);
    const ZXing::Result result = ZXing::ReadBarcode(view, hints);
    // A band of text under the bars sees the bars' lower end again: one reading a symbol.
    if (result.isValid() && (texts.empty() || texts.back() != result.text())) texts.push_back(result.text());
  }
  return texts;
}

// A virtual printer fed with bytes written out as hex.
inline std::unique_ptr<VirtualPrinter> PrinterFed(const std::string& model, const std::string& hex) {
  auto printer = VirtualPrinter::ForModel(model);
  printer->Receive(Hex(hex));
  return printer;
}

inline std::string Answers(VirtualPrinter& printer) {
  std::string all, burst;
  while (printer.TakeAnswer(&burst)) all += (all.empty() ? "" : " | ") + ToHex(burst);
  return all;
}

}  // namespace emulator_test
