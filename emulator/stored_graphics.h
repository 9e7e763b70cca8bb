// The virtual label printer's graphic memory. A real printer recalls (^XG) graphics that
// were stored on it beforehand; the virtual one finds them in the logo directory of the
// host (LogoDirectory()): E:NAME.GRF is the 1-bit BMP file NAME.BMP there, in any letter
// case.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "emulator/image.h"

namespace posprint::emulator {

// A 1-bit Windows BMP as dots (dark palette entries print); false with *error set when
// the file is not one.
bool DecodeMonoBmp(const std::vector<std::uint8_t>& file, Image* picture, std::string* error);

// "E:LOGO.GRF" -> the picture of LOGO.BMP in the logo directory.
bool RecallGraphic(const std::string& name, Image* picture, std::string* error);

}  // namespace posprint::emulator
