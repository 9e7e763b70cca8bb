// The sample receipt from end to end: posprint run --json on examples/receipt.xml, the
// TMT70 driver loaded from the plug-in, and a pseudo-terminal that plays the printer and
// answers its status queries. Checks every byte the printer receives and every JSON line.
#include <gtest/gtest.h>

#include <string>

#include "host/host_helpers.h"
#include "support/bytes.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

const std::string kExamples = std::string(POSPRINT_SOURCE_DIR) + "/examples";

const std::string kCrLf = Hex("0D 0A");
// ESC { 0 (not upside down), ESC ! n (print mode): the set-up before each text field.
std::string TextMode(const char* mode) { return Hex("1B 7B 00 1B 21") + Hex(mode); }

// Everything the receipt sends except the logo's picture bands.
struct ReceiptBytes {
  std::string beforeLogo = Hex("1B 74 00 1B 40 1D 62")   // INIT_PRINTER: ESC t 0 (PC437), ESC @, GS b
                           + Hex("10 04 02 10 04 04")     // CHECK: DLE EOT 2, DLE EOT 4
                           + Hex("1B 21 00 1B 7B 00")     // LOGO: ESC ! 0, ESC { 0
                           + Hex("1B 33 00");             // ESC 3 0: bands touch
  std::string afterLogo =
      Hex("1B 32")  // ESC 2: default line spacing
      // Title, double height, centred on 42 columns; É is 90 in code page 437.
      + TextMode("10") + std::string(15, ' ') + "CAF\x90 DU COIN" + kCrLf
      // Address lines, centred; é is 82.
      + TextMode("00") + std::string(11, ' ') + "12 place de la Gare" + kCrLf + std::string(11, ' ') + "T\x82l. 01 23 45 67 89" + kCrLf
      + kCrLf  // LINEFEED 1
      // Items: left text, '.' fill, right text on 42 columns; è is 8A, à is 85.
      + TextMode("00") + "2 x Caf\x82 cr\x8Ame" + std::string(24, '.') + "5.00" + kCrLf  //
      + "Croissant" + std::string(29, '.') + "1.90" + kCrLf                              //
      + "Pain au chocolat" + std::string(22, '.') + "2.10" + kCrLf                       //
      + "Th\x82 \x85 la menthe" + std::string(23, '.') + "3.20" + kCrLf                  //
      + TextMode("00") + std::string(42, '=') + kCrLf                                     // LINE
      // Total: double width and bold, so 21 columns.
      + TextMode("28") + "TOTAL" + std::string(11, ' ') + "12.20" + kCrLf  //
      + kCrLf                                                    // LINEFEED 1
      + TextMode("00") + std::string(11, ' ') + "Merci et \x85 bient\x93t !" + kCrLf
      // BARCODE: never rotated (ESC { 0, ESC V 0), print mode reset, GS f 1 (HRI font B),
      // GS H 2 (HRI below), GS h 80 (10 mm), GS w 3, ESC a 1 (centred),
      // GS k 73 with 15 bytes: "{B" (code set B) and the data, ESC a 0.
      + Hex("1B 7B 00 1B 56 00 1B 21 00 1D 66 31 1D 48 02 1D 68 50 1D 77 03 1B 61 01") +
      Hex("1D 6B 49 0F") + "{BTKT0001234567" + Hex("1B 61 00")  //
      + kCrLf + kCrLf + kCrLf + kCrLf                          // LINEFEED 4
      + Hex("1D 56 01");                                       // CUT: GS V 1
  // STOP_PRINT sends nothing: receipt.params turns the end-of-print feeds and cut off.
};

