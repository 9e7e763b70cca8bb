// The text field layouts, mostly on a 12-character line so that the lines read at a glance.
#include <climits>

#include "output/output_test.h"

namespace posprint::test {
namespace {

// kind 'D' PrintDoubleField(a, b, left, right, fill), 'C' PrintCentredField(a, b, left),
// 'P' PrintPatternLine(a, b, left). The line as printed before its CR LF; none when refused.
TEST(Layout, Fields) {
  const struct {
    char kind; int a, b; const char* left; const char* right; char fill; int result; std::string line; int width = 12;
  } cases[] = {
      // Double: fill 0 is a space; the left text gives way to one fill, also at exactly the width.
      {'D', 0, 0, "AB", "CD", '.', 1, "AB........CD"}, {'D', 0, 0, "AB", "CD", 0, 1, "AB        CD"},
      {'D', 0, 0, "ABCDEFGHIJ", "XYZ", '.', 1, "ABCDEFGH.XYZ"}, {'D', 0, 0, "ABCDEFGHI", "XYZ", '.', 1, "ABCDEFGH.XYZ"},
      {'D', 2, 1, "AB", "CD", '.', 1, "  AB.....CD "}, {'D', 0, 0, "", "HELLO", 0, 1, "       HELLO"},
      // A right text that fills the line drops the left one and is cut to the width.
      {'D', 0, 0, "AB", "RIGHTRIGHTRI", '.', 1, "RIGHTRIGHTRI"},
      {'D', 2, 0, "AB", "0123456789AB", '.', 1, "  0123456789"},
      // Width below zero: the margin only; a negative margin sends no spaces but widens the line.
      {'D', 10, 10, "AB", "CD", '.', 1, "          "}, {'D', -3, 0, "AB", "CD", '.', 1, "AB...........CD"},
      // Beyond the 100-character buffer, however the numbers go: refused.
      {'D', 200, 0, "AB", "CD", '.', 0, ""}, {'D', 0, 0, "AB", "CD", '.', 0, "", 200},
      {'D', INT_MAX, INT_MAX, "AB", "CD", '.', 0, ""}, {'D', INT_MIN, INT_MIN, "AB", "CD", '.', 0, ""},
      // Centred: odd room rounds down; width - 2 fits, width - 1 is cut to width - 2.
      {'C', 0, 0, "ABC", "", 0, 1, "    ABC"}, {'C', 0, 0, "0123456789", "", 0, 1, " 0123456789"},
      {'C', 0, 0, "0123456789A", "", 0, 1, " 0123456789"}, {'C', 2, 0, "AB", "", 0, 1, "   AB"},
      {'C', 0, 4, "AB", "", 0, 1, "         AB"}, {'C', 0, 0, "", "", 0, 1, "      "},
      // No room; two columns left cut the text away; a negative offset sends no spaces.
      {'C', 6, 0, "AB", "", 0, 0, ""}, {'C', 5, 0, "AB", "", 0, 1, " "}, {'C', 0, -10, "AB", "", 0, 1, "AB"},
      {'C', 0, 200, "AB", "", 0, 0, ""}, {'C', INT_MIN, 0, "AB", "", 0, 0, ""},
      // Pattern: repeated and cut; longer than the line: cut to width - 1, then repeated.
      {'P', 0, 0, "abcde", "", 0, 1, "abcdeabcdeab"}, {'P', 0, 0, "ABCDEFGHIJKLMNO", "", 0, 1, "ABCDEFGHIJKA"},
      {'P', 2, 1, "-", "", 0, 1, " --------  "},  // the left margin before, the side margin after
      {'P', 0, 0, "", "", 0, 0, ""}, {'P', 6, 0, "-", "", 0, 0, ""},
      {'P', 0, 0, "*", "", 0, 1, std::string(100, '*'), 100}, {'P', 0, 0, "*", "", 0, 0, "", 101},
      {'P', 0, 95, "*", "", 0, 0, ""}, {'P', INT_MIN, 0, "*", "", 0, 0, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.kind << " " << c.width << " " << c.a << " " << c.b << " " << c.left);
    std::string sent;
    EXPECT_EQ(RunCut([&c](PortContext& ctx) {
                ctx.lineWidth = c.width;
                return c.kind == 'D'   ? PrintDoubleField(ctx, c.a, c.b, c.left, c.right, c.fill)
                       : c.kind == 'C' ? PrintCentredField(ctx, c.a, c.b, c.left)
                                       : PrintPatternLine(ctx, c.a, c.b, c.left);
              }, sent), c.result);
    EXPECT_EQ(sent, c.result ? c.line + "\r\n" : "");
  }
}

TEST(Layout, OneWriteEndedByTheContextsTerminator) {
  ScriptedContext port;
  port.ctx.lineWidth = 4;
  port.ctx.SetTerminator("\n");
  EXPECT_EQ(PrintCentredField(port.ctx, 0, 0, "A"), 1);
  EXPECT_EQ(port.Sent(), "20 41 0A");
  EXPECT_EQ(port.port.Writes().size(), 1u);
}

}  // namespace
}  // namespace posprint::test
