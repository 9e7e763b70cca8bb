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

}  // namespace posprint::emulator
