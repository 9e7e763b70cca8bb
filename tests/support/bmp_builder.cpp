#include "support/bmp_builder.h"

#include <stdexcept>

namespace posprint::test {

void PutU32(std::vector<std::uint8_t>& file, std::size_t at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) file.at(at + i) = static_cast<std::uint8_t>(value >> (8 * i));
}

void PutU16(std::vector<std::uint8_t>& file, std::size_t at, std::uint16_t value) {
  file.at(at) = static_cast<std::uint8_t>(value);
  file.at(at + 1) = static_cast<std::uint8_t>(value >> 8);
}

std::vector<std::uint8_t> MonoBmp(const std::vector<std::string>& rowsTopFirst) {
  const std::size_t width = rowsTopFirst.empty() ? 0 : rowsTopFirst.front().size();
  const std::size_t height = rowsTopFirst.size();
  const std::size_t stride = (width + 31) / 32 * 4;
  const std::size_t dataOffset = 14 + 40 + 8;
  std::vector<std::uint8_t> file(dataOffset + stride * height, 0);
  file[0] = 'B';
  file[1] = 'M';
  PutU32(file, 2, static_cast<std::uint32_t>(file.size()));
  PutU32(file, 10, dataOffset);
  PutU32(file, 14, 40);  // BITMAPINFOHEADER
  PutU32(file, 18, static_cast<std::uint32_t>(width));
  PutU32(file, 22, static_cast<std::uint32_t>(height));
  PutU16(file, 26, 1);  // planes
  PutU16(file, 28, 1);  // bits per pixel
  PutU32(file, 34, static_cast<std::uint32_t>(stride * height));
  PutU32(file, 46, 2);  // colours in the palette
  PutU32(file, 58, 0x00FFFFFF);  // palette: entry 0 black (already 0), entry 1 white
  for (std::size_t y = 0; y < height; ++y) {
    const std::string& row = rowsTopFirst[height - 1 - y];
    if (row.size() != width) throw std::invalid_argument("rows of different lengths");
    for (std::size_t x = 0; x < width; ++x) {
      if (row[x] == '.') file[dataOffset + y * stride + x / 8] |= static_cast<std::uint8_t>(0x80 >> (x % 8));
    }
  }
  return file;
}

}  // namespace posprint::test
