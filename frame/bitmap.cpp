// A 1-bit BMP printed as ESC * bit-image bands: each band is a run of columns, one byte
// (8-dot band) or three bytes (24-dot band) a column, the most significant bit the top dot.
#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "frame/bmp.h"
#include "frame/output.h"

namespace {

class BandBuilder {
 public:
  BandBuilder(int width, int bandDots, bool doubleHeight)
      : width_(width), bytesPerColumn_(bandDots / 8), bandDots_(bandDots),
        dotsPerRow_(doubleHeight ? 2 : 1), newDots_(doubleHeight ? 0x03 : 0x01) {}

  // The band's columns; false when there is no memory for them.
  bool Allocate() {
    try {
      cells_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(bytesPerColumn_), 0);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

  // Adds one stored row under the dots already in the band.
  void AddRow(const std::uint8_t* pixels) {
    const int group = filled_ / 8;
    for (int x = 0; x < width_; ++x) {
      const bool black = (pixels[x / 8] & (0x80 >> (x % 8))) == 0;  // a 0 pixel prints
      std::uint8_t& cell = cells_[static_cast<std::size_t>(x) * bytesPerColumn_ + group];
      cell = static_cast<std::uint8_t>(cell << dotsPerRow_ | (black ? newDots_ : 0));
    }
    filled_ += dotsPerRow_;
  }

  bool Full() const { return filled_ == bandDots_; }
  bool Empty() const { return filled_ == 0; }

  // Pushes a partly filled band up to the top, blank dots below the picture.
  void CompleteWithBlank() {
    const int partial = filled_ % 8;
    if (partial != 0) {
      const int group = filled_ / 8;
      for (int x = 0; x < width_; ++x) {
        std::uint8_t& cell = cells_[static_cast<std::size_t>(x) * bytesPerColumn_ + group];
        cell = static_cast<std::uint8_t>(cell << (8 - partial));
      }
    }
    filled_ = bandDots_;
  }

  // Header, columns and terminator; then the band starts again empty.
  PrinterResult Send(const PortContext& ctx, const unsigned char (&header)[5]) {
    if (WriteBytes(ctx, header, sizeof header) != kSuccess) return kFailure;
    if (WriteBytes(ctx, cells_.data(), cells_.size()) != kSuccess) return kFailure;
    if (WriteBytes(ctx, ctx.terminator, static_cast<std::size_t>(ctx.TerminatorLength())) != kSuccess) {
      return kFailure;
    }
    std::fill(cells_.begin(), cells_.end(), 0);
    filled_ = 0;
    return kSuccess;
  }

 private:
  int width_, bytesPerColumn_, bandDots_, dotsPerRow_;
  std::uint8_t newDots_;
  int filled_ = 0;
  std::vector<std::uint8_t> cells_;
};

}  // namespace

PrinterResult PrintBitmap(const PortContext& ctx, const std::vector<std::uint8_t>& bmp, bool doubleHeight,
                          std::uint8_t mode) {
  BmpImage image;
  switch (ReadMonoBmp(bmp, image)) {
    case BmpCheck::kNotBitmap: return kSuccess;  // not a picture: skipped without complaint
    case BmpCheck::kNotMono:
    case BmpCheck::kMalformed: return kFailure;
    case BmpCheck::kOk: break;
  }
  const int bandDots = (mode & 0x20) != 0 ? 24 : 8;  // ESC * modes 32 and 33 print 24-dot bands
  BandBuilder band(image.width, bandDots, doubleHeight);
  if (!band.Allocate()) return kErrNoMemory;

  // ESC * m nL nH: bit image of n columns in mode m, sent before every band
  const unsigned char header[5] = {0x1B, 0x2A, mode, static_cast<unsigned char>(image.width % 256),
                                   static_cast<unsigned char>(image.width / 256)};
  // The last stored row is the top of the picture.
  for (int row = image.height - 1; row >= 0; --row) {
    band.AddRow(BmpRow(bmp, image, row));
    if (band.Full() && band.Send(ctx, header) != kSuccess) return kFailure;
  }
  if (!band.Empty()) {
    band.CompleteWithBlank();
    if (band.Send(ctx, header) != kSuccess) return kFailure;
  }
  return kSuccess;
}
