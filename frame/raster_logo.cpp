// GS v 0 m xL xH yL yH d1...dk: a raster image of x bytes by y rows. Each row goes out as
// the margin's blank bytes, then the logo's row.
#include "frame/raster_logo.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "frame/bmp.h"
#include "frame/output.h"

namespace {

// Blank bytes before each row that centre the logo on the line.
std::uint64_t LeftMarginBytes(int lineWidthDots, std::int32_t width, bool doubleSize, RasterMargin rule) {
  const std::uint32_t scale = doubleSize ? 2 : 1;
  const std::uint32_t divisor = doubleSize ? 32 : 16;  // dots to bytes, times the scale
  if (rule == RasterMargin::kWrapUnsigned) {
    // Unsigned 32-bit arithmetic: a negative difference wraps round to a huge number.
    const std::uint32_t difference =
        static_cast<std::uint32_t>(lineWidthDots) - scale * static_cast<std::uint32_t>(width);
    const std::int32_t quotient = static_cast<std::int32_t>(difference / divisor);
    return quotient < 0 ? 0 : static_cast<std::uint64_t>(quotient);
  }
  const std::int64_t difference = std::int64_t{lineWidthDots} - std::int64_t{scale} * width;
  return difference > 0 ? static_cast<std::uint64_t>(difference / divisor) : 0;
}

// Low byte, then the high byte (value / 256).
void PutLowHigh(std::uint8_t* out, std::uint32_t value) {
  out[0] = static_cast<std::uint8_t>(value % 256);
  out[1] = static_cast<std::uint8_t>(value / 256);
}

}  // namespace

PrinterResult PrintRasterLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp, int lineWidthDots,
                              bool doubleSize, RasterMargin margin) {
  BmpImage image;
  switch (ReadMonoBmp(bmp, image)) {
    case BmpCheck::kNotBitmap: return kSuccess;  // not a picture: skipped without complaint
    case BmpCheck::kNotMono:
    case BmpCheck::kMalformed: return kFailure;
    case BmpCheck::kOk: break;
  }
  const std::uint32_t rowBytes = image.rowBytes;
  const int rest = image.width % 8;  // pixels used in the last byte of a row, 0 for all 8
  const std::uint8_t lastMask = rest == 0 ? 0xFF : static_cast<std::uint8_t>(~((1u << (8 - rest)) - 1));

  const std::uint64_t marginBytes = LeftMarginBytes(lineWidthDots, image.width, doubleSize, margin);
  if (marginBytes > kMaxRasterMarginBytes) return kErrNoMemory;
  const std::uint32_t marginCount = static_cast<std::uint32_t>(marginBytes);

  std::vector<std::uint8_t> row;
  try {
    row.resize(std::max(marginCount, rowBytes));
  } catch (const std::bad_alloc&) {
    return kErrNoMemory;
  }

  // GS v 0 m: raster image, m '0' normal size or '3' double width and height
  std::uint8_t header[8] = {0x1D, 0x76, 0x30, static_cast<std::uint8_t>(doubleSize ? 0x33 : 0x30)};
  PutLowHigh(header + 4, marginCount + rowBytes);                    // xL xH: bytes a row
  PutLowHigh(header + 6, static_cast<std::uint32_t>(image.height));  // yL yH: rows
  if (WriteBytes(ctx, header, sizeof header) != kSuccess) return kFailure;

  // The last stored row is the top of the picture.
  for (int y = image.height - 1; y >= 0; --y) {
    if (marginCount > 0) {
      std::fill(row.begin(), row.begin() + marginCount, 0);
      if (WriteBytes(ctx, row.data(), marginCount) != kSuccess) return kFailure;
    }
    const std::uint8_t* pixels = BmpRow(bmp, image, y);
    // A 0 pixel in the file is black; a set bit on the printer is a black dot.
    for (std::uint32_t i = 0; i < rowBytes; ++i) row[i] = static_cast<std::uint8_t>(~pixels[i]);
    row[rowBytes - 1] &= lastMask;  // the padding bits of the last byte stay white
    if (WriteBytes(ctx, row.data(), rowBytes) != kSuccess) return kFailure;
  }
  return kSuccess;
}
