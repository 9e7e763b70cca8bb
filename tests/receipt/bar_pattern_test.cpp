// The interleaved 2 of 5 bar pattern, read back by an independent decoder.
#include "frame/bar_pattern.h"

#include <gtest/gtest.h>

#include "itf_pattern.h"

namespace receipt_test {
namespace {

std::string Bits(const std::vector<std::uint8_t>& pattern) {
  std::string bits;
  for (std::uint8_t byte : pattern) {
    for (int i = 7; i >= 0; --i) bits += (byte >> i) & 1 ? '1' : '0';
  }
  return bits;
}

TEST(ItfBarPattern, TheSmallestSymbolColumnByColumn) {
  std::vector<std::uint8_t> pattern;
  ASSERT_TRUE(ItfBarPattern("12", 1, pattern));
  EXPECT_EQ(Bits(pattern), kItf12Columns);
}

TEST(ItfBarPattern, DecodesBackToTheDigits) {
  struct Case { const char* name; const char* data; int moduleWidth; const char* digits; };
  const Case cases[] = {
      {"one pair", "12", 1, "12"},
      {"every digit", "1234567890", 2, "1234567890"},
      {"every digit the other way", "0987654321", 3, "0987654321"},
      {"odd length gets a leading zero", "123", 2, "0123"},
      {"one digit", "7", 1, "07"},
      {"a carton code", "4006381333931", 2, "04006381333931"},
      {"repeated digits", "000000", 4, "000000"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::uint8_t> pattern;
    ASSERT_TRUE(ItfBarPattern(c.data, c.moduleWidth, pattern));
    EXPECT_EQ(DecodeItf(pattern), c.digits);
  }
}

TEST(ItfBarPattern, ModuleWidthScalesEveryElement) {
  std::vector<std::uint8_t> pattern;
  ASSERT_TRUE(ItfBarPattern("12", 2, pattern));
  std::string doubled;
  for (const char* c = kItf12Columns; *c; ++c) doubled += std::string(2, *c);
  // 94 columns of symbol and two of padding: the doubled padding column of the original.
  EXPECT_EQ(Bits(pattern), doubled);
}

TEST(ItfBarPattern, RefusesWhatItCannotEncode) {
  struct Case { const char* name; const char* data; int moduleWidth; };
  const Case cases[] = {
      {"empty", "", 2}, {"a letter", "12a4", 2}, {"a space", "12 4", 2}, {"a sign", "-12", 2},
      {"module width 0", "12", 0}, {"module width 256", "12", 256},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::uint8_t> pattern = {1, 2, 3};
    EXPECT_FALSE(ItfBarPattern(c.data, c.moduleWidth, pattern));
    EXPECT_TRUE(pattern.empty());
  }
}

}  // namespace
}  // namespace receipt_test
