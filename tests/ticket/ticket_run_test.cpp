// The ticket printers from end to end: `posprint run` loads each driver from the plug-in
// and talks to a pseudo-terminal that plays the printer, scrambled where the model is.
// Every byte the printer understood is checked, and every result line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/host_helpers.h"
#include "support/bytes.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

constexpr int kKey = 0xCB;

std::string Spaces(int n) { return std::string(static_cast<std::size_t>(n), ' '); }

// Runs the commands against the printer and checks that each one succeeded. Then waits
// until the printer has read `expectedBytes` (the host may exit before the printer's
// thread has drained the line) and stops it.
void RunJob(PtyPrinter& printer, std::size_t expectedBytes, const char* model, const std::vector<std::string>& params,
            const std::vector<std::pair<std::string, std::string>>& commands) {
  TempDir dir;
  std::string job;
  for (const auto& command : commands) job += Command(command.first, command.second);
  const std::string path = dir.Write("job.xml", Job(job));
  std::vector<std::string> args = {"run", "--json", "--model", model, "--port", printer.PortName()};
  for (const std::string& param : params) {
    args.push_back("--param");
    args.push_back(param);
  }
  args.push_back(path);
  const ProgramRun run = Posprint(args);
  printer.WaitForBytes(expectedBytes, 5000);
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), commands.size()) << run.out;
  for (std::size_t i = 0; i < lines.size(); ++i)
    EXPECT_NE(lines[i].find(R"("ok":true,"errors":[])"), std::string::npos) << lines[i];
}

TEST(TicketRun, Stb112Scrambled) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), Hex("00")}, {Hex("10 04 11"), Hex("00")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  printer.SetScrambleKey(kKey);  // set up for the scrambled mode, as the terminal is
  const std::string expected =
      Hex("1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B")  // open, roll
      + Hex("10 04 02 10 04 11")                                                             // CHECK
      + Hex("1B 7B 00") + Spaces(17) + "Ticket 7\r\n"                                        // centred
      + Hex("1B 7B 00 1B 74 13") + "Adult" + Spaces(31) + "2.50 \xD5\r\n"  // PC858 for the euro sign
      + Hex("1B 7B 00 1B 56 00 1B 21 00 1B 61 01 1D 6B 49 04 7B 42 54 37 1B 61 00")  // barcode
      + Hex("1B 28 76 64 00 1B 69 1B 28 76 9C FF")                                 // retracting cut
      + Hex("1B 6D");                                                              // end: partial cut
  RunJob(printer, expected.size(), "STB112", {"param_Cripted=TRUE", "param_CutType=val_Partial", "param_LinefeedEjection=FALSE"},
         {{"INIT_PRINTER", ""},
          {"CHECK", ""},
          {"START_PRINT", ""},
          {"NEWPRINT", "<SINGLEFIELD Justify=\"CENTER\"><Field>Ticket 7</Field></SINGLEFIELD>"},
          {"NEWPRINT", "<DOUBLEFIELD><LeftField>Adult</LeftField><RightField>2.50 \xE2\x82\xAC</RightField></DOUBLEFIELD>"},
          {"NEWPRINT", "<BARCODE>T7</BARCODE>"},
          {"NEWPRINT", "<CUT/>"},
          {"STOP_PRINT", ""},
          {"STOP_PRINTER", ""}});
  EXPECT_EQ(ToHex(printer.Received()), ToHex(expected));
  EXPECT_EQ(ToHex(printer.Line().substr(0, 3)), "D0 BF CB");  // on the wire: ESC t 0 under the key
}

// The printer was switched off and on and talks plain again: CHECK finds it silent, asks
// plain, tells it to take up the key and carries on scrambled.
TEST(TicketRun, Stb112ResyncsAPrinterThatLostItsMode) {
  PtyPrinter printer;
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  printer.SetResponder([&printer](const std::string& received) -> std::string {
    if (EndsWith(received, Hex("1B F9 CB"))) printer.SetScrambleKey(kKey);
    if (EndsWith(received, Hex("10 04 02")) || EndsWith(received, Hex("10 04 11"))) return Hex("00");
    return "";
  });
  // 26 bytes of open and 15 of CHECK, whatever they mean to the printer.
  RunJob(printer, 41, "STB112", {"param_Cripted=TRUE"}, {{"INIT_PRINTER", ""}, {"CHECK", ""}, {"STOP_PRINTER", ""}});
  const std::string received = ToHex(printer.Received());
  // The scrambled request read as noise, the plain retry, the switch, the status again.
  EXPECT_EQ(received.substr(received.size() - 44), "DB CF C9 10 04 02 1B F9 CB 10 04 02 10 04 11");
  EXPECT_EQ(printer.ScrambleKey(), kKey);
}

