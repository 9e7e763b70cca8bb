// Text conversion: the printers' code pages, upper-casing and UTF-8.
#include <gtest/gtest.h>

#include <string>

#include "platform/codepage.h"
#include "platform/diagnostics.h"
#include "platform/nx_string.h"

namespace {

constexpr int kAnsi = CodepageTranslator::kAnsi;
constexpr int k437 = CodepageTranslator::kPC437;
constexpr int k858 = CodepageTranslator::kPC858;

struct EncodeCase {
  const char* name;
  wchar_t character;
  int codePage;
  int byte;  // -1: the page has no byte for it
};

TEST(Codepage, EncodesKnownCharacters) {
  const EncodeCase cases[] = {
      {"e acute 437", L'\u00E9', k437, 0x82},  {"e acute 858", L'\u00E9', k858, 0x82},
      {"e acute 1252", L'\u00E9', kAnsi, 0xE9}, {"u umlaut 437", L'\u00FC', k437, 0x81},
      {"u umlaut 1252", L'\u00FC', kAnsi, 0xFC}, {"pound 437", L'\u00A3', k437, 0x9C},
      {"pound 858", L'\u00A3', k858, 0x9C},    {"pound 1252", L'\u00A3', kAnsi, 0xA3},
      {"euro 437", L'\u20AC', k437, -1},       {"euro 858", L'\u20AC', k858, 0xD5},
      {"euro 1252", L'\u20AC', kAnsi, 0x80},   {"sharp s 437", L'\u00DF', k437, 0xE1},
      {"sharp s 858", L'\u00DF', k858, 0xE1},  {"sharp s 1252", L'\u00DF', kAnsi, 0xDF},
      {"box horizontal 437", L'\u2500', k437, 0xC4}, {"box double 858", L'\u2550', k858, 0xCD},
      {"box horizontal 1252", L'\u2500', kAnsi, -1}, {"dotless i 858 (euro took it)", L'\u0131', k858, -1},
      {"ASCII on unknown page", L'A', 99, 'A'},      {"e acute on unknown page", L'\u00E9', 99, -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(CodepageTranslator::CanEncode(c.codePage, c.character), c.byte >= 0);
    const int expected = c.byte >= 0 ? c.byte : '?';
    EXPECT_EQ(static_cast<unsigned char>(CodepageTranslator::Encode(c.codePage, c.character)), expected);
  }
}

TEST(Codepage, DecodesWhatThePrinterPrints) {
  const struct {
    const char* name;
    int codePage;
    std::uint8_t byte;
    wchar_t printed;
  } cases[] = {
      {"ASCII", k437, 'x', L'x'},        {"cent 437", k437, 0x9B, L'\u00A2'},
      {"euro 858", k858, 0xD5, L'\u20AC'}, {"euro 1252", kAnsi, 0x80, L'\u20AC'},
      {"hole in 1252", kAnsi, 0x81, L'\uFFFD'}, {"unknown page", 99, 0xE9, L'\uFFFD'},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(CodepageTranslator::Decode(c.codePage, c.byte), c.printed);
  }
}

TEST(Codepage, GetAsciiNotesEachSubstitution) {
  posprint::TakeSubstitutions();
  EXPECT_EQ(Nx_Stringa(L"Caf\u00E9 ?\u0416\u20AC").GetAscii(k437), "Caf\x82 ???");
  const auto noted = posprint::TakeSubstitutions();
  ASSERT_EQ(noted.size(), 2u);  // the literal '?' is not a substitution
  EXPECT_EQ(noted[0].character, L'\u0416');
  EXPECT_EQ(noted[1].character, L'\u20AC');
  EXPECT_EQ(noted[0].codePage, k437);
  EXPECT_TRUE(posprint::TakeSubstitutions().empty());
}

TEST(NxString, FindCodePageInTakesFirstThatCarriesAll) {
  const struct {
    const char* name;
    const wchar_t* text;
    std::initializer_list<int> candidates;
    int expected;
  } cases[] = {
      {"euro skips 437", L"\u20AC 5", {k437, k858, kAnsi}, k858},
      {"box skips 1252", L"\u2500\u00E9", {kAnsi, k858}, k858},
      {"ASCII takes first", L"abc", {k858, k437}, k858},
      {"nobody carries: first", L"\u0416", {kAnsi, k437}, kAnsi},
      {"mixed, no single page: first", L"\u20AC\u2591", {k437, kAnsi}, k437},
      {"no candidates", L"abc", {}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Nx_Stringa(c.text).FindCodePageIn(c.candidates), c.expected);
  }
  EXPECT_EQ(Nx_Stringa(L"x").FindCodePageIn(nullptr, 3), 0);
}

TEST(NxString, ToUpperCoversAsciiAndLatin1) {
  const struct {
    const wchar_t* in;
    const wchar_t* out;
  } cases[] = {
      {L"newprint_9", L"NEWPRINT_9"},
      {L"\u00E0\u00E9\u00F6\u00FE", L"\u00C0\u00C9\u00D6\u00DE"},
      {L"\u00F7\u00DF\u00B5", L"\u00F7\u00DF\u00B5"},  // division sign, sharp s, micro stay
      {L"\u00FF", L"\u0178"},
      {L"\u0436", L"\u0436"},  // beyond Latin-1 unchanged
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Nx_Stringa(c.in).ToUtf8());
    EXPECT_EQ(Nx_Stringa(c.in).Upper(), c.out);
  }
}

TEST(NxString, Utf8RoundTripAndInvalidInput) {
  const struct {
    const char* name;
    std::string utf8;
    std::wstring wide;
  } cases[] = {
      {"mixed", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", L"a\u00E9\u20AC\U0001F600"},
      {"truncated", "ab\xC3", L"ab\uFFFD"},
      {"stray byte", "a\xFF" "b", L"a\uFFFD" L"b"},
      {"overlong slash", "\xC0\xAF", L"\uFFFD\uFFFD"},
      {"surrogate", "\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
      {"lead without continuation", "\xE2(x", L"\uFFFD(x"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Nx_Stringa::FromUtf8(c.utf8).wstr(), c.wide);
  }
  EXPECT_EQ(Nx_Stringa(cases[0].wide).ToUtf8(), cases[0].utf8);
}

TEST(NxString, SearchAndSplit) {
  const Nx_Stringa text(L"KEY=VALUE=X");
  EXPECT_EQ(text.FindString(L"="), 3);
  EXPECT_EQ(text.FindString(L"=", 4), 9);
  EXPECT_EQ(text.FindString(L"Q"), -1);
  EXPECT_EQ(text.FindString(L"=", 50), -1);
  EXPECT_EQ(text.FindString(nullptr), -1);
  EXPECT_EQ(text.TakeParameterFromLeft(L"="), L"KEY");
  EXPECT_EQ(text.TakeParameterFromLeft(L";"), L"KEY=VALUE=X");
  EXPECT_EQ(text.Mid(4), L"VALUE=X");
  EXPECT_EQ(text.Mid(-2), L"KEY=VALUE=X");
  EXPECT_EQ(text.Mid(99), L"");
}

}  // namespace
