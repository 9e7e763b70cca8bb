#include "emulator/notes.h"

#include <cstdio>

namespace posprint::emulator {

void Notes::Add(const std::string& note) {
  if (list_.size() >= kMaxNotes) {
    ++dropped_;
    return;
  }
  list_.push_back(note);
}

std::string HexBytes(const unsigned char* bytes, std::size_t count) {
  std::string text;
  char hex[4];
  for (std::size_t i = 0; i < count; ++i) {
    std::snprintf(hex, sizeof hex, "%02X", bytes[i]);
    if (i) text += ' ';
    text += hex;
  }
  return text;
}

int HexByteAt(const std::string& text, std::size_t at) {
  auto digit = [](char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
  };
  const int high = digit(text[at]), low = digit(text[at + 1]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

}  // namespace posprint::emulator
