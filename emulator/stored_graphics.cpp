#include "emulator/stored_graphics.h"

#include <dirent.h>

#include <cctype>
#include <cstdio>
#include <memory>

#include "platform/logo_files.h"

namespace posprint::emulator {
namespace {

constexpr std::size_t kMaxGraphicFile = 16 * 1024 * 1024;

std::uint32_t U32(const std::vector<std::uint8_t>& file, std::size_t at) {
  return file[at] | (file[at + 1] << 8) | (file[at + 2] << 16) | (static_cast<std::uint32_t>(file[at + 3]) << 24);
}

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

bool ReadFile(const std::string& path, std::vector<std::uint8_t>* bytes) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) return false;
  std::uint8_t buffer[65536];
  std::size_t got;
  while ((got = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) {
    bytes->insert(bytes->end(), buffer, buffer + got);
    if (bytes->size() > kMaxGraphicFile) return false;
  }
  return true;
}

}  // namespace

bool DecodeMonoBmp(const std::vector<std::uint8_t>& file, Image* picture, std::string* error) {
  if (file.size() < 62 || file[0] != 'B' || file[1] != 'M') {
    *error = "not a BMP file";
    return false;
  }
  const std::uint32_t offset = U32(file, 10);
  const std::int32_t width = static_cast<std::int32_t>(U32(file, 18));
  std::int32_t height = static_cast<std::int32_t>(U32(file, 22));
  const int bits = file[28] | (file[29] << 8);
  const std::uint32_t headerSize = U32(file, 14);
  if (bits != 1) {
    *error = "not a 1-bit BMP";
    return false;
  }
  const bool topDown = height < 0;
  if (topDown) height = -height;
  if (width <= 0 || height <= 0 || width > kMaxImageWidth || height > kMaxImageHeight) {
    *error = "BMP size out of range";
    return false;
  }
  // The two palette entries follow the header; a dark entry prints.
  const std::size_t palette = 14 + static_cast<std::size_t>(headerSize);
  if (palette + 8 > file.size()) {
    *error = "BMP palette missing";
    return false;
  }
  bool dark[2];
  for (int i = 0; i < 2; ++i) {
    const std::uint8_t* entry = &file[palette + 4 * i];  // blue, green, red, reserved
    dark[i] = (entry[0] * 114 + entry[1] * 587 + entry[2] * 299) / 1000 < 128;
  }
  const std::size_t stride = ((static_cast<std::size_t>(width) + 31) / 32) * 4;
  if (offset > file.size() || stride * height > file.size() - offset) {
    *error = "BMP pixel data cut short";
    return false;
  }
  Image out(width, height);
  for (int row = 0; row < height; ++row) {
    const std::uint8_t* line = &file[offset + stride * static_cast<std::size_t>(row)];
    const int y = topDown ? row : height - 1 - row;
    for (int x = 0; x < width; ++x)
      if (dark[(line[x / 8] >> (7 - x % 8)) & 1]) out.Set(x, y, kBlack);
  }
  *picture = out;
  return true;
}

bool RecallGraphic(const std::string& name, Image* picture, std::string* error) {
  // Device letter and extension: "E:LOGO.GRF" is the graphic LOGO.
  std::string base = name;
  const std::size_t colon = base.find(':');
  if (colon != std::string::npos) base = base.substr(colon + 1);
  const std::size_t dot = base.rfind('.');
  if (dot != std::string::npos) base = base.substr(0, dot);
  const std::string wanted = Upper(base) + ".BMP";

  const std::string& directory = LogoDirectory();
  std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(directory.c_str()), closedir);
  if (!dir) {
    *error = "graphic " + name + ": the logo directory " + directory + " cannot be read";
    return false;
  }
  while (dirent* entry = readdir(dir.get())) {
    if (Upper(entry->d_name) != wanted) continue;
    std::vector<std::uint8_t> bytes;
    if (!ReadFile(directory + "/" + entry->d_name, &bytes)) {
      *error = "graphic " + name + ": " + entry->d_name + " cannot be read";
      return false;
    }
    std::string problem;
    if (!DecodeMonoBmp(bytes, picture, &problem)) {
      *error = "graphic " + name + ": " + entry->d_name + ": " + problem;
      return false;
    }
    return true;
  }
  *error = "graphic " + name + " is not stored on the printer (no " + wanted + " in " + directory + ")";
  return false;
}

}  // namespace posprint::emulator
