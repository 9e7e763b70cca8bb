#include "emulator/png_file.h"

#include <png.h>

#include <cstdio>
#include <cstring>
#include <memory>

namespace posprint::emulator {
namespace {

struct Rgb {
  std::uint8_t r, g, b;
};
// Paper, black dots, the cut mark, the background.
constexpr Rgb kPalette[] = {{255, 255, 255}, {0, 0, 0}, {220, 30, 30}, {200, 200, 200}};
constexpr int kPaletteSize = sizeof kPalette / sizeof kPalette[0];

}  // namespace

std::vector<std::uint8_t> EncodePng(const Image& image) {
  std::vector<std::uint8_t> out;
  if (image.Empty()) return out;
  std::uint8_t colormap[kPaletteSize * 3];
  for (int i = 0; i < kPaletteSize; ++i) {
    colormap[3 * i] = kPalette[i].r;
    colormap[3 * i + 1] = kPalette[i].g;
    colormap[3 * i + 2] = kPalette[i].b;
  }
  std::vector<std::uint8_t> indices(image.Dots());
  for (std::uint8_t& ink : indices)
    if (ink >= kPaletteSize) ink = kPaper;

  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.Width());
  png.height = static_cast<png_uint_32>(image.Height());
  png.format = PNG_FORMAT_RGB_COLORMAP;
  png.colormap_entries = kPaletteSize;
  png_alloc_size_t size = 0;
  if (!png_image_write_get_memory_size(png, size, 0, indices.data(), 0, colormap)) {
    png_image_free(&png);
    return out;
  }
  out.resize(size);
  if (!png_image_write_to_memory(&png, out.data(), &size, 0, indices.data(), 0, colormap)) out.clear();
  else out.resize(size);
  png_image_free(&png);
  return out;
}

bool WritePng(const Image& image, const std::string& path, std::string* error) {
  const std::vector<std::uint8_t> bytes = EncodePng(image.Empty() ? Image(1, 1) : image);
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"), std::fclose);
  if (!file) {
    if (error) *error = path + ": " + std::strerror(errno);
    return false;
  }
  if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
    if (error) *error = path + ": write failed";
    return false;
  }
  return true;
}

bool ReadPngGrey(const std::string& path, GreyPicture* picture, std::string* error) {
  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&png, path.c_str())) {
    if (error) *error = path + ": " + png.message;
    return false;
  }
  png.format = PNG_FORMAT_GRAY;
  picture->width = static_cast<int>(png.width);
  picture->height = static_cast<int>(png.height);
  picture->grey.assign(PNG_IMAGE_SIZE(png), 0);
  if (!png_image_finish_read(&png, nullptr, picture->grey.data(), 0, nullptr)) {
    if (error) *error = path + ": " + png.message;
    png_image_free(&png);
    return false;
  }
  return true;
}

}  // namespace posprint::emulator
