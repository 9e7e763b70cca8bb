// The ticket printers from end to end, one ticket per model: `posprint run` loads each
// driver from the plug-in and talks to a pseudo-terminal that plays the printer, scrambled
// where the model is. Every byte the printer understood is checked, and every result line.
#include "support/end_to_end.h"

namespace ticket_test {
namespace {

using namespace posprint::test;

constexpr int kKey = 0xCB;
const std::string kReady = Hex("00"), kSix = Hex("00 00 00 00 00 00");

TEST(TicketRun, Stb112Scrambled) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), kReady}, {Hex("10 04 11"), kReady}}));
  printer.SetScrambleKey(kKey);  // set up for the scrambled mode, as the terminal is
  RunJob(printer,
         {"STB112", {"param_Cripted=TRUE", "param_CutType=val_Partial", "param_LinefeedEjection=FALSE"},
          {"INIT_PRINTER", "CHECK", "START_PRINT",
           "NEWPRINT <SINGLEFIELD Justify=\"CENTER\"><Field>Ticket 7</Field></SINGLEFIELD>",
           "NEWPRINT <DOUBLEFIELD><LeftField>Adult</LeftField><RightField>2.50 \xE2\x82\xAC</RightField></DOUBLEFIELD>",
           "NEWPRINT <BARCODE>T7</BARCODE>", "NEWPRINT <CUT/>", "STOP_PRINT", "STOP_PRINTER"}},
         Hex("1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B")  // open, roll
             + Hex("10 04 02 10 04 11")                                                     // CHECK
             + Hex("1B 7B 00") + std::string(17, ' ') + "Ticket 7\r\n"                      // centred
             + Hex("1B 7B 00 1B 74 13") + "Adult" + std::string(31, ' ') + "2.50 \xD5\r\n"  // PC858: the euro sign
             + Hex("1B 7B 00 1B 56 00 1B 21 00 1B 61 01 1D 6B 49 04 7B 42 54 37 1B 61 00")  // barcode
             + Hex("1B 28 76 64 00 1B 69 1B 28 76 9C FF")                                   // retracting cut
             + Hex("1B 6D"));                                                               // end: partial cut
}

TEST(TicketRun, Stb60Plain) {
  PtyPrinter printer(AnswerRequests({{Hex("1B 76"), kReady}}));
  RunJob(printer,
         {"STB60", {"param_Density=val_Dark"},
          {"INIT_PRINTER", "CHECK", "START_PRINT", "NEWPRINT <LINE/>", "NEWPRINT <CUT/>", "STOP_PRINT",
           "STOP_PRINTER"}},
         Hex("1B 74 00 1B 40 1D FF 0A 32 0F 03 6A 1B 76 1B 7B 00") + std::string(32, '-') + "\r\n"  // open, CHECK, line
             + std::string(10, '\n'));                                                        // ten feeds, no cut
}

TEST(TicketRun, Stb80AlwaysScrambled) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), kReady}, {Hex("10 04 14"), kSix}}));
  printer.SetScrambleKey(kKey);
  RunJob(printer,
         {"STB80", {},
          {"INIT_PRINTER", "CHECK", "START_PRINT", "NEWPRINT <BARCODE HRI=\"sopra\">A1</BARCODE>",
           "NEWPRINT <CUT Type=\"CUT_FULL\"/>", "STOP_PRINT", "STOP_PRINTER"}},
         Hex("D0 BF CB")  // ESC t 0 goes out before the port is scrambled: noise to the printer
             + Hex("1B 40 1D FF 0A 32 01 01 5A 10 04 02 10 04 14 1B 40")  // ESC @, 80 mm; CHECK; START_PRINT
             + Hex("1B 7B 00 1B 56 00 1B 47 30 1B 21 01 1B C1 1D 66 31 1D 48 01 1D 68 50 1D 77 03 1B 61 01") +
             Hex("1D 6B 49 04 7B 42 41 31 1B 61 00")  // barcode, text above
             + Hex("1B 69") + std::string(8, '\n'));  // cut; end: eight feeds, no cut
}

// The Q1 answers its identification plain and takes up the scrambled mode after it.
TEST(TicketRun, Q1IdentifiesThenRunsScrambled) {
  PtyPrinter printer;
  printer.SetResponder([&printer](const std::string& received) -> std::string {
    if (EndsWith(received, Hex("1D 49 31"))) {
      printer.SetScrambleKey(kKey);
      return std::string(1, static_cast<char>(0x01 ^ kKey));  // scrambled on the way: 01 goes out plain
    }
    return EndsWith(received, Hex("10 04 02")) ? kReady : EndsWith(received, Hex("10 04 14")) ? kSix : "";
  });
  RunJob(printer,
         {"QSeries", {"param_LinefeedEjection=FALSE", "param_CutType=val_Partial"},
          {"INIT_PRINTER", "CHECK", "START_PRINT",
           "NEWPRINT <DOUBLEFIELD><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>",
           "NEWPRINT <CUT Type=\"CUT_PARTIAL\"/>", "STOP_PRINT", "STOP_PRINTER"}},
         Hex("1D 49 31 1B 40 1B 74 00 10 04 02 10 04 14")  // identification, ESC @, ESC t 0; CHECK
             + Hex("1B 7B 00") + "A" + std::string(40, ' ') + "B\r\n"
             + Hex("1B 69 1B 69"));  // CUT: always full; end: no feeds, full cut
}

}  // namespace
}  // namespace ticket_test
