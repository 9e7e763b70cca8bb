// Plain writes, rotation and barcode commands: the exact bytes on the line and the result.
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "frame/keywords.h"
#include "frame/output.h"
#include "support/bytes.h"

namespace posprint::test {
namespace {

struct Case {
  const char* name;
  std::function<int(PortContext&)> call;
  int result;
  std::string bytes;  // as the printer receives them
};

std::string Repeat(const std::string& hexByte, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += (i ? " " : "") + hexByte;
  return out;
}

void RunCases(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ScriptedContext line;
    EXPECT_EQ(c.call(line.ctx), c.result);
    EXPECT_EQ(line.Sent(), c.bytes);
  }
}

TEST(PlainWrites, BytesAndResults) {
  RunCases({
      {"line: text then four terminator bytes", [](PortContext& c) { return WriteLine(c, "AB"); }, 1,
       "41 42 0D 0A 00 00"},
      {"empty line", [](PortContext& c) { return WriteLine(c, ""); }, 1, "0D 0A 00 00"},
      {"line with LF terminator still sends four bytes",
       [](PortContext& c) { c.SetTerminator("\n"); return WriteLine(c, "A"); }, 1, "41 0A 00 00 00"},
      {"terminators x3", [](PortContext& c) { return WriteTerminators(c, 3); }, 1, "0D 0A 0D 0A 0D 0A"},
      {"terminators x0", [](PortContext& c) { return WriteTerminators(c, 0); }, 1, ""},
      {"terminators negative", [](PortContext& c) { return WriteTerminators(c, -4); }, 1, ""},
      {"terminators capped at 29", [](PortContext& c) { return WriteTerminators(c, 40); }, 1,
       Repeat("0D 0A", 29)},
      {"terminator CR alone", [](PortContext& c) { c.SetTerminator("\r"); return WriteTerminators(c, 2); }, 1,
       "0D 0D"},
      {"feed 0", [](PortContext& c) { return FeedLines(c, 0); }, 1, ""},
      {"feed 3", [](PortContext& c) { return FeedLines(c, 3); }, 1, "0A 0A 0A"},
      {"feed 99", [](PortContext& c) { return FeedLines(c, 99); }, 1, Repeat("0A", 99)},
      {"feed 100 refused", [](PortContext& c) { return FeedLines(c, 100); }, 0, ""},
      {"feed -1 refused", [](PortContext& c) { return FeedLines(c, -1); }, 0, ""},
      {"spaces 0", [](PortContext& c) { return WriteSpaces(c, 0); }, 1, ""},
      {"spaces 2 after normal mode", [](PortContext& c) { return WriteSpaces(c, 2); }, 1, "1B 21 00 20 20"},
      {"spaces 99", [](PortContext& c) { return WriteSpaces(c, 99); }, 1, "1B 21 00 " + Repeat("20", 99)},
      {"spaces 100 refused", [](PortContext& c) { return WriteSpaces(c, 100); }, 0, ""},
      {"spaces -5 refused", [](PortContext& c) { return WriteSpaces(c, -5); }, 0, ""},
      {"reset print mode", [](PortContext& c) { return ResetPrintMode(c); }, 1, "1B 21 00"},
  });
}

TEST(PlainWrites, FormattedIsRefusedWholeOver100Characters) {
  ScriptedContext line;
  EXPECT_EQ(WriteFormatted(line.ctx.handle, "%d-%s", 7, "x"), 1);
  EXPECT_EQ(line.Sent(), "37 2D 78");
  line.port.ClearWritten();
  EXPECT_EQ(WriteFormatted(line.ctx.handle, "%s", std::string(100, 'a').c_str()), 1);
  EXPECT_EQ(line.port.Written(), std::string(100, 'a'));
  line.port.ClearWritten();
  EXPECT_EQ(WriteFormatted(line.ctx.handle, "%s!", std::string(100, 'a').c_str()), 0);
  EXPECT_EQ(line.Sent(), "");
}

TEST(PlainWrites, FillReportsFailureAsTrue) {
  ScriptedContext line;
  EXPECT_FALSE(WriteFill(line.ctx.handle, 3, 0));
  EXPECT_FALSE(WriteFill(line.ctx.handle, 2, '*'));
  EXPECT_EQ(line.Sent(), "20 20 20 2A 2A");
  line.port.ClearWritten();
  EXPECT_FALSE(WriteFill(line.ctx.handle, 150, '='));
  EXPECT_EQ(line.port.Written(), std::string(100, '='));
  line.port.ClearWritten();
  EXPECT_FALSE(WriteFill(line.ctx.handle, -3, '='));
  EXPECT_EQ(line.Sent(), "");
  line.port.ShortWriteAt(4, 1);
  EXPECT_TRUE(WriteFill(line.ctx.handle, 5, '='));
  EXPECT_TRUE(WriteFill(-1, 5, '='));
}

TEST(Rotation, UpsideDownAndQuarterTurn) {
  RunCases({
      {"0", [](PortContext& c) { return SetRotation(c, kRotation0, false); }, 1, "1B 7B 00"},
      {"0 turn", [](PortContext& c) { return SetRotation(c, kRotation0, true); }, 1, "1B 7B 00 1B 56 00"},
      {"90", [](PortContext& c) { return SetRotation(c, kRotation90, false); }, 1, "1B 7B 00"},
      {"90 turn", [](PortContext& c) { return SetRotation(c, kRotation90, true); }, 1, "1B 7B 00 1B 56 01"},
      {"180 sends upside-down twice", [](PortContext& c) { return SetRotation(c, kRotation180, false); }, 1,
       "1B 7B 01 1B 7B 01"},
      {"180 turn", [](PortContext& c) { return SetRotation(c, kRotation180, true); }, 1,
       "1B 7B 01 1B 7B 01 1B 56 00"},
      {"270", [](PortContext& c) { return SetRotation(c, kRotation270, false); }, 1, "1B 7B 01"},
      {"270 turn", [](PortContext& c) { return SetRotation(c, kRotation270, true); }, 1, "1B 7B 01 1B 56 01"},
      {"unknown code", [](PortContext& c) { return SetRotation(c, 99, true); }, 1, "1B 7B 00 1B 56 00"},
  });
}

TEST(Barcode, StyleSendsDigitsAndClamps) {
  RunCases({
      {"defaults for zeros", [](PortContext& c) { return SetBarcodeStyle(c, 0, 0, 0); }, 1,
       "1D 48 30 1D 68 32 1D 77 02"},
      {"above", [](PortContext& c) { return SetBarcodeStyle(c, kTextAbove, 100, 3); }, 1,
       "1D 48 31 1D 68 64 1D 77 03"},
      {"below", [](PortContext& c) { return SetBarcodeStyle(c, kTextBelow, 80, 6); }, 1,
       "1D 48 32 1D 68 50 1D 77 06"},
      {"both", [](PortContext& c) { return SetBarcodeStyle(c, kTextBoth, 80, 1); }, 1,
       "1D 48 33 1D 68 50 1D 77 01"},
      {"unknown position is below", [](PortContext& c) { return SetBarcodeStyle(c, 9, 80, 2); }, 1,
       "1D 48 32 1D 68 50 1D 77 02"},
      {"width 7: no width command", [](PortContext& c) { return SetBarcodeStyle(c, kTextNone, 80, 7); }, 1,
       "1D 48 30 1D 68 50"},
  });
}

TEST(Barcode, AlignmentFallsThroughToCentre) {
  RunCases({
      {"left", [](PortContext& c) { return AlignBarcode(c, kAlignLeft); }, 1, "1B 61 00 1B 61 02 1B 61 01"},
      {"right", [](PortContext& c) { return AlignBarcode(c, kAlignRight); }, 1, "1B 61 02 1B 61 01"},
      {"centre", [](PortContext& c) { return AlignBarcode(c, kAlignCenter); }, 1, "1B 61 01"},
      {"printer left", [](PortContext& c) { return AlignBarcode(c, kAlignLeftPrinter); }, 1, "1B 61 01"},
  });
}

TEST(Barcode, SymbologiesAndLimits) {
  const std::string ninety(90, '1');
  RunCases({
      {"CODE128 count includes {B", [](PortContext& c) { return PrintBarcode(c, "AB", kBarcodeCode128, 62); },
       1, "1B 61 01 1D 6B 49 04 7B 42 41 42 1B 61 00"},
      {"EAN13 fixed count 12",
       [](PortContext& c) { return PrintBarcode(c, "4006381333931", kBarcodeEan13, 62); }, 1,
       "1B 61 01 1D 6B 43 0C 34 30 30 36 33 38 31 33 33 33 39 33 31 1B 61 00"},
      {"INDICOD_EAN13 as EAN13", [](PortContext& c) { return PrintBarcode(c, "12", kBarcodeIndicodEan13, 62); },
       1, "1B 61 01 1D 6B 43 0C 31 32 1B 61 00"},
      {"EAN8 fixed count 7", [](PortContext& c) { return PrintBarcode(c, "1234567", kBarcodeEan8, 62); }, 1,
       "1B 61 01 1D 6B 44 07 31 32 33 34 35 36 37 1B 61 00"},
      {"CODE39", [](PortContext& c) { return PrintBarcode(c, "A1", kBarcodeCode39, 62); }, 1,
       "1B 61 01 1D 6B 45 02 41 31 1B 61 00"},
      {"ITF", [](PortContext& c) { return PrintBarcode(c, "1234", kBarcodeItf, 62); }, 1,
       "1B 61 01 1D 6B 46 04 31 32 33 34 1B 61 00"},
      {"left alignment first", [](PortContext& c) { return PrintBarcode(c, "1", kBarcodeCode39, kAlignLeft); },
       1, "1B 61 00 1B 61 02 1B 61 01 1D 6B 45 01 31 1B 61 00"},
      {"90 characters", [ninety](PortContext& c) { return PrintBarcode(c, ninety, kBarcodeCode39, 62); }, 1,
       "1B 61 01 1D 6B 45 5A " + Repeat("31", 90) + " 1B 61 00"},
      {"91 characters: 17", [ninety](PortContext& c) { return PrintBarcode(c, ninety + "1", kBarcodeCode39, 62); },
       17, "1B 61 01"},
      {"empty: 18", [](PortContext& c) { return PrintBarcode(c, "", kBarcodeCode39, 62); }, 18, "1B 61 01"},
      {"QR code: 15", [](PortContext& c) { return PrintBarcode(c, "X", kBarcodeQr, 62); }, 15, "1B 61 01"},
      {"CODE128A: 15", [](PortContext& c) { return PrintBarcode(c, "X", kBarcodeCode128A, 62); }, 15, "1B 61 01"},
      {"a NUL ends the data",
       [](PortContext& c) { return PrintBarcode(c, std::string("A\0B", 3), kBarcodeCode39, 62); }, 1,
       "1B 61 01 1D 6B 45 03 41 1B 61 00"},
  });
}

TEST(Barcode, WithTextSendsRawNumbersAndIsAlwaysCentred) {
  RunCases({
      {"CODE39 below", [](PortContext& c) { return PrintBarcodeWithText(c, "123", kBarcodeCode39, 80, 3, 2); }, 1,
       "1D 66 31 1D 48 02 1D 68 50 1D 77 03 1B 61 01 1D 6B 45 03 31 32 33 1B 61 00"},
      {"zeros are not replaced", [](PortContext& c) { return PrintBarcodeWithText(c, "1", kBarcodeCode39, 0, 0, 0); },
       1, "1D 66 31 1D 48 00 1D 68 00 1D 77 00 1B 61 01 1D 6B 45 01 31 1B 61 00"},
      {"empty: 18, nothing sent", [](PortContext& c) { return PrintBarcodeWithText(c, "", 1, 80, 3, 2); }, 18, ""},
      {"unsupported kind after the style",
       [](PortContext& c) { return PrintBarcodeWithText(c, "1", kBarcodeQr, 80, 3, 3); }, 15,
       "1D 66 31 1D 48 03 1D 68 50 1D 77 03 1B 61 01"},
  });
}

// A short write at the n-th write ends the function with 0; the writes before it stay sent.
struct ShortCase {
  const char* name;
  std::function<int(PortContext&)> call;
  std::vector<std::string> writes;  // each write of a complete run
};

TEST(ShortWrites, StopAtEachWriteInTurn) {
  const std::vector<ShortCase> cases = {
      {"line", [](PortContext& c) { return WriteLine(c, "AB"); }, {"41 42", "0D 0A 00 00"}},
      {"terminators", [](PortContext& c) { return WriteTerminators(c, 3); }, {"0D 0A", "0D 0A", "0D 0A"}},
      {"spaces", [](PortContext& c) { return WriteSpaces(c, 2); }, {"1B 21 00", "20 20"}},
      {"rotation", [](PortContext& c) { return SetRotation(c, kRotation180, true); },
       {"1B 7B 01", "1B 7B 01", "1B 56 00"}},
      {"style", [](PortContext& c) { return SetBarcodeStyle(c, 1, 80, 3); }, {"1D 48 31", "1D 68 50", "1D 77 03"}},
      {"barcode with text", [](PortContext& c) { return PrintBarcodeWithText(c, "12", kBarcodeCode39, 80, 3, 2); },
       {"1D 66 31", "1D 48 02", "1D 68 50", "1D 77 03", "1B 61 01", "1D 6B 45 02 31 32", "1B 61 00"}},
  };
  for (const ShortCase& c : cases) {
    for (std::size_t n = 1; n <= c.writes.size(); ++n) {
      SCOPED_TRACE(std::string(c.name) + ", short write " + std::to_string(n));
      ScriptedContext line;
      line.port.ShortWriteAt(static_cast<int>(n), 1);  // the line takes one byte of it
      EXPECT_EQ(c.call(line.ctx), 0);
      std::string expected;
      for (std::size_t i = 0; i + 1 < n; ++i) expected += c.writes[i] + " ";
      expected += c.writes[n - 1].substr(0, 2);
      EXPECT_EQ(line.Sent(), expected);
    }
  }
}

TEST(ShortWrites, VanishedPortFailsAtOnce) {
  ScriptedContext line;
  line.port.Vanish();
  EXPECT_EQ(WriteLine(line.ctx, "A"), 0);
  EXPECT_EQ(FeedLines(line.ctx, 1), 0);
  EXPECT_EQ(PrintBarcode(line.ctx, "1", kBarcodeCode39, 62), 0);
  EXPECT_EQ(line.Sent(), "");
}

}  // namespace
}  // namespace posprint::test
