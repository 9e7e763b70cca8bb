// FormatCommand: the printf conversions of the command layers, and everything else
// handed on to the C library, with vsnprintf's length and cutting rules.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frame/command_format.h"

namespace {

struct Case {
  const char* name;
  std::string text;  // formatted into a 100-byte buffer
  std::string expected;
};

std::string Format100(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Format100(const char* format, ...) {
  char buffer[100];
  va_list args;
  va_start(args, format);
  const int length = FormatCommandV(buffer, sizeof buffer, format, args);
  va_end(args);
  EXPECT_EQ(length, static_cast<int>(std::string(buffer).size()));
  return buffer;
}

TEST(FormatCommand, ConversionsOfTheCommandLayers) {
  const std::vector<Case> cases = {
      {"field origin", Format100("^FO%u,%u", 26u, 1180u), "^FO26,1180"},
      {"zero", Format100("^LH,%u", 0u), "^LH,0"},
      {"largest unsigned", Format100("%u", 4294967295u), "4294967295"},
      {"character", Format100("^MT%c", 'D'), "^MTD"},
      {"zero-padded negative", Format100("~TA%03d", -5), "~TA-05"},
      {"zero-padded positive", Format100("~TA%03d", 12), "~TA012"},
      {"wider than the width", Format100("~TA%03d", -120), "~TA-120"},
      {"smallest int", Format100("%d", -2147483647 - 1), "-2147483648"},
      {"four-digit count", Format100("MM,B%04u", 37u), "MM,B0037"},
      {"blank-padded", Format100("[%5u]", 42u), "[   42]"},
      {"string", Format100("^XGE:%s.GRF,1,1^FS", "LOGO"), "^XGE:LOGO.GRF,1,1^FS"},
      {"string with a precision", Format100("^FD%.*s^FS", 3, "ABCDEF"), "^FDABC^FS"},
      {"negative precision is none", Format100("%.*s", -1, "ABC"), "ABC"},
      {"fixed precision", Format100("%.2s", "ABC"), "AB"},
      {"percent", Format100("100%%"), "100%"},
      {"handed on: float", Format100("^BY%u,%.1f,%u", 3u, 2.5, 80u), "^BY3,2.5,80"},
      {"handed on: left-aligned", Format100("[%-4d]", 7), "[7   ]"},
      {"handed on: hexadecimal", Format100("_%02X", 0x0D), "_0D"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.text, c.expected);
  }
}

TEST(FormatCommand, CutsLikeVsnprintf) {
  char small[6];
  EXPECT_EQ(FormatCommand(small, sizeof small, "^FO%u,%u", 123u, 456u), 10);  // the length it needed
  EXPECT_EQ(std::string(small), "^FO12");
  EXPECT_EQ(FormatCommand(nullptr, 0, "^LL%u^PW%u", 560u, 800u), 12);  // only measured
  char one[1] = {'x'};
  EXPECT_EQ(FormatCommand(one, sizeof one, "%c", 'A'), 1);
  EXPECT_EQ(one[0], '\0');
}

}  // namespace
