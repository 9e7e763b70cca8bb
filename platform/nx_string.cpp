// Nx_Stringa: conversions between the document's UTF-8, the drivers' wide text and the
// printers' 8-bit code pages.
#include "platform/nx_string.h"

#include <cwchar>

#include "platform/codepage.h"
#include "platform/diagnostics.h"

namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Decodes one sequence at utf8[i]; returns its length in bytes (at least 1). A byte that
// does not start a well-formed sequence (overlong form, surrogate, beyond U+10FFFF,
// truncated) is one U+FFFD, and decoding resumes at the next byte.
std::size_t DecodeOne(std::string_view utf8, std::size_t i, wchar_t& out) {
  const unsigned char lead = static_cast<unsigned char>(utf8[i]);
  out = kReplacement;
  if (lead < 0x80) {
    out = lead;
    return 1;
  }
  std::size_t length;
  char32_t code;
  char32_t minimum;
  if ((lead & 0xE0) == 0xC0) {
    length = 2, code = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3, code = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4, code = lead & 0x07, minimum = 0x10000;
  } else {
    return 1;
  }
  if (i + length > utf8.size()) return 1;
  for (std::size_t k = 1; k < length; ++k) {
    const unsigned char next = static_cast<unsigned char>(utf8[i + k]);
    if (!IsContinuation(next)) return 1;
    code = (code << 6) | (next & 0x3F);
  }
  if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 1;
  out = static_cast<wchar_t>(code);
  return length;
}

void AppendUtf8(std::string& out, char32_t code) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = kReplacement;
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

wchar_t UpperOf(wchar_t ch) {
  if (ch >= L'a' && ch <= L'z') return static_cast<wchar_t>(ch - 0x20);
  // Latin-1 small letters à..þ sit 0x20 above their capitals; ÷ (0xF7) is not a letter.
  if (ch >= 0xE0 && ch <= 0xFE && ch != 0xF7) return static_cast<wchar_t>(ch - 0x20);
  if (ch == 0xFF) return static_cast<wchar_t>(0x178);  // ÿ -> Ÿ, outside Latin-1
  return ch;  // ß and everything else stay
}

}  // namespace

Nx_Stringa Nx_Stringa::FromUtf8(std::string_view utf8) {
  Nx_Stringa text;
  text.AssignUtf8(utf8);
  return text;
}

void Nx_Stringa::AssignUtf8(std::string_view utf8) {
  // A wide string never has more characters than its UTF-8 form has bytes.
  text_.resize(utf8.size());
  wchar_t* out = text_.data();
  std::size_t length = 0;
  for (std::size_t i = 0; i < utf8.size();) {
    const unsigned char byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x80) {  // most of a ticket's text is ASCII: one byte, one character
      out[length++] = static_cast<wchar_t>(byte);
      ++i;
      continue;
    }
    i += DecodeOne(utf8, i, out[length++]);
  }
  text_.resize(length);
}

std::string Nx_Stringa::ToUtf8() const {
  std::string out;
  out.reserve(text_.size());
  for (wchar_t ch : text_) AppendUtf8(out, static_cast<char32_t>(ch));
  return out;
}

void Nx_Stringa::ToUpper() {
  for (wchar_t& ch : text_) ch = UpperOf(ch);
}

wchar_t Nx_Stringa::UpperChar(wchar_t ch) { return UpperOf(ch); }

Nx_Stringa Nx_Stringa::Upper() const {
  Nx_Stringa copy(*this);
  copy.ToUpper();
  return copy;
}

std::string Nx_Stringa::GetAscii(int codePage) const {
  // One byte a character, always: the bytes are written in place.
  std::string out(text_.size(), '\0');
  for (std::size_t i = 0; i < text_.size(); ++i) {
    const wchar_t ch = text_[i];
    if (ch >= 0 && ch < 0x80) {
      out[i] = static_cast<char>(ch);  // ASCII is the same in every code page
    } else if (CodepageTranslator::CanEncode(codePage, ch)) {
      out[i] = CodepageTranslator::Encode(codePage, ch);
    } else {
      out[i] = '?';
      posprint::NoteSubstitution(ch, codePage);
    }
  }
  return out;
}

int Nx_Stringa::FindCodePageIn(std::initializer_list<int> candidates) const {
  return FindCodePageIn(candidates.begin(), static_cast<int>(candidates.size()));
}

int Nx_Stringa::FindCodePageIn(const int* candidates, int count) const {
  if (!candidates || count <= 0) return 0;
  for (int i = 0; i < count; ++i) {
    bool carriesAll = true;
    for (wchar_t ch : text_) {
      if (!CodepageTranslator::CanEncode(candidates[i], ch)) {
        carriesAll = false;
        break;
      }
    }
    if (carriesAll) return candidates[i];
  }
  return candidates[0];
}

int Nx_Stringa::FindString(const wchar_t* needle, int from) const {
  if (!needle) return -1;
  if (from < 0) from = 0;
  if (from > Length()) return -1;
  const std::size_t at = text_.find(needle, static_cast<std::size_t>(from));
  return at == std::wstring::npos ? -1 : static_cast<int>(at);
}

Nx_Stringa Nx_Stringa::TakeParameterFromLeft(const wchar_t* separator) const {
  if (!separator || !*separator) return *this;
  const std::size_t at = text_.find(separator);
  return at == std::wstring::npos ? *this : Nx_Stringa(text_.substr(0, at));
}

Nx_Stringa Nx_Stringa::Mid(int from) const {
  if (from <= 0) return *this;
  if (from >= Length()) return Nx_Stringa();
  return Nx_Stringa(text_.substr(static_cast<std::size_t>(from)));
}