TEST(TicketRun, Stb60Plain) {
  PtyPrinter printer(AnswerRequests({{Hex("1B 76"), Hex("00")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  const std::string expected = Hex("1B 74 00 1B 40 1D FF 0A 32 0F 03 6A")  // open, density dark
                               + Hex("1B 76")                               // CHECK: ESC v
                               + Hex("1B 7B 00") + std::string(32, '-') + "\r\n" +
                               std::string(10, '\n');  // ten feeds, no cut
  RunJob(printer, expected.size(), "STB60", {"param_Density=val_Dark"},
         {{"INIT_PRINTER", ""}, {"CHECK", ""}, {"START_PRINT", ""}, {"NEWPRINT", "<LINE/>"},
          {"NEWPRINT", "<CUT/>"}, {"STOP_PRINT", ""}, {"STOP_PRINTER", ""}});
  EXPECT_EQ(ToHex(printer.Received()), ToHex(expected));
}

TEST(TicketRun, Stb80AlwaysScrambled) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), Hex("00")}, {Hex("10 04 14"), Hex("00 00 00 00 00 00")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  printer.SetScrambleKey(kKey);
  const std::string expected =
      Hex("D0 BF CB")  // ESC t 0 goes out before the port is scrambled: noise to the printer
      + Hex("1B 40 1D FF 0A 32 01 01 5A")  // ESC @, 80 mm
      + Hex("10 04 02 10 04 14")           // CHECK
      + Hex("1B 40")                       // START_PRINT
      + Hex("1B 7B 00 1B 56 00 1B 47 30 1B 21 01 1B C1 1D 66 31 1D 48 01 1D 68 50 1D 77 03 1B 61 01") +
      Hex("1D 6B 49 04 7B 42 41 31 1B 61 00")  // barcode, text above
      + Hex("1B 69") + std::string(8, '\n');  // cut; end: eight feeds, no cut
  RunJob(printer, expected.size(), "STB80", {},
         {{"INIT_PRINTER", ""}, {"CHECK", ""}, {"START_PRINT", ""},
          {"NEWPRINT", "<BARCODE HRI=\"sopra\">A1</BARCODE>"}, {"NEWPRINT", "<CUT Type=\"CUT_FULL\"/>"},
          {"STOP_PRINT", ""}, {"STOP_PRINTER", ""}});
  EXPECT_EQ(ToHex(printer.Received()), ToHex(expected));
}

// The Q1 answers its identification plain and takes up the scrambled mode after it.
TEST(TicketRun, Q1IdentifiesThenRunsScrambled) {
  PtyPrinter printer;
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  printer.SetResponder([&printer](const std::string& received) -> std::string {
    if (EndsWith(received, Hex("1D 49 31"))) {
      printer.SetScrambleKey(kKey);
      return std::string(1, static_cast<char>(0x01 ^ kKey));  // scrambled on the way: 01 goes out plain
    }
    if (EndsWith(received, Hex("10 04 02"))) return Hex("00");
    if (EndsWith(received, Hex("10 04 14"))) return Hex("00 00 00 00 00 00");
    return "";
  });
  const std::string expected = Hex("1D 49 31 1B 40 1B 74 00")  // identification, ESC @, ESC t 0
                               + Hex("10 04 02 10 04 14")      // CHECK
                               + Hex("1B 7B 00") + "A" + Spaces(40) + "B\r\n" +
                               Hex("1B 69")    // CUT: always full
                               + Hex("1B 69");  // end: no feeds, full cut
  RunJob(printer, expected.size(), "QSeries", {"param_LinefeedEjection=FALSE", "param_CutType=val_Partial"},
         {{"INIT_PRINTER", ""}, {"CHECK", ""}, {"START_PRINT", ""},
          {"NEWPRINT", "<DOUBLEFIELD><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>"},
          {"NEWPRINT", "<CUT Type=\"CUT_PARTIAL\"/>"}, {"STOP_PRINT", ""}, {"STOP_PRINTER", ""}});
  EXPECT_EQ(ToHex(printer.Received()), ToHex(expected));
}

}  // namespace
}  // namespace posprint::test
