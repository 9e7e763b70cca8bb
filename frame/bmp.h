// Reading the 1-bit Windows BMP files used as logos. Every access is checked against
// the file in memory: a truncated or lying file is refused, never read past its end.
#pragma once

#include <cstdint>
#include <vector>

struct BmpImage {
  std::uint32_t dataOffset = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::uint16_t bitsPerPixel = 0;
  std::uint32_t imageSize = 0;
  std::uint32_t stride = 0;    // bytes per stored row
  std::uint32_t rowBytes = 0;  // bytes per row that hold pixels: (width + 7) / 8
};

enum class BmpCheck {
  kOk,
  kNotBitmap,   // no "BM" signature: callers print nothing and succeed
  kNotMono,     // a bit depth other than 1: callers give 0
  kMalformed,   // header fields that do not fit the file, or a top-down (negative height) file: callers give 0
};

BmpCheck ReadMonoBmp(const std::vector<std::uint8_t>& file, BmpImage& image);

// Pointer to stored row `row` (0 = first stored, the bottom of the picture).
inline const std::uint8_t* BmpRow(const std::vector<std::uint8_t>& file, const BmpImage& image, int row) {
  return file.data() + image.dataOffset + static_cast<std::size_t>(row) * image.stride;
}
