// A label from end to end: posprint run --json with the ZEBRA driver loaded from the
// plug-in, and a pseudo-terminal playing a label printer that answers "~HS" with its
// three status strings in one burst, as a real printer does.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/host_helpers.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

const std::string kSecond = "\x02" "000,0,0,0,1,2,6,0,00000000,1,000" "\x03\r\n";
const std::string kThird = "\x02" "1234,0" "\x03\r\n";
// The first string with the paper-out flag (byte 5) as given.
std::string HostStatus(const char* paperOut) {
  return "\x02" "030," + std::string(paperOut) + ",0,0560,000,0,0,0,000,0,0,0" "\x03\r\n" + kSecond + kThird;
}

const char* const kSetUp =
    "^XA^MTD^MMT~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13^CI27^MFN,F^JUS^XZ^XA^JA^XZ^CFF,26,13";

TEST(ZebraRun, LabelTextAndJsonLines) {
  PtyPrinter printer(AnswerRequests({{"~HS", HostStatus("0")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TempDir dir;
  const std::string job = dir.Write(
      "label.xml",
      Job(Command("INIT_PRINTER") + Command("CHECK") + Command("START_PRINT") +
          Command("NEWPRINT", "<SingleField><Field>CAF\xC3\x89 DU COIN</Field></SingleField>") +
          Command("NEWPRINT",
                  "<DOUBLEFIELD Char='.'><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>") +
          Command("NEWPRINT", "<BARCODE Type='QR_CODE'>A{0D}B</BARCODE>") +
          Command("NEWPRINT", "<LOGO FileName='shop.bmp'/>") + Command("STOP_PRINT") + Command("STOP_PRINTER")));
  const ProgramRun run = Posprint({"run", "--json", "--model", "ZEBRA", "--port", printer.PortName(), "--param",
                                   "param_Displacement=5", job});
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.err;

  std::vector<std::string> expected = {R"({"command":"INIT_PRINTER","ok":true,"errors":[]})",
                                       R"({"command":"CHECK","ok":true,"errors":[]})",
                                       R"({"command":"START_PRINT","ok":true,"errors":[]})"};
  for (int i = 0; i < 4; ++i) expected.push_back(R"({"command":"NEWPRINT","ok":true,"errors":[]})");
  expected.push_back(R"({"command":"STOP_PRINT","ok":true,"errors":[]})");
  expected.push_back(R"({"command":"STOP_PRINTER","ok":true,"errors":[]})");
  EXPECT_EQ(Lines(run.out), expected);

  // 49 characters of 16 dots a line, lines 31 dots apart; É is C9 in Windows-1252.
  const std::string font = "^CFF,26,13^CFF,26,13";
  EXPECT_EQ(printer.Received(),
            std::string(kSetUp) + "~HS" + "^XA^JA^XZ^XA^LH,0"                       //
                + font + "^FO288,0^FDCAF\xC9 DU COIN^FS"                             // centred title
                + font + "^FO0,31^FDEspresso^FS^FO128,31^FD" + std::string(37, '.') + "^FS^FO720,31^FD2.20^FS"
                + "^FO26,62^BY3,3.0,80^BQN,2,6^FH^FDMM,B0003A_0DB^FS"                // QR, 3 bytes
                + "^FO0,179^XGE:shop.GRF,1,1^FS^LH,40"                               // logo, home 5 mm lower
                + "^XZ");
}

TEST(ZebraRun, CheckReportsTheLabelPrinterState) {
  struct Case {
    const char* name;
    std::string answer;
    const char* checkLine;
  };
  const Case cases[] = {
      {"ready", HostStatus("0"), R"({"command":"CHECK","ok":true,"errors":[]})"},
      {"paper out", HostStatus("1"), R"({"command":"CHECK","ok":false,"errors":[112]})"},
      {"garbled", "\x15\r\n" + kSecond + kThird, R"({"command":"CHECK","ok":false,"errors":[101]})"},
  };
  TempDir dir;
  const std::string job =
      dir.Write("check.xml", Job(Command("INIT_PRINTER") + Command("CHECK") + Command("STOP_PRINTER")));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    PtyPrinter printer(AnswerRequests({{"~HS", c.answer}}));
    ASSERT_TRUE(printer.Ok()) << printer.Error();
    const ProgramRun run = Posprint({"run", "--json", "--model", "ZEBRA", "--port", printer.PortName(), job});
    printer.Stop();
    const std::vector<std::string> lines = Lines(run.out);
    ASSERT_EQ(lines.size(), 3u) << run.out << run.err;
    EXPECT_EQ(lines[1], c.checkLine);
    EXPECT_EQ(printer.Received(), std::string(kSetUp) + "~HS");
  }
}

}  // namespace
}  // namespace posprint::test
