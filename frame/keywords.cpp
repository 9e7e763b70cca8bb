#include "frame/keywords.h"

#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

namespace {

using Row = std::pair<const wchar_t*, int>;

// A process-wide table of keywords and their codes, marked built on first use (the
// command table also by every driver's constructor).
//
// The rows are few (a dozen at most) and every field of a ticket looks several words up,
// so a lookup scans the rows comparing the word as it stands, upper-cased character by
// character on the way: no copy of the word, no allocation, no tree of strings.
class KeywordTable {
 public:
  KeywordTable(std::initializer_list<Row> rows, bool upperCase, bool hasEmptyDefault, int fallback)
      : rows_(rows), upperCase_(upperCase), hasEmptyDefault_(hasEmptyDefault), fallback_(fallback) {}

  void Build() { built_ = true; }

  int Lookup(const wchar_t* word) {
    if (!word) word = L"";
    if (hasEmptyDefault_ && *word == 0) return fallback_;
    if (!built_) Build();
    int code = 0;  // an absent key reads as 0
    for (const Row& row : rows_) {
      if (Matches(row.first, word)) {
        code = row.second;
        break;
      }
    }
    return code == 0 ? fallback_ : code;
  }

 private:
  // The keywords are upper-case ASCII. Upper-casing (Nx_Stringa::ToUpper) never turns a
  // character outside ASCII into one inside it, so such a character matches no keyword.
  bool Matches(const wchar_t* keyword, const wchar_t* word) const {
    for (;; ++keyword, ++word) {
      wchar_t c = *word;
      if (upperCase_ && c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - 0x20);
      if (c != *keyword) return false;
      if (c == 0) return true;
    }
  }

  std::vector<Row> rows_;
  bool upperCase_;
  bool hasEmptyDefault_;
  int fallback_;
  bool built_ = false;
};

KeywordTable& Commands() {
  static KeywordTable table({{L"INIT_PRINTER", 15}, {L"STOP_PRINTER", 1}, {L"START_PRINT", 3},
                             {L"STOP_PRINT", 4}, {L"CHECK", 2}, {L"NEWPRINT", 16}},
                            true, false, 0);
  return table;
}

KeywordTable& FieldTypes() {
  static KeywordTable table({{L"CUT", 1}, {L"LINEFEED", 2}, {L"LINE", 3}, {L"BARCODE", 4}, {L"LOGO", 5},
                             {L"DOUBLEFIELD", 6}, {L"DOUBLEFIELDS", 6}, {L"SINGLEFIELD", 7},
                             {L"MOBILEFIELD", 8}, {L"MOBILEBARCODE", 9}},
                            true, false, 0);
  return table;
}

KeywordTable& Rotations() {
  static KeywordTable table({{L"0", 11}, {L"90", 12}, {L"180", 13}, {L"270", 14}}, false, true, 11);
  return table;
}

// There is no FONTJ or FONTK: FONTL follows FONTI.
KeywordTable& FontSizes() {
  static KeywordTable table({{L"NORMAL", 21}, {L"SMALL", 22}, {L"LARGE", 23}, {L"FONTA", 21}, {L"FONTB", 22},
                             {L"FONTC", 23}, {L"FONTD", 24}, {L"FONTE", 25}, {L"FONTF", 26}, {L"FONTG", 27},
                             {L"FONTH", 28}, {L"FONTI", 29}, {L"FONTL", 30}},
                            true, true, 21);
  return table;
}

KeywordTable& Heights() {
  static KeywordTable table({{L"1", 31}, {L"2", 32}, {L"3", 33}, {L"4", 34}, {L"5", 35}, {L"6", 36},
                             {L"7", 37}, {L"8", 38}},
                            false, true, 31);
  return table;
}

KeywordTable& Widths() {
  static KeywordTable table({{L"1", 41}, {L"2", 42}, {L"3", 43}, {L"4", 44}, {L"5", 45}, {L"6", 46},
                             {L"7", 47}, {L"8", 48}},
                            false, true, 41);
  return table;
}

// 57 is unassigned and CURSIVE_UNDERLINE is 50: the drivers switch on these numbers.
KeywordTable& FontStyles() {
  static KeywordTable table({{L"NORMAL", 51}, {L"DOUBLEBEAT", 52}, {L"CURSIVE", 53}, {L"UNDERLINE", 54},
                             {L"REVERSE", 55}, {L"COMPRESS", 56}, {L"DOUBLEBEAT_CURSIVE", 58},
                             {L"DOUBLEBEAT_UNDERLINE", 59}, {L"CURSIVE_UNDERLINE", 50}},
                            true, true, 51);
  return table;
}

KeywordTable& Alignments() {
  static KeywordTable table({{L"NO_ALIGN", 61}, {L"LEFT_ALIGN", 60}, {L"RIGHT_ALIGN", 63},
                             {L"CENTER_PRINTER", 65}, {L"LEFT_PRINTER", 64}, {L"RIGHT_PRINTER", 66},
                             {L"CENTER", 62}, {L"LEFT", 60}, {L"RIGHT", 63}},
                            true, true, 61);
  return table;
}

// "NO" and "FALSE" hold 0, which reads as absent: they give the default 2 (text below).
KeywordTable& BarcodeTexts() {
  static KeywordTable table({{L"NO", 0}, {L"SOPRA", 1}, {L"SOTTO", 2}, {L"SOTTO_SOPRA", 3}, {L"FALSE", 0},
                             {L"TRUE", 2}, {L"SI", 2}},
                            true, true, 2);
  return table;
}

KeywordTable& BarcodeTypes() {
  static KeywordTable table({{L"CODE128", 1}, {L"INDICOD_EAN13", 2}, {L"EAN13", 3}, {L"EAN8", 4},
                             {L"CODE39", 5}, {L"ITF2OF5", 6}, {L"CODE128A", 11}, {L"CODE128B", 12},
                             {L"CODE128C", 13}, {L"QR_CODE", 14}},
                            true, true, 1);
  return table;
}

}  // namespace

void InitCommandTable() { Commands().Build(); }

int LookupCommand(const wchar_t* word) { return Commands().Lookup(word); }
int LookupFieldType(const wchar_t* word) { return FieldTypes().Lookup(word); }
int LookupRotation(const wchar_t* word) { return Rotations().Lookup(word); }
int LookupFontSize(const wchar_t* word) { return FontSizes().Lookup(word); }
int LookupExpansionHeight(const wchar_t* word) { return Heights().Lookup(word); }
int LookupExpansionWidth(const wchar_t* word) { return Widths().Lookup(word); }
int LookupFontStyle(const wchar_t* word) { return FontStyles().Lookup(word); }
int LookupAlignment(const wchar_t* word) { return Alignments().Lookup(word); }
int LookupBarcodeText(const wchar_t* word) { return BarcodeTexts().Lookup(word); }
int LookupBarcodeType(const wchar_t* word) { return BarcodeTypes().Lookup(word); }
int LookupBarcodeType(Nx_Stringa word) { return LookupBarcodeType(word.c_str()); }

float RoundToStep(float value, float step) {
  double quotient = static_cast<double>(value) / static_cast<double>(step);
  double up = std::ceil(quotient);
  double down = std::floor(quotient);
  double chosen = (up - quotient > quotient - down) ? down : up;
  return static_cast<float>(chosen * step);
}
