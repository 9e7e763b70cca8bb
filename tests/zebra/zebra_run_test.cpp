// A label from end to end: posprint run --json with the ZEBRA driver loaded from the
// plug-in, and a pseudo-terminal playing a label printer that answers "~HS" with its
// three status strings in one burst, as a real printer does.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/host_helpers.h"
#include "support/pty_printer.h"
#include "zebra/zebra_test.h"

namespace posprint::test {
namespace {

TEST(ZebraRun, LabelTextAndJsonLines) {
  PtyPrinter printer(AnswerRequests({{"~HS", zebra_test::kReadyFirst + zebra_test::kSecond + zebra_test::kThird}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TempDir dir;
  const std::string fields[] = {
      "<SingleField><Field>CAF\xC3\x89 DU COIN</Field></SingleField>",
      "<DOUBLEFIELD Char='.'><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>",
      "<BARCODE Type='QR_CODE'>A{0D}B</BARCODE>", "<LOGO FileName='shop.bmp'/>"};
  std::string commands = Command("INIT_PRINTER") + Command("CHECK") + Command("START_PRINT");
  for (const std::string& field : fields) commands += Command("NEWPRINT", field);
  const std::string job = dir.Write("label.xml", Job(commands + Command("STOP_PRINT") + Command("STOP_PRINTER")));
  const ProgramRun run = Posprint({"run", "--json", "--model", "ZEBRA", "--port", printer.PortName(), "--param",
                                   "param_Displacement=5", job});
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.err;
  std::vector<std::string> expected;
  for (const char* command : {"INIT_PRINTER", "CHECK", "START_PRINT", "NEWPRINT", "NEWPRINT", "NEWPRINT", "NEWPRINT",
                              "STOP_PRINT", "STOP_PRINTER"})
    expected.push_back(std::string(R"({"command":")") + command + R"(","ok":true,"errors":[]})");
  EXPECT_EQ(Lines(run.out), expected);
  // 49 characters of 16 dots a line, lines 31 dots apart; É is C9 in Windows-1252.
  const std::string font = "^CFF,26,13^CFF,26,13";
  EXPECT_EQ(printer.Received(),
            "^XA^MTD^MMT~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13^CI27^MFN,F^JUS^XZ^XA^JA^XZ^CFF,26,13"  // set-up
            "~HS^XA^JA^XZ^XA^LH,0" + font + "^FO288,0^FDCAF\xC9 DU COIN^FS"                          // centred title
                + font + "^FO0,31^FDEspresso^FS^FO128,31^FD" + std::string(37, '.') + "^FS^FO720,31^FD2.20^FS"
                + "^FO26,62^BY3,3.0,80^BQN,2,6^FH^FDMM,B0003A_0DB^FS"  // QR, 3 bytes
                + "^FO0,179^XGE:shop.GRF,1,1^FS^LH,40^XZ");            // logo, the home 5 mm lower
}

}  // namespace
}  // namespace posprint::test
