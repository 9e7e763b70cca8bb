// The ZPL command layer: the exact ZPL text of every command, the cursor after each
// layout step, barcodes and QR data, logo recall and the "~HS" status answers.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "drivers/label/ZEBRA/zpl.h"
#include "platform/clock.h"
#include "platform/otool.h"
#include "support/bytes.h"

namespace {

using namespace ZEBRA;

class Zpl : public ::testing::Test {
 protected:
  Zpl() {
    line.ctx.config = &state;
    // A label 10 characters wide: (163 - 3) / (13 + 3).
    state.labelWidth = 163;
    state.charsPerLine = 10;
  }
  std::string Sent() const { return line.port.Written(); }

  posprint::test::ScriptedContext line;
  ZplState state;
  posprint::FakeClock clock;
  posprint::ScopedClock scopedClock{clock};
};

TEST_F(Zpl, SetUpSequence) {
  struct Case {
    const char* name;
    std::function<void(ZplState&)> configure;
    std::string sent;
    std::uint32_t charsPerLine;
  };
  const Case cases[] = {
      {"defaults", [](ZplState&) {},
       "^XA^MTD^MMT~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13^CI27^MFN,F^JUS^XZ^XA^JA^XZ", 49},
      {"ribbon, peel-off, 300 dpi, 4 ips, magnification 2",
       [](ZplState& s) {
         s.mediaType = 'T', s.printMode = 'P', s.dotsPerMm = 12, s.labelWidth = 1200, s.labelLength = 840;
         s.tearOffAdjust = -5, s.printSpeed = 4, s.originX = 36, s.originY = 24, s.magnification = 2;
       },
       "^XA^MTT^MMP~TA-05^PR4,4,4^LL840^PW1200^LH36,24^CFF,52,26^CI27^MFN,F^JUS^XZ^XA^JA^XZ", 36},
      {"width equal to origin X", [](ZplState& s) { s.labelWidth = 3; },
       "^XA^MTD^MMT~TA000^PR2,2,2^LL560^PW3^LH3,0^CFF,26,13^CI27^MFN,F^JUS^XZ^XA^JA^XZ", 1},
      {"origin beyond the width", [](ZplState& s) { s.labelWidth = 2; },
       "^XA^MTD^MMT~TA000^PR2,2,2^LL560^PW2^LH3,0^CFF,26,13^CI27^MFN,F^JUS^XZ^XA^JA^XZ", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ZplState fresh;
    c.configure(fresh);
    fresh.cursorX = 7, fresh.cursorY = 99;
    line.ctx.config = &fresh;
    line.port.ClearWritten();
    const long sleptBefore = clock.TotalSleptMs();
    EXPECT_EQ(zpl_Init(line.ctx), 1);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(line.port.Writes().back(), "^XA^JA^XZ");  // after the pause, on its own
    EXPECT_EQ(clock.TotalSleptMs() - sleptBefore, 500);
    EXPECT_EQ(fresh.charsPerLine, c.charsPerLine);
    EXPECT_EQ(line.ctx.lineWidth, static_cast<int>(c.charsPerLine));
    EXPECT_EQ(fresh.cursorX, 0u);
    EXPECT_EQ(fresh.cursorY, 0u);
  }
}

TEST_F(Zpl, SetUpReportsSuccessEvenWhenThePrinterTakesNothing) {
  line.port.Vanish();
  EXPECT_EQ(zpl_Init(line.ctx), 1);
}

TEST_F(Zpl, FontPresets) {
  struct Case {
    const char* name;
    std::function<PrinterResult(PortContext&)> preset;
    std::string sent;
    std::uint32_t charsPerLine;
  };
  // From the normal font on an 800-dot label with the home at 3: 49 characters.
  const Case cases[] = {
      {"normal", zpl_FontNormal, "^CFF,26,13", 49},
      {"double height keeps the width", zpl_FontDoubleHeight, "^CFF,52,13", 49},
      {"double width", zpl_FontDoubleWidth, "^CFF,26,26", 24},
      {"triple height", zpl_FontTripleHeight, "^CFF,78,13", 49},
      {"triple width", zpl_FontTripleWidth, "^CFF,26,39", 16},
      {"double", zpl_FontDouble, "^CFF,52,26", 24},
      {"double width, triple height", zpl_FontDoubleWidthTripleHeight, "^CFF,78,26", 24},
      {"custom 8 x 8", [](PortContext& c) { return zpl_FontCustom(c, 8, 8); }, "^CFF,208,104", 6},
      {"custom out of range changes nothing", [](PortContext& c) { return zpl_FontCustom(c, 9, -1); },
       "^CFF,26,13", 49},
  };
  state.labelWidth = 800;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    zpl_FontNormal(line.ctx);
    line.port.ClearWritten();
    EXPECT_EQ(c.preset(line.ctx), 1);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(state.charsPerLine, c.charsPerLine);
    EXPECT_EQ(line.ctx.lineWidth, static_cast<int>(c.charsPerLine));
  }
}

TEST_F(Zpl, LabelStartEndAndCancel) {
  state.originY = 16;
  state.cursorX = 40, state.cursorY = 300;
  EXPECT_EQ(zpl_StartLabel(line.ctx), 1);
  EXPECT_EQ(Sent(), "^XA^JA^XZ^XA^LH,16");
  EXPECT_EQ(state.cursorX, 0u);
  EXPECT_EQ(state.cursorY, 0u);
  line.port.ClearWritten();
  EXPECT_EQ(zpl_EndLabel(line.ctx), 1);
  EXPECT_EQ(zpl_Cancel(line.ctx), 1);
  EXPECT_EQ(Sent(), "^XZ^XA^JA^XZ");
}

TEST_F(Zpl, LabelStartStopsAtAShortWriteAndKeepsTheCursor) {
  state.cursorY = 300;
  line.port.ShortWriteAt(2, 1);
  EXPECT_EQ(zpl_StartLabel(line.ctx), 0);
  EXPECT_EQ(Sent(), "^XA^JA^XZ^");
  EXPECT_EQ(state.cursorY, 300u);
}

// Cell advance 16 dots, line advance 31 dots, 10 characters a line; every case starts on
// the line at Y = 62.
TEST_F(Zpl, TextLayoutAndCursor) {
  struct Case {
    const char* name;
    std::function<PrinterResult(PortContext&)> action;
    PrinterResult result;
    std::string sent;
    std::uint32_t x, y;  // the cursor afterwards
  };
  const Case cases[] = {
      {"text does not move the cursor", [](PortContext& c) { return zpl_Text(c, "AB"); }, 1,
       "^FO0,62^FDAB^FS", 0, 62},
      {"centred", [](PortContext& c) { return zpl_Centred(c, "ABCD"); }, 1, "^FO48,62^FDABCD^FS", 0, 93},
      {"centred, odd room rounds down", [](PortContext& c) { return zpl_Centred(c, "ABC"); }, 1,
       "^FO48,62^FDABC^FS", 0, 93},
      {"centred, cut at the line", [](PortContext& c) { return zpl_Centred(c, "ABCDEFGHIJKL"); }, 1,
       "^FO0,62^FDABCDEFGHIJ^FS", 0, 93},
      {"centred, empty: a blank line", [](PortContext& c) { return zpl_Centred(c, ""); }, 1, "", 0, 93},
      {"two columns", [](PortContext& c) { return zpl_TwoColumns(c, "AB", "XYZ"); }, 1,
       "^FO0,62^FDAB^FS^FO112,62^FDXYZ^FS", 0, 93},
      {"two columns, left cut with a blank before the right",
       [](PortContext& c) { return zpl_TwoColumns(c, "ABCDEFGH", "XYZ"); }, 1,
       "^FO0,62^FDABCDEF ^FS^FO112,62^FDXYZ^FS", 0, 93},
      {"two columns, right as long as the line",
       [](PortContext& c) { return zpl_TwoColumns(c, "LEFT", "0123456789"); }, 1,
       "^FO0,62^FD^FS^FO0,62^FD0123456789^FS", 0, 93},
      {"two columns, no right part", [](PortContext& c) { return zpl_TwoColumns(c, "AB", ""); }, 1,
       "^FO0,62^FDAB^FS", 0, 93},
      {"three parts", [](PortContext& c) { return zpl_ThreePart(c, "AB", "XYZ", '.'); }, 1,
       "^FO0,62^FDAB^FS^FO32,62^FD.....^FS^FO112,62^FDXYZ^FS", 0, 93},
      {"three parts, no room for the fill",
       [](PortContext& c) { return zpl_ThreePart(c, "ABCDEFGH", "XYZ", '.'); }, 1,
       "^FO0,62^FDABCDEF ^FS^FO112,62^FD^FS^FO112,62^FDXYZ^FS", 0, 93},
      {"three parts, right only", [](PortContext& c) { return zpl_ThreePart(c, "", "XY", '*'); }, 1,
       "^FO0,62^FD^FS^FO0,62^FD********^FS^FO128,62^FDXY^FS", 0, 93},
      {"three parts, NUL fill is blank", [](PortContext& c) { return zpl_ThreePart(c, "AB", "", '\0'); }, 1,
       "^FO0,62^FDAB^FS^FO32,62^FD        ^FS", 0, 93},
      {"fill with one character", [](PortContext& c) { return zpl_FillLine(c, "-"); }, 1,
       "^FO0,62^FD----------^FS", 0, 93},
      {"a longer pattern is not repeated", [](PortContext& c) { return zpl_FillLine(c, "=*"); }, 1,
       "^FO0,62^FD=*^FS", 0, 93},
      {"a pattern longer than the line is cut", [](PortContext& c) { return zpl_FillLine(c, "0123456789ABC"); },
       1, "^FO0,62^FD0123456789^FS", 0, 93},
      {"an empty pattern is refused", [](PortContext& c) { return zpl_FillLine(c, ""); }, 0, "", 0, 62},
      {"text line, centred", [](PortContext& c) { return zpl_TextLine(c, "ABCD", 1, 0); }, 1,
       "^CFF,26,13^FO48,62^FDABCD^FS", 0, 93},
      {"text line, centred flag 2 is not centred", [](PortContext& c) { return zpl_TextLine(c, "ABCD", 2, 0); },
       1, "^CFF,26,13^FO0,62^FDABCD^FS", 0, 93},
      {"text line, double height advances one normal line",
       [](PortContext& c) { return zpl_TextLine(c, "ABCD", 0, 1); }, 1,
       "^CFF,26,13^CFF,52,13^FO0,62^FDABCD^FS^CFF,26,13", 0, 93},
      {"line feed", [](PortContext& c) { return zpl_LineFeed(c, 3); }, 1, "^CFF,26,13", 0, 155},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    state.cursorX = 0, state.cursorY = 62;
    line.port.ClearWritten();
    EXPECT_EQ(c.action(line.ctx), c.result);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(state.cursorX, c.x);
    EXPECT_EQ(state.cursorY, c.y);
    state.charsPerLine = 10;  // the text line's font calls recompute it for the 163-dot label
  }
}

TEST_F(Zpl, ShortWritesInALine) {
  // Two columns carry on after a lost left part.
  line.port.ShortWriteAt(1);
  EXPECT_EQ(zpl_TwoColumns(line.ctx, "AB", "XY"), 1);
  EXPECT_EQ(Sent(), "^FO128,0^FDXY^FS");
  EXPECT_EQ(state.cursorY, 31u);

  // Three parts stop at the fill and leave the cursor on the line.
  line.port.ClearWritten();
  line.port.ShortWriteAt(line.port.writeCount_ + 3, 2);
  EXPECT_EQ(zpl_ThreePart(line.ctx, "AB", "XY", '.'), 0);
  EXPECT_EQ(Sent(), "^FO0,31^FDAB^FS^F");
  EXPECT_EQ(state.cursorY, 31u);
}

TEST_F(Zpl, LongTextsAreCutToWhatOneFieldCarries) {
  state.charsPerLine = 5000;  // a label far wider than any printer
  EXPECT_EQ(zpl_Centred(line.ctx, std::string(2000, 'A')), 1);
  EXPECT_EQ(Sent(), "^FO0,0^FD" + std::string(512, 'A') + "^FS");
  line.port.ClearWritten();
  EXPECT_EQ(zpl_Text(line.ctx, std::string(1100, 'B')), 0);  // refused whole
  EXPECT_EQ(Sent(), "");
}

// Magnification 1, 8 dots per mm, character width 13 (the barcode starts 26 dots in),
// line gap 5.
TEST_F(Zpl, Barcodes) {
  struct Case {
    const char* name;
    std::function<void(ZplState&)> configure;
    std::string data;
    int type, height, moduleWidth;
    float ratio;
    std::uint8_t humanReadable;
    std::string sent;
    std::uint32_t y;  // cursor Y afterwards
  };
  auto plain = [](ZplState&) {};
  const Case cases[] = {
      {"code 128 with text", plain, "12345", 1, 10, 3, 3.0f, 1, "^FO26,0^BY3,3.0,80^BC,,Y,N,N,N^FD12345^FS", 117},
      {"code 128 without text", plain, "12345", 1, 10, 3, 3.0f, 0, "^FO26,0^BY3,3.0,80^BC,,N,N,N,N^FD12345^FS", 85},
      {"indicod EAN-13", plain, "400638133393", 2, 10, 3, 3.0f, 1, "^FO26,0^BY3,3.0,80^BE,,Y,N^FD400638133393^FS",
       117},
      {"EAN-13", plain, "400638133393", 3, 10, 3, 3.0f, 0, "^FO26,0^BY3,3.0,80^BE,,N,N^FD400638133393^FS", 85},
      {"EAN-8", plain, "9638507", 4, 10, 3, 3.0f, 1, "^FO26,0^BY3,3.0,80^B8,,Y,N^FD9638507^FS", 117},
      {"code 39", plain, "ABC-1", 5, 10, 3, 3.0f, 1, "^FO26,0^BY3,3.0,80^B3,N,,Y,N^FDABC-1^FS", 117},
      {"interleaved 2 of 5", plain, "1234", 6, 10, 3, 3.0f, 1, "^FO26,0^BY3,3.0,80^B2,,Y,N,N^FD1234^FS", 117},
      {"code 128 C has no symbology", plain, "1234", 13, 10, 3, 3.0f, 1, "^FO26,0^BY3,3.0,80^FD1234^FS", 117},
      {"height 2 mm prints 10 mm", plain, "1", 1, 2, 3, 3.0f, 0, "^FO26,0^BY3,3.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"height 3 mm stays", plain, "1", 1, 3, 3, 3.0f, 0, "^FO26,0^BY3,3.0,24^BC,,N,N,N,N^FD1^FS", 29},
      {"module width 11 is 3", plain, "1", 1, 10, 11, 3.0f, 0, "^FO26,0^BY3,3.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"module width 0 is 3", plain, "1", 1, 10, 0, 3.0f, 0, "^FO26,0^BY3,3.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"module width 10 stays", plain, "1", 1, 10, 10, 3.0f, 0, "^FO26,0^BY10,3.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"ratio 3.5 is 3.0", plain, "1", 1, 10, 3, 3.5f, 0, "^FO26,0^BY3,3.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"ratio 2.0 stays", plain, "1", 1, 10, 3, 2.0f, 0, "^FO26,0^BY3,2.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"ratio 2.5 stays", plain, "1", 1, 10, 3, 2.5f, 0, "^FO26,0^BY3,2.5,80^BC,,N,N,N,N^FD1^FS", 85},
      {"ratio 1.9 is 3.0", plain, "1", 1, 10, 3, 1.9f, 0, "^FO26,0^BY3,3.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"magnification 2 widens the modules",
       [](ZplState& s) { s.magnification = 2, s.charWidth = 26, s.lineGap = 10; }, "1", 1, 10, 3, 3.0f, 0,
       "^FO52,0^BY6,3.0,80^BC,,N,N,N,N^FD1^FS", 90},
      {"12 dots per mm", [](ZplState& s) { s.dotsPerMm = 12; }, "1", 1, 10, 3, 3.0f, 1,
       "^FO26,0^BY3,3.0,120^BC,,Y,N,N,N^FD1^FS", 173},
      {"QR with escapes", plain, "A{0D}B_C", 14, 10, 3, 3.0f, 1,
       "^FO26,0^BY3,3.0,80^BQN,2,6^FH^FDMM,B0005A_0DB_5FC^FS", 117},
      {"QR keeps {00}, non-hex braces and the byte after a decoded brace", plain, "{00}x{4g}{7B}}", 14, 10, 3,
       3.0f, 0, "^FO26,0^BY3,3.0,80^BQN,2,6^FH^FDMM,B0011{00}x{4g}{}^FS", 85},
      {"QR: lower-case hex, TAB, DEL and high bytes", plain, "{0a}\tx\x7F\xE9", 14, 10, 3, 3.0f, 0,
       "^FO26,0^BY3,3.0,80^BQN,2,6^FH^FDMM,B0005_0A\tx_7F\xE9^FS", 85},
      {"QR: a brace too near the end stays", plain, "ab{41", 14, 10, 3, 3.0f, 0,
       "^FO26,0^BY3,3.0,80^BQN,2,6^FH^FDMM,B0005ab{41^FS", 85},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ZplState fresh;
    c.configure(fresh);
    line.ctx.config = &fresh;
    fresh.cursorX = 0;  // the bars always start two cells in from the line's left edge
    line.port.ClearWritten();
    std::string data = c.data;
    EXPECT_EQ(zpl_Barcode(line.ctx, data, c.type, c.height, c.moduleWidth, c.ratio, c.humanReadable), 1);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(fresh.cursorY, c.y);
    EXPECT_EQ(fresh.cursorX, 0u);
  }
}

TEST_F(Zpl, QrDataIsDecodedInPlace) {
  std::string data = "A{0D}B_C";
  zpl_Barcode(line.ctx, data, kZplQrCode, 10, 3, 3.0f, 0);
  EXPECT_EQ(data, "A\rB_C");
}

TEST_F(Zpl, BarcodeDataThatDoesNotFitIsRefusedWhole) {
  struct Case {
    const char* name;
    std::string data;
    int type;
    PrinterResult result;
  };
  const Case cases[] = {
      {"empty", "", 1, 0},
      {"1017 characters of code 128 fit", std::string(1017, '1'), 1, 1},
      {"1018 do not", std::string(1018, '1'), 1, 0},
      {"QR: 300 underscores escape to 900 bytes", std::string(300, '_'), 14, 1},
      {"QR: 400 underscores would need 1200", std::string(400, '_'), 14, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    line.port.ClearWritten();
    state.cursorY = 0;
    std::string data = c.data;
    EXPECT_EQ(zpl_Barcode(line.ctx, data, c.type, 10, 3, 3.0f, 0), c.result);
    if (c.result == 0) {
      EXPECT_EQ(Sent(), "");
      EXPECT_EQ(state.cursorY, 0u);
    }
  }
}

TEST_F(Zpl, LogoRecall) {
  struct Case {
    const wchar_t* file;
    std::string sent;
  };
  const Case cases[] = {
      {L"logo.bmp", "^FO16,62^XGE:logo.GRF,1,1^FS^LH,56"},
      {L"shop.logo.BMP", "^FO16,62^XGE:shop.GRF,1,1^FS^LH,56"},
      {L"noext", "^FO16,62^XGE:noext.GRF,1,1^FS^LH,56"},
  };
  state.originY = 16, state.logoDisplacement = 40;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sent);
    state.cursorX = 16, state.cursorY = 62;
    line.port.ClearWritten();
    EXPECT_EQ(zpl_RecallLogo(line.ctx, c.file), 1);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(state.cursorX, 16u);  // the cursor stays; the label home moved
    EXPECT_EQ(state.cursorY, 62u);
  }
}

TEST_F(Zpl, FormattingHelpers) {
  char buffer[64];
  EXPECT_EQ(zpl_FieldOrigin(buffer, sizeof buffer, 10, 20, 1), 8);
  EXPECT_STREQ(buffer, "^FT10,20");
  EXPECT_EQ(zpl_FieldOrigin(buffer, sizeof buffer, 10, 20, 0), 8);
  EXPECT_STREQ(buffer, "^FO10,20");
  EXPECT_EQ(zpl_BarcodeCommand(12, 1, buffer, sizeof buffer), 0);
  EXPECT_EQ(zpl_BarcodeCommand(14, 1, buffer, sizeof buffer), 8);
  EXPECT_STREQ(buffer, "^BQN,2,6");
}

// --- "~HS" ---

// The three strings a printer answers, framed <STX> ... <ETX><CR><LF>; the first one's
// flags: paper out at byte 5, pause 7, buffer full 18, diagnostics 20, partial format 22,
// corrupt RAM 28, under temperature 30, over temperature 32.
const std::string kReady = "\x02" "030,0,0,0560,000,0,0,0,000,0,0,0" "\x03\r\n";
const std::string kPaperOut = "\x02" "030,1,0,0560,000,0,0,0,000,0,0,0" "\x03\r\n";
const std::string kPaused = "\x02" "030,0,1,0560,000,0,0,0,000,0,0,0" "\x03\r\n";
const std::string kPaperOutPaused = "\x02" "030,1,1,0560,000,0,0,0,000,0,0,0" "\x03\r\n";
const std::string kBufferFull = "\x02" "030,0,0,0560,000,1,0,0,000,0,0,0" "\x03\r\n";
const std::string kDiagnostics = "\x02" "030,0,0,0560,000,0,1,0,000,0,0,0" "\x03\r\n";
const std::string kPartialFormat = "\x02" "030,0,0,0560,000,0,0,1,000,0,0,0" "\x03\r\n";
const std::string kCorruptRam = "\x02" "030,0,0,0560,000,0,0,0,000,1,0,0" "\x03\r\n";
const std::string kUnderTemperature = "\x02" "030,0,0,0560,000,0,0,0,000,0,1,0" "\x03\r\n";
const std::string kOverTemperature = "\x02" "030,0,0,0560,000,0,0,0,000,0,0,1" "\x03\r\n";
const std::string kFullAndCold = "\x02" "030,0,0,0560,000,1,0,0,000,0,1,0" "\x03\r\n";
const std::string kPausedAndHot = "\x02" "030,0,1,0560,000,0,0,0,000,0,0,1" "\x03\r\n";
const std::string kSecond = "\x02" "000,0,0,0,1,2,6,0,00000000,1,000" "\x03\r\n";
const std::string kThird = "\x02" "1234,0" "\x03\r\n";

TEST_F(Zpl, StatusAnswers) {
  struct Case {
    const char* name;
    std::vector<std::string> answers;
    char status;
    std::uint32_t flags;  // bits 0x10 (no answer) and 0x20 (malformed)
  };
  const Case cases[] = {
      {"ready", {kReady, kSecond, kThird}, 'd', 0},
      {"paper out", {kPaperOut, kSecond, kThird}, 'p', 0},
      {"paused", {kPaused, kSecond, kThird}, 'i', 0},
      {"paper out wins over pause", {kPaperOutPaused, kSecond, kThird}, 'p', 0},
      {"receive buffer full", {kBufferFull, kSecond, kThird}, 'e', 0},
      {"diagnostic mode", {kDiagnostics, kSecond, kThird}, 'e', 0},
      {"partial format is no fault", {kPartialFormat, kSecond, kThird}, 'd', 0},
      {"corrupt RAM", {kCorruptRam, kSecond, kThird}, 'e', 0},
      {"under temperature", {kUnderTemperature, kSecond, kThird}, 'n', 0},
      {"over temperature", {kOverTemperature, kSecond, kThird}, 'n', 0},
      {"a fault wins over temperature", {kFullAndCold, kSecond, kThird}, 'e', 0},
      {"pause wins over temperature", {kPausedAndHot, kSecond, kThird}, 'i', 0},
      {"all three in one burst", {kPaperOut + kSecond + kThird}, 'p', 0},
      {"first string one byte short", {kReady.substr(1), kSecond, kThird}, 'e', 0x20},
      {"first string without STX", {"X" + kPaperOut.substr(1), kSecond, kThird}, 'e', 0x20},
      {"first string without ETX", {kReady.substr(0, 33) + "X\r\n", kSecond, kThird}, 'e', 0x20},
      {"first string without CR", {kReady.substr(0, 34) + "X\n", kSecond, kThird}, 'e', 0x20},
      {"first string without LF", {kReady.substr(0, 35) + "X", kSecond, kThird}, 'e', 0x20},
      {"garbage", {"\x15", kSecond, kThird}, 'e', 0x20},
      {"second string malformed", {kReady, kSecond.substr(0, 35), kThird}, 'e', 0x20},
      {"third string too long", {kReady, kSecond, "\x02" "12345,0" "\x03\r\n"}, 'e', 0x20},
      {"third string too short", {kReady, kSecond, kThird.substr(1)}, 'e', 0x20},
      {"no answer", {}, 'e', 0x10},
      {"no second string", {kReady}, 'e', 0x10},
      {"no third string", {kPaperOut, kSecond}, 'e', 0x10},
      {"malformed, then silent", {kReady.substr(1)}, 'e', 0x30},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    line.port.ClearWritten();
    line.port.answers_.clear();
    for (const std::string& answer : c.answers) line.port.Answer(answer);
    line.ctx.statusFlags = 0x31;  // the old answer's bits go; others stay
    EXPECT_EQ(zpl_QueryStatus(line.ctx), c.status);
    EXPECT_EQ(line.ctx.statusFlags, 0x01 | c.flags);
    EXPECT_EQ(Sent(), "~HS");
  }
}

TEST_F(Zpl, StatusWhenTheRequestCannotBeSent) {
  line.port.Answer(kReady);
  line.port.ShortWriteAt(1, 2);
  EXPECT_EQ(zpl_QueryStatus(line.ctx), 'e');
  EXPECT_EQ(line.ctx.statusFlags, 0x10u);
  EXPECT_EQ(line.port.Reads(), 0);
}

TEST_F(Zpl, StatusOnAPortThatIsNotReady) {
  PortContext closed = line.ctx;
  closed.handle = -1;
  EXPECT_EQ(zpl_QueryStatus(closed), 'e');
  EXPECT_EQ(closed.statusFlags, 0x10u);
  EXPECT_EQ(Sent(), "");
}

// The line flag (state word bit 0x100) is only kept under software flow control.
TEST_F(Zpl, SilencePutsTheLineFlagDown) {
  struct Case {
    const char* name;
    int wordBefore;
    std::vector<std::string> answers;
    int wordAfter;
  };
  const Case cases[] = {
      {"flow control, silent printer", 0x102, {}, 0x002},
      {"flow control, answering printer", 0x102, {kReady, kSecond, kThird}, 0x102},
      {"no flow control: the word is left alone", 0x100, {}, 0x100},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    line.port.answers_.clear();
    for (const std::string& answer : c.answers) line.port.Answer(answer);
    otool_IOCTL(line.ctx.handle, kPortSetState, c.wordBefore);
    zpl_QueryStatus(line.ctx);
    int word = 0;
    otool_IOCTL(line.ctx.handle, kPortGetState, static_cast<void*>(&word));
    EXPECT_EQ(word, c.wordAfter);
  }
}

}  // namespace
