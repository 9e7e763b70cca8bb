// Plain writes, rotation and barcode commands: the exact bytes on the line and the result.
#include "output/output_test.h"

namespace posprint::test {
namespace {

// 'L' WriteLine of n letters ('l' with the LF terminator), 'T' WriteTerminators(n) ('t' with
// CR alone), 'F' FeedLines(n), 'S' WriteSpaces(n), 'M' ResetPrintMode, 'W' WriteFormatted of
// n letters, 'R' SetRotation(n, turn b), 'B' SetBarcodeStyle(n, b, c), 'A' AlignBarcode(n).
int Call(PortContext& ctx, char kind, int n, int b, int c) {
  const std::string letters(n > 0 ? n : 0, 'a');
  if (kind == 'l' || kind == 't') ctx.SetTerminator(kind == 'l' ? "\n" : "\r");
  switch (kind) {
    case 'L': case 'l': return WriteLine(ctx, letters);
    case 'T': case 't': return WriteTerminators(ctx, n);
    case 'F': return FeedLines(ctx, n);
    case 'S': return WriteSpaces(ctx, n);
    case 'M': return ResetPrintMode(ctx);
    case 'W': return WriteFormatted(ctx.handle, "%s", letters.c_str());
    case 'R': return SetRotation(ctx, n, b != 0);
    case 'B': return SetBarcodeStyle(ctx, n, b, c);
    default: return AlignBarcode(ctx, n);
  }
}

// ESC { n upside-down, ESC V n quarter turn: 180 sends the upside-down command twice.
// GS H text position as a digit, GS h height (0: 50), GS w module width (0: 2; above 6: none).
// ESC a n: every barcode alignment falls through to centred.
TEST(PlainWrites, BytesAndResults) {
  const struct { char kind; int n, result; std::string bytes; int b = 0, c = 0; } cases[] = {
      {'L', 2, 1, "61 61 0D 0A 00 00"}, {'l', 1, 1, "61 0A 00 00 00"},  // always four terminator bytes
      {'T', 3, 1, "0D 0A 0D 0A 0D 0A"}, {'t', 2, 1, "0D 0D"}, {'T', 0, 1, ""}, {'T', 40, 1, Repeat("0D 0A", 29)},
      {'F', 0, 1, ""}, {'F', 99, 1, Repeat("0A", 99)}, {'F', 100, 0, ""}, {'F', -1, 0, ""},
      {'S', 0, 1, ""}, {'S', 2, 1, "1B 21 00 20 20"}, {'S', 100, 0, ""}, {'M', 0, 1, "1B 21 00"},
      {'W', 100, 1, Repeat("61", 100)}, {'W', 101, 0, ""},  // longer than 100: nothing
      {'R', kRotation0, 1, "1B 7B 00"}, {'R', kRotation0, 1, "1B 7B 00 1B 56 00", 1},
      {'R', kRotation90, 1, "1B 7B 00"}, {'R', kRotation90, 1, "1B 7B 00 1B 56 01", 1},
      {'R', kRotation180, 1, "1B 7B 01 1B 7B 01"}, {'R', kRotation180, 1, "1B 7B 01 1B 7B 01 1B 56 00", 1},
      {'R', kRotation270, 1, "1B 7B 01"}, {'R', kRotation270, 1, "1B 7B 01 1B 56 01", 1},
      {'R', 99, 1, "1B 7B 00 1B 56 00", 1}, {'B', 0, 1, "1D 48 30 1D 68 32 1D 77 02"},
      {'B', kTextAbove, 1, "1D 48 31 1D 68 64 1D 77 03", 100, 3}, {'B', 2, 1, "1D 48 32 1D 68 50 1D 77 06", 80, 6},
      {'B', kTextBoth, 1, "1D 48 33 1D 68 50 1D 77 01", 80, 1}, {'B', 9, 1, "1D 48 32 1D 68 50 1D 77 02", 80, 2},
      {'B', kTextNone, 1, "1D 48 30 1D 68 50", 80, 7}, {'A', kAlignLeft, 1, "1B 61 00 1B 61 02 1B 61 01"},
      {'A', kAlignRight, 1, "1B 61 02 1B 61 01"}, {'A', kAlignCenter, 1, "1B 61 01"},
      {'A', kAlignLeftPrinter, 1, "1B 61 01"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.kind << " " << c.n << " " << c.b << " " << c.c);
    std::string sent;
    EXPECT_EQ(RunCut([&c](PortContext& ctx) { return Call(ctx, c.kind, c.n, c.b, c.c); }, sent), c.result);
    EXPECT_EQ(ToHex(sent), c.bytes);
  }
  ScriptedContext line;
  EXPECT_EQ(WriteFormatted(line.ctx.handle, "%d-%s", 7, "x"), 1);
  EXPECT_EQ(line.Sent(), "37 2D 78");
}

// WriteFill answers true when the write FAILED.
TEST(PlainWrites, FillReportsFailureAsTrue) {
  ScriptedContext line;
  EXPECT_FALSE(WriteFill(line.ctx.handle, 3, 0));
  EXPECT_FALSE(WriteFill(line.ctx.handle, 2, '*'));
  EXPECT_FALSE(WriteFill(line.ctx.handle, 150, '='));  // at most 100
  EXPECT_FALSE(WriteFill(line.ctx.handle, -3, '='));
  EXPECT_EQ(line.Sent(), "20 20 20 2A 2A " + Repeat("3D", 100));
  line.port.ShortWriteAt(4, 1);
  EXPECT_TRUE(WriteFill(line.ctx.handle, 5, '='));
  EXPECT_TRUE(WriteFill(-1, 5, '='));
}

// GS k m n data, centred, then left alignment again. Alignment 0 here: the barcode with its
// text, which sends GS f 1, then GS H, GS h, GS w with raw numbers, and is always centred.
TEST(Barcode, SymbologiesAndLimits) {
  const std::string style = "1D 66 31 1D 48 02 1D 68 50 1D 77 03 ";  // below, 80 dots, width 3
  const struct { std::string data; int type, alignment, result; std::string bytes; } cases[] = {
      {"AB", kBarcodeCode128, 62, 1, "1B 61 01 1D 6B 49 04 7B 42 41 42 1B 61 00"},  // the count includes {B
      {"4006381333931", kBarcodeEan13, 62, 1, "1B 61 01 1D 6B 43 0C 34 30 30 36 33 38 31 33 33 33 39 33 31 1B 61 00"},
      {"12", kBarcodeIndicodEan13, 62, 1, "1B 61 01 1D 6B 43 0C 31 32 1B 61 00"},  // the count is always 12
      {"1234567", kBarcodeEan8, 62, 1, "1B 61 01 1D 6B 44 07 31 32 33 34 35 36 37 1B 61 00"},
      {"A1", kBarcodeCode39, 62, 1, "1B 61 01 1D 6B 45 02 41 31 1B 61 00"},
      {"1234", kBarcodeItf, 62, 1, "1B 61 01 1D 6B 46 04 31 32 33 34 1B 61 00"},
      {"1", kBarcodeCode39, kAlignLeft, 1, "1B 61 00 1B 61 02 1B 61 01 1D 6B 45 01 31 1B 61 00"},
      {std::string(90, '1'), kBarcodeCode39, 62, 1, "1B 61 01 1D 6B 45 5A " + Repeat("31", 90) + " 1B 61 00"},
      {std::string(91, '1'), kBarcodeCode39, 62, 17, "1B 61 01"}, {"", kBarcodeCode39, 62, 18, "1B 61 01"},
      {"X", kBarcodeQr, 62, 15, "1B 61 01"},
      {std::string("A\0B", 3), kBarcodeCode39, 62, 1, "1B 61 01 1D 6B 45 03 41 1B 61 00"},  // a NUL ends the data
      {"123", kBarcodeCode39, 0, 1, style + "1B 61 01 1D 6B 45 03 31 32 33 1B 61 00"},
      {"", kBarcodeCode39, 0, 18, ""}, {"1", kBarcodeQr, 0, 15, style + "1B 61 01"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.data);
    std::string sent;
    EXPECT_EQ(RunCut([&c](PortContext& ctx) {
                return c.alignment ? PrintBarcode(ctx, c.data, c.type, c.alignment)
                                   : PrintBarcodeWithText(ctx, c.data, c.type, 80, 3, kTextBelow);
              }, sent), c.result);
    EXPECT_EQ(ToHex(sent), c.bytes);
  }
  ScriptedContext line;  // with text: zeros are not replaced
  EXPECT_EQ(PrintBarcodeWithText(line.ctx, "1", kBarcodeCode39, 0, 0, 0), 1);
  EXPECT_EQ(line.Sent(), "1D 66 31 1D 48 00 1D 68 00 1D 77 00 1B 61 01 1D 6B 45 01 31 1B 61 00");
}

TEST(PlainWrites, AVanishedPortFailsAtOnce) {
  ScriptedContext line;
  line.port.Vanish();
  EXPECT_EQ(WriteLine(line.ctx, "A") + FeedLines(line.ctx, 1) + PrintBarcode(line.ctx, "1", kBarcodeCode39, 62), 0);
  EXPECT_EQ(line.Sent(), "");
}

}  // namespace
}  // namespace posprint::test
