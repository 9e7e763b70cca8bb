// Nx_Stringa: the terminal framework's wide-character string.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

class Nx_Stringa {
 public:
  Nx_Stringa() = default;
  Nx_Stringa(const wchar_t* text) : text_(text ? text : L"") {}
  Nx_Stringa(std::wstring text) : text_(std::move(text)) {}

  // Text from the outside world (XML, command line) arrives as UTF-8.
  static Nx_Stringa FromUtf8(std::string_view utf8);
  // The same into this string, reusing its storage: no allocation once it is large enough.
  void AssignUtf8(std::string_view utf8);
  void Assign(const wchar_t* text) { text_.assign(text ? text : L""); }
  std::string ToUtf8() const;

  const wchar_t* c_str() const { return text_.c_str(); }
  const std::wstring& wstr() const { return text_; }
  int Length() const { return static_cast<int>(text_.size()); }
  bool IsEmpty() const { return text_.empty(); }

  bool operator==(const Nx_Stringa& other) const { return text_ == other.text_; }
  bool operator!=(const Nx_Stringa& other) const { return text_ != other.text_; }
  bool operator<(const Nx_Stringa& other) const { return text_ < other.text_; }
  bool operator==(const wchar_t* other) const { return text_ == (other ? other : L""); }
  bool operator!=(const wchar_t* other) const { return !(*this == other); }
  int Compare(const Nx_Stringa& other) const { return text_.compare(other.text_); }

  // Upper-cases ASCII and Latin-1 letters in place (the keyword tables are upper case).
  void ToUpper();
  static wchar_t UpperChar(wchar_t ch);
  Nx_Stringa Upper() const;

  // 8-bit text in a framework code page (CodepageTranslator); characters the code page
  // cannot carry become '?' and are reported through NoteSubstitution (diagnostics.h).
  std::string GetAscii(int codePage) const;

  // The first candidate code page that can carry every character; else the first candidate.
  int FindCodePageIn(std::initializer_list<int> candidates) const;
  int FindCodePageIn(const int* candidates, int count) const;

  // Position of needle at or after `from`, or -1.
  int FindString(const wchar_t* needle, int from = 0) const;

  // The text before the first occurrence of separator (the whole text when absent).
  Nx_Stringa TakeParameterFromLeft(const wchar_t* separator) const;

  Nx_Stringa Mid(int from) const;

 private:
  std::wstring text_;
};
