// CodepageTranslator: wide characters to and from the printers' 8-bit character tables.
#pragma once

#include <cstdint>

class CodepageTranslator {
 public:
  // Framework code page numbers.
  static constexpr int kAnsi = 0;    // Windows-1252, the terminal's ANSI code page
  static constexpr int kPC437 = 8;   // IBM PC, USA: the printers' default table
  static constexpr int kPC858 = 12;  // Multilingual Latin-1 with the euro sign

  static bool IsKnown(int codePage);
  // True when ch has a byte in codePage (ASCII always has).
  static bool CanEncode(int codePage, wchar_t ch);
  // The byte for ch, or '?' when the code page has none.
  static char Encode(int codePage, wchar_t ch);
  // The character a printer using codePage prints for byte b (for virtual printers).
  static wchar_t Decode(int codePage, std::uint8_t b);
};
