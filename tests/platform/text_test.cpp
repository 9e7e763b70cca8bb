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

// Each character on each page, and back: byte -1 where the page has none ('?' is sent).
TEST(Codepage, EncodesAndDecodes) {
  const struct { wchar_t character; int codePage, byte; } cases[] = {
      {L'\u00E9', k437, 0x82}, {L'\u00E9', k858, 0x82}, {L'\u00E9', kAnsi, 0xE9},  // e acute
      {L'\u00A3', k437, 0x9C}, {L'\u00A3', k858, 0x9C}, {L'\u00A3', kAnsi, 0xA3},  // pound
      {L'\u20AC', k437, -1}, {L'\u20AC', k858, 0xD5}, {L'\u20AC', kAnsi, 0x80},    // euro
      {L'\u00DF', k437, 0xE1}, {L'\u00DF', kAnsi, 0xDF},                            // sharp s
      {L'\u2500', k437, 0xC4}, {L'\u2550', k858, 0xCD}, {L'\u2500', kAnsi, -1},    // box drawing
      {L'\u0131', k858, -1},                                                         // the euro took dotless i
      {L'A', 99, 'A'}, {L'\u00E9', 99, -1},                                          // an unknown page: ASCII
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << static_cast<int>(c.character) << " on " << std::dec << c.codePage);
    EXPECT_EQ(CodepageTranslator::CanEncode(c.codePage, c.character), c.byte >= 0);
    const unsigned char sent = static_cast<unsigned char>(CodepageTranslator::Encode(c.codePage, c.character));
    EXPECT_EQ(sent, c.byte >= 0 ? c.byte : '?');
    if (c.byte >= 0 && c.codePage != 99) {
      EXPECT_EQ(CodepageTranslator::Decode(c.codePage, c.byte), c.character);  // and back
    }
  }
  EXPECT_EQ(CodepageTranslator::Decode(k437, 0x9B), L'\u00A2');   // cent
  EXPECT_EQ(CodepageTranslator::Decode(kAnsi, 0x81), L'\uFFFD');  // a hole in 1252
  EXPECT_EQ(CodepageTranslator::Decode(99, 0xE9), L'\uFFFD');
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

TEST(NxString, FindCodePageInTakesTheFirstThatCarriesAll) {
  const struct { const wchar_t* text; std::initializer_list<int> candidates; int expected; } cases[] = {
      {L"\u20AC 5", {k437, k858, kAnsi}, k858}, {L"\u2500\u00E9", {kAnsi, k858}, k858},
      {L"abc", {k858, k437}, k858}, {L"\u0416", {kAnsi, k437}, kAnsi},  // nobody carries it: the first
      {L"\u20AC\u2591", {k437, kAnsi}, k437}, {L"abc", {}, 0},          // no single page; no candidates
  };
  for (const auto& c : cases) EXPECT_EQ(Nx_Stringa(c.text).FindCodePageIn(c.candidates), c.expected) << &c - cases;
  EXPECT_EQ(Nx_Stringa(L"x").FindCodePageIn(nullptr, 3), 0);
}

TEST(NxString, UpperCaseAndUtf8) {
  EXPECT_EQ(Nx_Stringa(L"newprint_9").Upper(), L"NEWPRINT_9");
  EXPECT_EQ(Nx_Stringa(L"\u00E0\u00E9\u00F6\u00FE").Upper(), L"\u00C0\u00C9\u00D6\u00DE");
  EXPECT_EQ(Nx_Stringa(L"\u00F7\u00DF\u00B5").Upper(), L"\u00F7\u00DF\u00B5");  // division, sharp s, micro stay
  EXPECT_EQ(Nx_Stringa(L"\u00FF\u0436").Upper(), L"\u0178\u0436");              // beyond Latin-1 unchanged
  const struct { std::string utf8; std::wstring wide; } cases[] = {
      {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", L"a\u00E9\u20AC\U0001F600"}, {"ab\xC3", L"ab\uFFFD"},  // truncated
      {"a\xFF" "b", L"a\uFFFD" L"b"}, {"\xC0\xAF", L"\uFFFD\uFFFD"},                         // stray; overlong
      {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"}, {"\xE2(x", L"\uFFFD(x"},  // surrogate; lead without continuation
  };
  for (const auto& c : cases) EXPECT_EQ(Nx_Stringa::FromUtf8(c.utf8).wstr(), c.wide) << &c - cases;
  EXPECT_EQ(Nx_Stringa(cases[0].wide).ToUtf8(), cases[0].utf8);
}

}  // namespace
