// The text field layouts, on a 12-character line so that the lines read at a glance.
#include <climits>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "frame/output.h"
#include "support/bytes.h"

namespace posprint::test {
namespace {

struct Case {
  const char* name;
  int lineWidth;
  std::function<int(const PortContext&)> call;
  int result;
  std::string line;  // as printed, terminator included
};

void RunCases(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ScriptedContext port;
    port.ctx.lineWidth = c.lineWidth;
    EXPECT_EQ(c.call(port.ctx), c.result);
    EXPECT_EQ(port.port.Written(), c.line);
  }
}

TEST(DoubleField, Layout) {
  RunCases({
      {"two columns, fill between", 12, [](auto& c) { return PrintDoubleField(c, 0, 0, "AB", "CD", '.'); }, 1,
       "AB........CD\r\n"},
      {"fill 0 is a space", 12, [](auto& c) { return PrintDoubleField(c, 0, 0, "AB", "CD", 0); }, 1,
       "AB        CD\r\n"},
      {"left text gives way to one fill", 12,
       [](auto& c) { return PrintDoubleField(c, 0, 0, "ABCDEFGHIJ", "XYZ", '.'); }, 1, "ABCDEFGH.XYZ\r\n"},
      {"exactly the width also leaves one fill", 12,
       [](auto& c) { return PrintDoubleField(c, 0, 0, "ABCDEFGHI", "XYZ", '.'); }, 1, "ABCDEFGH.XYZ\r\n"},
      {"margins", 12, [](auto& c) { return PrintDoubleField(c, 2, 1, "AB", "CD", '.'); }, 1, "  AB.....CD \r\n"},
      {"left alone", 12, [](auto& c) { return PrintDoubleField(c, 0, 0, "HELLO", "", '-'); }, 1,
       "HELLO-------\r\n"},
      {"right alone", 12, [](auto& c) { return PrintDoubleField(c, 0, 0, "", "HELLO", 0); }, 1,
       "       HELLO\r\n"},
      {"right fills the line: left dropped", 12,
       [](auto& c) { return PrintDoubleField(c, 0, 0, "AB", "RIGHTRIGHTRI", '.'); }, 1, "RIGHTRIGHTRI\r\n"},
      {"right longer: cut to the width", 12,
       [](auto& c) { return PrintDoubleField(c, 2, 0, "AB", "0123456789AB", '.'); }, 1, "  0123456789\r\n"},
      {"width below zero: margin only", 12,
       [](auto& c) { return PrintDoubleField(c, 10, 10, "AB", "CD", '.'); }, 1, "          \r\n"},
      {"negative margin sends no spaces but widens", 12,
       [](auto& c) { return PrintDoubleField(c, -3, 0, "AB", "CD", '.'); }, 1, "AB...........CD\r\n"},
      {"margin beyond the buffer refused", 12,
       [](auto& c) { return PrintDoubleField(c, 200, 0, "AB", "CD", '.'); }, 0, ""},
      {"line beyond the buffer refused", 200,
       [](auto& c) { return PrintDoubleField(c, 0, 0, "AB", "CD", '.'); }, 0, ""},
      {"extreme margins refused", 12,
       [](auto& c) { return PrintDoubleField(c, INT_MAX, INT_MAX, "AB", "CD", '.'); }, 0, ""},
      {"extreme negative margins refused", 12,
       [](auto& c) { return PrintDoubleField(c, INT_MIN, INT_MIN, "AB", "CD", '.'); }, 0, ""},
      {"42 characters", 42, [](auto& c) { return PrintDoubleField(c, 0, 0, "TOTAL", "12.50", ' '); }, 1,
       "TOTAL                                12.50\r\n"},
  });
}

TEST(CentredField, Layout) {
  RunCases({
      {"even", 12, [](auto& c) { return PrintCentredField(c, 0, 0, "AB"); }, 1, "     AB\r\n"},
      {"odd rounds down", 12, [](auto& c) { return PrintCentredField(c, 0, 0, "ABC"); }, 1, "    ABC\r\n"},
      {"width - 2 fits", 12, [](auto& c) { return PrintCentredField(c, 0, 0, "0123456789"); }, 1,
       " 0123456789\r\n"},
      {"width - 1 is cut to width - 2", 12, [](auto& c) { return PrintCentredField(c, 0, 0, "0123456789A"); }, 1,
       " 0123456789\r\n"},
      {"longer is cut too", 12, [](auto& c) { return PrintCentredField(c, 0, 0, "0123456789ABCDEF"); }, 1,
       " 0123456789\r\n"},
      {"side margins", 12, [](auto& c) { return PrintCentredField(c, 2, 0, "AB"); }, 1, "   AB\r\n"},
      {"left offset", 12, [](auto& c) { return PrintCentredField(c, 0, 4, "AB"); }, 1, "         AB\r\n"},
      {"empty text", 12, [](auto& c) { return PrintCentredField(c, 0, 0, ""); }, 1, "      \r\n"},
      {"no room: 0", 12, [](auto& c) { return PrintCentredField(c, 6, 0, "AB"); }, 0, ""},
      {"two columns left: text cut away", 12, [](auto& c) { return PrintCentredField(c, 5, 0, "AB"); }, 1,
       " \r\n"},
      {"negative offset sends no spaces", 12, [](auto& c) { return PrintCentredField(c, 0, -10, "AB"); }, 1,
       "AB\r\n"},
      {"offset beyond the buffer refused", 12, [](auto& c) { return PrintCentredField(c, 0, 200, "AB"); }, 0, ""},
      {"extreme side margin", 12, [](auto& c) { return PrintCentredField(c, INT_MIN, 0, "AB"); }, 0, ""},
  });
}

TEST(PatternLine, Layout) {
  RunCases({
      {"dash", 12, [](auto& c) { return PrintPatternLine(c, 0, 0, "-"); }, 1, "------------\r\n"},
      {"two characters", 12, [](auto& c) { return PrintPatternLine(c, 0, 0, "=-"); }, 1, "=-=-=-=-=-=-\r\n"},
      {"last copy cut", 12, [](auto& c) { return PrintPatternLine(c, 0, 0, "abcde"); }, 1, "abcdeabcdeab\r\n"},
      {"longer than the line: cut to width - 1, then repeated", 12,
       [](auto& c) { return PrintPatternLine(c, 0, 0, "ABCDEFGHIJKLMNO"); }, 1, "ABCDEFGHIJKA\r\n"},
      {"margins: left margin before, side margin after", 12,
       [](auto& c) { return PrintPatternLine(c, 2, 1, "-"); }, 1, " --------  \r\n"},
      {"empty pattern: 0", 12, [](auto& c) { return PrintPatternLine(c, 0, 0, ""); }, 0, ""},
      {"no width: 0", 12, [](auto& c) { return PrintPatternLine(c, 6, 0, "-"); }, 0, ""},
      {"42 characters", 42, [](auto& c) { return PrintPatternLine(c, 0, 0, "-"); }, 1,
       std::string(42, '-') + "\r\n"},
      {"100 characters fit", 100, [](auto& c) { return PrintPatternLine(c, 0, 0, "*"); }, 1,
       std::string(100, '*') + "\r\n"},
      {"101 refused", 101, [](auto& c) { return PrintPatternLine(c, 0, 0, "*"); }, 0, ""},
      {"margin pushes past the buffer", 12, [](auto& c) { return PrintPatternLine(c, 0, 95, "*"); }, 0, ""},
      {"extreme negative side margin", 12, [](auto& c) { return PrintPatternLine(c, INT_MIN, 0, "*"); }, 0, ""},
  });
}

TEST(Layout, OneWritePerLineAndShortWriteGivesZero) {
  ScriptedContext port;
  port.ctx.lineWidth = 12;
  port.port.ShortWriteAt(1, 3);
  EXPECT_EQ(PrintDoubleField(port.ctx, 0, 0, "AB", "CD", '.'), 0);
  EXPECT_EQ(port.port.Written(), "AB.");
  EXPECT_EQ(PrintPatternLine(port.ctx, 0, 0, "-"), 1);
  EXPECT_EQ(port.port.Writes().size(), 2u);
}

TEST(Layout, LineFeedTerminatorFromContext) {
  ScriptedContext port;
  port.ctx.lineWidth = 4;
  port.ctx.SetTerminator("\n");
  EXPECT_EQ(PrintCentredField(port.ctx, 0, 0, "A"), 1);
  EXPECT_EQ(port.Sent(), "20 41 0A");
}

}  // namespace
}  // namespace posprint::test
