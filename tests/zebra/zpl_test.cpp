// The ZPL command layer: the exact ZPL text of every command, the cursor after each
// layout step, barcodes and QR data, logo recall and the "~HS" status answers.
#include "zebra/zebra_test.h"

namespace zebra_test {
namespace {

using Act = std::function<PrinterResult(PortContext&)>;

// Every case starts on the line at Y = 62 in the normal font: 10 characters a line.
TEST_F(Zpl, FontsLayoutLogosAndCursor) {
  const struct { Act act; PrinterResult result; const char* sent; std::uint32_t y; int charsPerLine = 10; } cases[] = {
      {zpl_FontNormal, 1, "^CFF,26,13", 62}, {zpl_FontDoubleHeight, 1, "^CFF,52,13", 62},
      {zpl_FontDoubleWidth, 1, "^CFF,26,26", 62, 5}, {zpl_FontTripleHeight, 1, "^CFF,78,13", 62},
      {zpl_FontTripleWidth, 1, "^CFF,26,39", 62, 3}, {zpl_FontDouble, 1, "^CFF,52,26", 62, 5},
      {zpl_FontDoubleWidthTripleHeight, 1, "^CFF,78,26", 62, 5},
      {[](auto& c) { return zpl_FontCustom(c, 8, 8); }, 1, "^CFF,208,104", 62, 1},
      {[](auto& c) { return zpl_FontCustom(c, 9, -1); }, 1, "^CFF,26,13", 62},  // out of range: no change
      {[](auto& c) { return zpl_Text(c, "AB"); }, 1, "^FO0,62^FDAB^FS", 62},  // the cursor stays
      {[](auto& c) { return zpl_Centred(c, "ABC"); }, 1, "^FO48,62^FDABC^FS", 93},  // odd room rounds down
      {[](auto& c) { return zpl_Centred(c, "ABCDEFGHIJKL"); }, 1, "^FO0,62^FDABCDEFGHIJ^FS", 93},
      {[](auto& c) { return zpl_TwoColumns(c, "AB", "XYZ"); }, 1, "^FO0,62^FDAB^FS^FO112,62^FDXYZ^FS", 93},
      {[](auto& c) { return zpl_TwoColumns(c, "ABCDEFGH", "XYZ"); }, 1, "^FO0,62^FDABCDEF ^FS^FO112,62^FDXYZ^FS", 93},
      {[](auto& c) { return zpl_TwoColumns(c, "LEFT", "0123456789"); }, 1, "^FO0,62^FD^FS^FO0,62^FD0123456789^FS", 93},
      {[](auto& c) { return zpl_ThreePart(c, "ABCDEFGH", "XYZ", '.'); }, 1,
       "^FO0,62^FDABCDEF ^FS^FO112,62^FD^FS^FO112,62^FDXYZ^FS", 93},
      {[](auto& c) { return zpl_FillLine(c, "=*"); }, 1, "^FO0,62^FD=*^FS", 93},  // a pattern is not repeated
      {[](auto& c) { return zpl_FillLine(c, "0123456789ABC"); }, 1, "^FO0,62^FD0123456789^FS", 93},
      {[](auto& c) { return zpl_FillLine(c, ""); }, 0, "", 62},
      {[](auto& c) { return zpl_TextLine(c, "ABCD", 1, 0); }, 1, "^CFF,26,13^FO48,62^FDABCD^FS", 93},
      {[](auto& c) { return zpl_TextLine(c, "ABCD", 2, 0); }, 1, "^CFF,26,13^FO0,62^FDABCD^FS", 93},  // only 1 centres
      // Double height: the line still advances by one normal line.
      {[](auto& c) { return zpl_TextLine(c, "ABCD", 0, 1); }, 1, "^CFF,26,13^CFF,52,13^FO0,62^FDABCD^FS^CFF,26,13", 93},
      {[](auto& c) { return zpl_LineFeed(c, 3); }, 1, "^CFF,26,13", 155},
      // A stored graphic named up to the first dot; the label home moves down by the displacement.
      {[](auto& c) { return zpl_RecallLogo(c, L"shop.logo.BMP"); }, 1, "^FO0,62^XGE:shop.GRF,1,1^FS^LH,56", 62},
      {[](auto& c) { return zpl_RecallLogo(c, L"shop"); }, 1, "^FO0,62^XGE:shop.GRF,1,1^FS^LH,56", 62},
  };
  state.originY = 16, state.logoDisplacement = 40;
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    Fresh();
    EXPECT_EQ(c.act(line.ctx), c.result);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(state.cursorX, 0u);
    EXPECT_EQ(state.cursorY, c.y);
    EXPECT_EQ(line.ctx.lineWidth, c.charsPerLine);
  }
}

// A short write ends a command with 0 and leaves the cursor where it was.
TEST_F(Zpl, LabelsShortWritesAndLongTexts) {
  state.originY = 16, state.cursorX = 40, state.cursorY = 300;
  line.port.ShortWriteAt(2, 1);
  EXPECT_EQ(zpl_StartLabel(line.ctx), 0);
  EXPECT_EQ(Sent(), "^XA^JA^XZ^");
  EXPECT_EQ(state.cursorY, 300u);
  line.port.ClearWritten();
  EXPECT_EQ(zpl_StartLabel(line.ctx), 1);
  EXPECT_EQ(zpl_EndLabel(line.ctx), 1);
  EXPECT_EQ(zpl_Cancel(line.ctx), 1);
  EXPECT_EQ(Sent(), "^XA^JA^XZ^XA^LH,16^XZ^XA^JA^XZ");
  EXPECT_EQ(state.cursorX + state.cursorY, 0u);
  line.port.ClearWritten();
  line.port.ShortWriteAt(line.port.writeCount_ + 3, 2);  // three parts stop at the fill
  EXPECT_EQ(zpl_ThreePart(line.ctx, "AB", "XY", '.'), 0);
  EXPECT_EQ(Sent(), "^FO0,0^FDAB^FS^F");
  EXPECT_EQ(state.cursorY, 0u);

  state.charsPerLine = 5000;  // a label far wider than any printer
  line.port.ClearWritten();
  EXPECT_EQ(zpl_Centred(line.ctx, std::string(2000, 'A')), 1);
  EXPECT_EQ(Sent(), "^FO0,0^FD" + std::string(512, 'A') + "^FS");
  line.port.ClearWritten();
  EXPECT_EQ(zpl_Text(line.ctx, std::string(1100, 'B')), 0);  // refused whole
  EXPECT_EQ(Sent(), "");
}

// 8 dots per mm, magnification 1: the bars start two 13-dot characters in; line gap 5.
// Data that does not fit the command buffer is refused whole: nothing sent, the cursor stays.
TEST_F(Zpl, Barcodes) {
  const std::string by3 = "^FO26,0^BY3,3.0,80", c128 = "^BC,,N,N,N,N^FD";
  const struct {
    const char* name; std::string data; int type; std::uint8_t text; std::string sent; std::uint32_t y;
    int height = 10, module = 3; float ratio = 3.0f; std::function<void(ZplState&)> configure = [](ZplState&) {};
  } cases[] = {
      {"code 128", "12345", 1, 1, by3 + "^BC,,Y,N,N,N^FD12345^FS", 117},
      {"indicod EAN-13", "400638133393", 2, 1, by3 + "^BE,,Y,N^FD400638133393^FS", 117},
      {"EAN-13", "400638133393", 3, 0, by3 + "^BE,,N,N^FD400638133393^FS", 85},
      {"EAN-8", "9638507", 4, 1, by3 + "^B8,,Y,N^FD9638507^FS", 117},
      {"code 39", "ABC-1", 5, 1, by3 + "^B3,N,,Y,N^FDABC-1^FS", 117},
      {"interleaved 2 of 5", "1234", 6, 1, by3 + "^B2,,Y,N,N^FD1234^FS", 117},
      {"code 128 C has no symbology", "1234", 13, 1, by3 + "^FD1234^FS", 117},
      {"height 2, module 11, ratio 3.5 fall back", "1", 1, 0, by3 + c128 + "1^FS", 85, 2, 11, 3.5f},
      {"module 0, ratio 1.9 fall back", "1", 1, 0, by3 + c128 + "1^FS", 85, 10, 0, 1.9f},
      {"height 3, module 10, ratio 2.5 stay", "1", 1, 0, "^FO26,0^BY10,2.5,24" + c128 + "1^FS", 29, 3, 10, 2.5f},
      {"magnification 2", "1", 1, 0, "^FO52,0^BY6,3.0,80" + c128 + "1^FS", 90, 10, 3, 3.0f,
       [](ZplState& s) { s.magnification = 2, s.charWidth = 26, s.lineGap = 10; }},
      {"12 dots per mm", "1", 1, 1, "^FO26,0^BY3,3.0,120^BC,,Y,N,N,N^FD1^FS", 173, 10, 3, 3.0f,
       [](ZplState& s) { s.dotsPerMm = 12; }},
      {"QR with escapes", "A{0D}B_C", 14, 1, by3 + "^BQN,2,6^FH^FDMM,B0005A_0DB_5FC^FS", 117},
      {"QR keeps {00}, non-hex braces and the byte after a decoded brace", "{00}x{4g}{7B}}", 14, 0,
       by3 + "^BQN,2,6^FH^FDMM,B0011{00}x{4g}{}^FS", 85},
      {"QR: lower-case hex, TAB, DEL, high bytes", "{0a}\tx\x7F\xE9", 14, 0,
       by3 + "^BQN,2,6^FH^FDMM,B0005_0A\tx_7F\xE9^FS", 85},
      {"QR: a lone brace stays", "ab{41", 14, 0, by3 + "^BQN,2,6^FH^FDMM,B0005ab{41^FS", 85},
      {"empty", "", 1, 0, "", 0},
      {"1017 characters fit", std::string(1017, '1'), 1, 0, by3 + c128 + std::string(1017, '1') + "^FS", 85},
      {"1018 do not", std::string(1018, '1'), 1, 0, "", 0},
      {"QR: 300 underscores escape to 900 bytes", std::string(300, '_'), 14, 0,
       by3 + "^BQN,2,6^FH^FDMM,B0300" + Repeat("_5F", 300) + "^FS", 85},
      {"QR: 400 underscores would need 1200", std::string(400, '_'), 14, 0, "", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ZplState fresh;
    c.configure(fresh);
    line.ctx.config = &fresh;
    line.port.ClearWritten();
    std::string data = c.data;
    EXPECT_EQ(zpl_Barcode(line.ctx, data, c.type, c.height, c.module, c.ratio, c.text), c.sent.empty() ? 0 : 1);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(fresh.cursorX, 0u);
    EXPECT_EQ(fresh.cursorY, c.y);
  }
  std::string data = "A{0D}B";
  line.ctx.config = &state;
  zpl_Barcode(line.ctx, data, kZplQrCode, 10, 3, 3.0f, 0);
  EXPECT_EQ(data, "A\rB");  // decoded in place
}

TEST_F(Zpl, StatusAnswers) {
  const struct { const char* name; std::vector<std::string> answers; char status; std::uint32_t flags; } cases[] = {
      {"ready", {kReadyFirst, kSecond, kThird}, 'd', 0},
      {"paper out", Answers("030,1,0,0560,000,0,0,0,000,0,0,0"), 'p', 0},
      {"paused", Answers("030,0,1,0560,000,0,0,0,000,0,0,0"), 'i', 0},
      {"paper out wins over pause", Answers("030,1,1,0560,000,0,0,0,000,0,0,0"), 'p', 0},
      {"receive buffer full", Answers("030,0,0,0560,000,1,0,0,000,0,0,0"), 'e', 0},
      {"diagnostic mode", Answers("030,0,0,0560,000,0,1,0,000,0,0,0"), 'e', 0},
      {"partial format is no fault", Answers("030,0,0,0560,000,0,0,1,000,0,0,0"), 'd', 0},
      {"corrupt RAM", Answers("030,0,0,0560,000,0,0,0,000,1,0,0"), 'e', 0},
      {"under temperature", Answers("030,0,0,0560,000,0,0,0,000,0,1,0"), 'n', 0},
      {"over temperature", Answers("030,0,0,0560,000,0,0,0,000,0,0,1"), 'n', 0},
      {"a fault wins over temperature", Answers("030,0,0,0560,000,1,0,0,000,0,1,0"), 'e', 0},
      {"pause wins over temperature", Answers("030,0,1,0560,000,0,0,0,000,0,0,1"), 'i', 0},
      {"all three in one burst", {Framed("030,1,0,0560,000,0,0,0,000,0,0,0") + kSecond + kThird}, 'p', 0},
      {"first string one byte short", {kReadyFirst.substr(1), kSecond, kThird}, 'e', 0x20},
      {"first string without STX", {"X" + kReadyFirst.substr(1), kSecond, kThird}, 'e', 0x20},
      {"first string without ETX", {kReadyFirst.substr(0, 33) + "X\r\n", kSecond, kThird}, 'e', 0x20},
      {"first string without LF", {kReadyFirst.substr(0, 35) + "X", kSecond, kThird}, 'e', 0x20},
      {"second string malformed", {kReadyFirst, kSecond.substr(0, 35), kThird}, 'e', 0x20},
      {"third string too long", {kReadyFirst, kSecond, Framed("12345,0")}, 'e', 0x20},
      {"third string too short", {kReadyFirst, kSecond, kThird.substr(1)}, 'e', 0x20},
      {"no answer", {}, 'e', 0x10}, {"no third string", {kReadyFirst, kSecond}, 'e', 0x10},
      {"malformed, then silent", {kReadyFirst.substr(1)}, 'e', 0x30},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    line.port.ClearWritten(), line.port.answers_.clear();
    for (const std::string& answer : c.answers) line.port.Answer(answer);
    line.ctx.statusFlags = 0x31;  // the old answer's bits go; others stay
    EXPECT_EQ(zpl_QueryStatus(line.ctx), c.status);
    EXPECT_EQ(line.ctx.statusFlags, 0x01 | c.flags);
    EXPECT_EQ(Sent(), "~HS");
  }
}

// Nothing is read when the request cannot go out. The line flag (state word bit 0x100)
// falls with a silent printer, and is only kept under software flow control.
TEST_F(Zpl, StatusWithoutAnAnswer) {
  PortContext closed = line.ctx;
  closed.handle = -1;
  EXPECT_EQ(zpl_QueryStatus(closed), 'e');
  EXPECT_EQ(closed.statusFlags, 0x10u);
  line.port.Answer(kReadyFirst + kSecond + kThird);
  line.port.ShortWriteAt(1, 2);
  EXPECT_EQ(zpl_QueryStatus(line.ctx), 'e');
  EXPECT_EQ(line.ctx.statusFlags, 0x10u);
  EXPECT_EQ(line.port.Reads(), 0);
  const struct { int before; bool answered; int after; } cases[] = {{0x102, true, 0x102}, {0x102, false, 0x002},
                                                                    {0x100, false, 0x100}};
  for (const auto& c : cases) {
    if (!c.answered) line.port.answers_.clear();
    otool_IOCTL(line.ctx.handle, kPortSetState, c.before);
    zpl_QueryStatus(line.ctx);
    int word = 0;
    otool_IOCTL(line.ctx.handle, kPortGetState, static_cast<void*>(&word));
    EXPECT_EQ(word, c.after) << c.before;
  }
}

}  // namespace
}  // namespace zebra_test
