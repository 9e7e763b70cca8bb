// Pictures to and from PNG files: an 8-bit palette PNG, one palette entry an ink. The
// file carries no time stamp, so the same picture always gives the same bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "emulator/image.h"

namespace posprint::emulator {

// The PNG bytes of the picture; empty when it has no dots.
std::vector<std::uint8_t> EncodePng(const Image& image);
bool WritePng(const Image& image, const std::string& path, std::string* error);

// A PNG read back as grey levels (0 black .. 255 white), row-major; false when the file
// cannot be read or is not a PNG.
struct GreyPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> grey;
  std::uint8_t At(int x, int y) const { return grey[static_cast<std::size_t>(y) * width + x]; }
};
bool ReadPngGrey(const std::string& path, GreyPicture* picture, std::string* error);

}  // namespace posprint::emulator
