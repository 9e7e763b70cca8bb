// posprint run from end to end for the VKP80II, TM300 and TM295: the host loads the
// driver from the plug-in and a pseudo-terminal plays the printer, answering its status
// requests. Checks every byte the printer receives and every JSON line. These run with
// the real clock: the VKP80II's open and end of ticket take five seconds.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/host_helpers.h"
#include "itf_pattern.h"
#include "support/bytes.h"
#include "support/pty_printer.h"

namespace receipt_test {
namespace {

using posprint::test::AnswerRequests;
using posprint::test::EndsWith;
using posprint::test::Hex;
using posprint::test::Lines;
using posprint::test::Posprint;
using posprint::test::ProgramRun;
using posprint::test::PtyPrinter;
using posprint::test::TempDir;
using posprint::test::ToHex;

std::string Ok(const char* command) { return std::string(R"({"command":")") + command + R"(","ok":true,"errors":[]})"; }

std::string JobOf(const std::vector<std::string>& commands) {
  std::string job;
  for (const std::string& c : commands) job += c;
  return posprint::test::Job(job);
}
std::string Cmd(const std::string& name, const std::string& element = "") {
  return posprint::test::Command(name, element);
}

TEST(ReceiptEndToEnd, Vkp80iiTicketWithCutAndPresenter) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 14"), Hex("10 0F 00 00 00 00")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TempDir dir;
  const std::string job = dir.Write(
      "ticket.xml", JobOf({Cmd("INIT_PRINTER"), Cmd("CHECK"), Cmd("START_PRINT"),
                           Cmd("NEWPRINT", "<SINGLEFIELD><Field>Grazie €</Field></SINGLEFIELD>"),
                           Cmd("NEWPRINT", "<BARCODE Type=\"EAN13\">400638133393</BARCODE>"), Cmd("STOP_PRINT"),
                           Cmd("STOP_PRINTER")}));
  const ProgramRun run = Posprint({"run", "--json", "--model", "VKP80II", "--port", printer.PortName(), "--param",
                                   "param_CutType=val_Full", job});
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Lines(run.out), (std::vector<std::string>{Ok("INIT_PRINTER"), Ok("CHECK"), Ok("START_PRINT"),
                                                     Ok("NEWPRINT"), Ok("NEWPRINT"), Ok("STOP_PRINT"),
                                                     Ok("STOP_PRINTER")}));
  const std::string format = "1B 7B 00 1B 56 00 1B C1 00 1B 21 01 ";
  EXPECT_EQ(ToHex(printer.Received()),
            "1B 74 00 1B 40 1B C1 00 1B 21 01 1D 50 00 00 "  // INIT_PRINTER
            "10 04 14 " +                                      // CHECK
                format + "1B 74 13 " + ToHex(std::string(17, ' ') + "Grazie \xD5\n") + " " +  // the euro: PC858
                format + "1B 74 00 1D 48 02 1B 61 01 1D 6B 02 " + ToHex("400638133393") + " 00 0D 1B 61 00 " +
                "0A 0A 0A 0A 0A 0A 0A 1B 69 1D 65 03 0C");  // STOP_PRINT: feeds, cut, presenter
}

TEST(ReceiptEndToEnd, Vkp80iiReportsPaperOut) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 14"), Hex("10 0F 01 00 00 00")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TempDir dir;
  const std::string job = dir.Write("check.xml", JobOf({Cmd("INIT_PRINTER"), Cmd("CHECK"), Cmd("STOP_PRINTER")}));
  const ProgramRun run = Posprint({"run", "--json", "--model", "VKP80II", "--port", printer.PortName(), job});
  printer.Stop();
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_EQ(Lines(run.out), (std::vector<std::string>{Ok("INIT_PRINTER"), R"({"command":"CHECK","ok":false,"errors":[112]})",
                                                     Ok("STOP_PRINTER")}));
}

TEST(ReceiptEndToEnd, Tm300TicketEndsWhenThePrinterIsReadyAgain) {
  // The first status request (CHECK) is answered; the next one, right after the cut,
  // meets a busy printer that stays silent; the one after that is answered.
  int requests = 0;
  PtyPrinter printer([&requests](const std::string& received) -> std::string {
    if (!EndsWith(received, Hex("1B 76"))) return "";
    return ++requests == 2 ? "" : Hex("00");
  });
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TempDir dir;
  const std::string job = dir.Write(
      "ticket.xml",
      JobOf({Cmd("INIT_PRINTER"), Cmd("CHECK"),
             Cmd("NEWPRINT", "<DOUBLEFIELD Char=\".\"><LeftField>Pane</LeftField><RightField>1.20</RightField></DOUBLEFIELD>"),
             Cmd("NEWPRINT", "<BARCODE>123</BARCODE>"), Cmd("STOP_PRINT"), Cmd("STOP_PRINTER")}));
  const ProgramRun run = Posprint({"run", "--json", "--model", "TM300", "--port", printer.PortName(), "--param",
                                   "param_CutType=val_Partial", "--param", "param_RollEjection=FALSE", job});
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Lines(run.out), (std::vector<std::string>{Ok("INIT_PRINTER"), Ok("CHECK"), Ok("NEWPRINT"), Ok("NEWPRINT"),
                                                     Ok("STOP_PRINT"), Ok("STOP_PRINTER")}));
  EXPECT_EQ(ToHex(printer.Received()), "1B 74 00 1B 40 1B 76 1B 7B 00 1B 21 00 " +
                                           ToHex("Pane" + std::string(25, '.') + "1.20\r\n") +
                                           " 1B 6D 1B 76 1B 76");  // partial cut, then asked until ready
}

TEST(ReceiptEndToEnd, Tm295SlipWithItfBarcode) {
  PtyPrinter printer(AnswerRequests({{Hex("1B 76"), Hex("00")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TempDir dir;
  const std::string job = dir.Write(
      "slip.xml", JobOf({Cmd("INIT_PRINTER"), Cmd("TM295_NEWPRINT", "<XONXOFF/>"), Cmd("CHECK"),
                         Cmd("NEWPRINT", "<SINGLEFIELD><Field>Grazie</Field></SINGLEFIELD>"),
                         Cmd("NEWPRINT", "<BARCODE Type=\"ITF2OF5\">12</BARCODE>"), Cmd("STOP_PRINT"),
                         Cmd("STOP_PRINTER")}));
  const ProgramRun run = Posprint({"run", "--json", "--model", "TM295", "--port", printer.PortName(), "--param",
                                   "param_BarcodeWidth=1", "--param", "param_BarcodeHeight=2", job});
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Lines(run.out), (std::vector<std::string>{Ok("INIT_PRINTER"), Ok("TM295_NEWPRINT"), Ok("CHECK"),
                                                     Ok("NEWPRINT"), Ok("NEWPRINT"), Ok("STOP_PRINT"),
                                                     Ok("STOP_PRINTER")}));
  const std::string band = Hex("1B 2A 00 30 00") + ColumnBytes(kItf12Columns) + "\r\n";
  EXPECT_EQ(ToHex(printer.Received()),
            ToHex(Hex("1B 74 00 1B 40 1B 71 00 1B 76 1B 7B 00 1B 21 00") + std::string(14, ' ') + "Grazie\r\n" +
                  Hex("1B 7B 00 1B 21 00 1B 33 08") + band + band + Hex("1B 32") +  // the ITF band twice
                  Hex("1B 76 1B 46 31 0C")));                                         // ready: eject
}

}  // namespace
}  // namespace receipt_test
