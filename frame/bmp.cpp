// Reading a 1-bit Windows BMP held in memory. The fields that the logo printers use are
// read from their fixed places and checked against the size of the file, so that every
// stored row that BmpRow points at lies whole inside it.
#include "frame/bmp.h"

#include <cstddef>
#include <cstdint>

namespace {

// File header (14 bytes) and BITMAPINFOHEADER (40 bytes).
constexpr std::size_t kHeaderBytes = 54;
constexpr std::size_t kDataOffsetAt = 10;
constexpr std::size_t kWidthAt = 18;
constexpr std::size_t kHeightAt = 22;
constexpr std::size_t kBitsPerPixelAt = 28;
constexpr std::size_t kImageSizeAt = 34;

std::uint32_t U32(const std::vector<std::uint8_t>& file, std::size_t at) {
  return static_cast<std::uint32_t>(file[at]) | static_cast<std::uint32_t>(file[at + 1]) << 8 |
         static_cast<std::uint32_t>(file[at + 2]) << 16 | static_cast<std::uint32_t>(file[at + 3]) << 24;
}

std::uint16_t U16(const std::vector<std::uint8_t>& file, std::size_t at) {
  return static_cast<std::uint16_t>(file[at] | file[at + 1] << 8);
}

}  // namespace

BmpCheck ReadMonoBmp(const std::vector<std::uint8_t>& file, BmpImage& image) {
  image = BmpImage{};
  if (file.size() < 2 || file[0] != 'B' || file[1] != 'M') return BmpCheck::kNotBitmap;
  if (file.size() < kHeaderBytes) return BmpCheck::kMalformed;

  image.dataOffset = U32(file, kDataOffsetAt);
  image.width = static_cast<std::int32_t>(U32(file, kWidthAt));
  image.height = static_cast<std::int32_t>(U32(file, kHeightAt));
  image.bitsPerPixel = U16(file, kBitsPerPixelAt);
  image.imageSize = U32(file, kImageSizeAt);

  if (image.bitsPerPixel != 1) return BmpCheck::kNotMono;
  // A negative height marks a top-down file; the printers' logos are bottom-up, and a
  // top-down one would come out upside down, so it is refused like a broken one.
  if (image.width <= 0 || image.height <= 0) return BmpCheck::kMalformed;

  const std::uint64_t width = static_cast<std::uint64_t>(image.width);
  const std::uint64_t height = static_cast<std::uint64_t>(image.height);
  // A missing image size is taken as one bit a pixel without row padding; the stride
  // that follows must still hold every pixel of a row.
  const std::uint64_t imageSize = image.imageSize != 0 ? image.imageSize : width * height / 8;
  if (imageSize > UINT32_MAX) return BmpCheck::kMalformed;
  const std::uint64_t stride = imageSize / height;
  const std::uint64_t rowBytes = (width + 7) / 8;
  if (stride < rowBytes) return BmpCheck::kMalformed;
  if (std::uint64_t{image.dataOffset} + stride * height > file.size()) return BmpCheck::kMalformed;

  image.imageSize = static_cast<std::uint32_t>(imageSize);
  image.stride = static_cast<std::uint32_t>(stride);
  image.rowBytes = static_cast<std::uint32_t>(rowBytes);
  return BmpCheck::kOk;
}
