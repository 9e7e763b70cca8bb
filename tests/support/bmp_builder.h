// Test helper: small 1-bit BMP files written as pictures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace posprint::test {

// A 1-bit BMP from rows of '#' (black) and '.' (white), top row first, all of one length.
// Stored as a drawing program writes it: bottom row first, rows padded with 0 bits to
// 4 bytes, palette black then white, data at byte 62, image size filled in.
std::vector<std::uint8_t> MonoBmp(const std::vector<std::string>& rowsTopFirst);

// Overwrite a little-endian header field: e.g. 10 data offset, 18 width, 22 height,
// 28 bits per pixel (16-bit), 34 image size.
void PutU32(std::vector<std::uint8_t>& file, std::size_t at, std::uint32_t value);
void PutU16(std::vector<std::uint8_t>& file, std::size_t at, std::uint16_t value);

}  // namespace posprint::test
