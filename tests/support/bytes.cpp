#include "support/bytes.h"

#include <cctype>
#include <stdexcept>

#include "platform/otool.h"

namespace posprint::test {

std::string Hex(const std::string& hex) {
  std::string bytes;
  int nibbles = 0, value = 0;
  for (char c : hex) {
    if (std::isspace(static_cast<unsigned char>(c))) continue;
    if (!std::isxdigit(static_cast<unsigned char>(c))) throw std::invalid_argument("not hex: " + hex);
    value = value * 16 + (std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : std::toupper(c) - 'A' + 10);
    if (++nibbles == 2) {
      bytes.push_back(static_cast<char>(value));
      nibbles = value = 0;
    }
  }
  if (nibbles) throw std::invalid_argument("odd hex digits: " + hex);
  return bytes;
}

std::string ToHex(const std::string& bytes) {
  static const char digits[] = "0123456789ABCDEF";
  std::string hex;
  for (unsigned char b : bytes) {
    if (!hex.empty()) hex.push_back(' ');
    hex.push_back(digits[b >> 4]);
    hex.push_back(digits[b & 15]);
  }
  return hex;
}

ScriptedContext::ScriptedContext() {
  ctx.handle = otool_OPEN(port.Name().c_str(), 0, nullptr);
  ctx.lineWidth = 42;
  ctx.SetTerminator("\r\n");
}

ScriptedContext::~ScriptedContext() { otool_CLOSE(ctx.handle); }

}  // namespace posprint::test
