// CodepageTranslator: the printers' character tables. Bytes 0x00-0x7F are ASCII in every
// table; the upper halves come from generated tables (scripts/gen_codepage_tables.py).
#include "platform/codepage.h"

namespace {

#include "platform/codepage_tables.inc"

// The upper half of a known code page, or null (an unknown page carries ASCII only).
const char16_t* HighHalf(int codePage) {
  switch (codePage) {
    case CodepageTranslator::kAnsi: return kAnsiHigh;
    case CodepageTranslator::kPC437: return kPC437High;
    case CodepageTranslator::kPC858: return kPC858High;
    default: return nullptr;
  }
}

// The byte 0x80..0xFF that prints ch, or -1.
int HighByteFor(int codePage, wchar_t ch) {
  const char16_t* high = HighHalf(codePage);
  if (!high || ch < 0x80 || ch > 0xFFFF) return -1;
  for (int i = 0; i < 128; ++i) {
    if (high[i] == static_cast<char16_t>(ch)) return 0x80 + i;
  }
  return -1;
}

}  // namespace

bool CodepageTranslator::IsKnown(int codePage) { return HighHalf(codePage) != nullptr; }

bool CodepageTranslator::CanEncode(int codePage, wchar_t ch) {
  if (ch >= 0 && ch < 0x80) return true;
  return HighByteFor(codePage, ch) >= 0;
}

char CodepageTranslator::Encode(int codePage, wchar_t ch) {
  if (ch >= 0 && ch < 0x80) return static_cast<char>(ch);
  const int byte = HighByteFor(codePage, ch);
  return byte < 0 ? '?' : static_cast<char>(static_cast<unsigned char>(byte));
}

wchar_t CodepageTranslator::Decode(int codePage, std::uint8_t b) {
  if (b < 0x80) return static_cast<wchar_t>(b);
  const char16_t* high = HighHalf(codePage);
  if (!high || high[b - 0x80] == 0) return static_cast<wchar_t>(0xFFFD);
  return static_cast<wchar_t>(high[b - 0x80]);
}