TEST(Tmt70Receipt, SampleReceiptBytesAndJsonLines) {
  // DLE EOT 2 and DLE EOT 4 answered with their fixed bits (1 and 4): online, cover closed, paper present.
  PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), Hex("12")}, {Hex("10 04 04"), Hex("12")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  const ProgramRun run = Posprint({"run", "--json", "--model", "TMT70", "--port", printer.PortName(), "--params",
                                   kExamples + "/receipt.params", kExamples + "/receipt.xml"});
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");

  std::vector<std::string> expected;
  for (std::string name : {"INIT_PRINTER", "CHECK", "START_PRINT", "", "STOP_PRINT", "STOP_PRINTER"})
    for (int i = 0; i < (name.empty() ? 12 : 1); ++i)  // twelve NEWPRINT
      expected.push_back(R"({"command":")" + (name.empty() ? "NEWPRINT" : name) + R"(","ok":true,"errors":[]})");
  EXPECT_EQ(Lines(run.out), expected);

  // The logo: 128 x 40 pixels in five 8-dot bands, ESC * 0 with 128 columns each, every
  // band ended by CR LF.
  const ReceiptBytes bytes;
  const std::string received = printer.Received();
  constexpr std::size_t kBand = 5 + 128 + 2;
  ASSERT_EQ(received.size(), bytes.beforeLogo.size() + 5 * kBand + bytes.afterLogo.size()) << ToHex(received);
  EXPECT_EQ(ToHex(received.substr(0, bytes.beforeLogo.size())), ToHex(bytes.beforeLogo));
  EXPECT_EQ(ToHex(received.substr(bytes.beforeLogo.size() + 5 * kBand)), ToHex(bytes.afterLogo));

  const std::size_t logo = bytes.beforeLogo.size();
  for (std::size_t band = 0; band < 5; ++band) {
    EXPECT_EQ(ToHex(received.substr(logo + band * kBand, 5)), "1B 2A 00 80 00") << "band " << band;
    EXPECT_EQ(ToHex(received.substr(logo + band * kBand + 5 + 128, 2)), "0D 0A") << "band " << band;
  }
  // Columns read off the picture (top dot = most significant bit): the frame is two
  // pixels wide all round; the C's stem is columns 18 to 21, rows 10 to 29.
  struct Column { std::size_t band, column; const char* dots; } columns[] = {
      {0, 0, "FF"}, {2, 1, "FF"}, {4, 127, "FF"},  // left and right frame
      {0, 2, "C0"}, {1, 2, "00"}, {4, 2, "03"},    // top and bottom frame
      {0, 18, "C0"}, {1, 18, "3F"}, {2, 18, "FF"}, {3, 18, "FC"}, {4, 18, "03"},  // C stem
  };
  for (const Column& c : columns)
    EXPECT_EQ(ToHex(received.substr(logo + c.band * kBand + 5 + c.column, 1)), c.dots)
        << "band " << c.band << " column " << c.column;
}

TEST(Tmt70Receipt, CheckReportsThePrinterState) {
  struct StatusCase {
    const char *name, *printerAnswer, *paperAnswer;  // to DLE EOT 2 and DLE EOT 4; "" for silence
    const char *checkLine, *requests;                // what CHECK reported and sent
  } cases[] = {
      {"ready", "12", "12", R"({"command":"CHECK","ok":true,"errors":[]})", "10 04 02 10 04 04"},
      {"cover open", "16", "12", R"({"command":"CHECK","ok":false,"errors":[105]})", "10 04 02"},
      {"paper end", "12", "72", R"({"command":"CHECK","ok":false,"errors":[102]})", "10 04 02 10 04 04"},
      {"no answer", "", "", R"({"command":"CHECK","ok":false,"errors":[101]})", "10 04 02"},
  };
  TempDir dir;
  const std::string job =
      dir.Write("check.xml", Job(Command("INIT_PRINTER") + Command("CHECK") + Command("STOP_PRINTER")));
  for (const StatusCase& c : cases) {
    SCOPED_TRACE(c.name);
    PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), Hex(c.printerAnswer)}, {Hex("10 04 04"), Hex(c.paperAnswer)}}));
    ASSERT_TRUE(printer.Ok()) << printer.Error();
    const ProgramRun run = Posprint({"run", "--json", "--model", "TMT70", "--port", printer.PortName(), job});
    printer.Stop();
    EXPECT_EQ(Lines(run.out), (std::vector<std::string>{R"({"command":"INIT_PRINTER","ok":true,"errors":[]})", c.checkLine,
                                                          R"({"command":"STOP_PRINTER","ok":true,"errors":[]})"}));
    EXPECT_EQ(run.status, std::string(c.name) == "ready" ? 0 : 1);
    EXPECT_EQ(ToHex(printer.Received()), "1B 74 00 1B 40 1D 62 " + std::string(c.requests));
  }
}

}  // namespace
}  // namespace posprint::test
