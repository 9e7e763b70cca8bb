// The sample jobs from end to end: posprint run --json with the driver loaded from the
// plug-in and a pseudo-terminal playing the printer. The PLUS and LX300 print the sample
// receipt, the ITALORA the sample label.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/host_helpers.h"
#include "support/bytes.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

const std::string kExamples = std::string(POSPRINT_SOURCE_DIR) + "/examples";

// posprint run --json of an example on `model` with the printer; every command of the job
// (INIT_PRINTER, CHECK, START_PRINT, `fields` NEWPRINT, STOP_PRINT, STOP_PRINTER) must
// report ok. What the printer received.
std::string RunExample(PtyPrinter& printer, const char* model, int fields, const std::vector<std::string>& options) {
  EXPECT_TRUE(printer.Ok()) << printer.Error();
  std::vector<std::string> args = {"run", "--json", "--model", model, "--port", printer.PortName()};
  args.insert(args.end(), options.begin(), options.end());
  const ProgramRun run = Posprint(args);
  printer.Stop();
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(run.err, "");
  std::vector<std::string> commands = {"INIT_PRINTER", "CHECK", "START_PRINT"};
  commands.insert(commands.end(), fields, "NEWPRINT");
  commands.insert(commands.end(), {"STOP_PRINT", "STOP_PRINTER"});
  std::vector<std::string> expected;
  for (const std::string& command : commands) expected.push_back(R"({"command":")" + command + R"(","ok":true,"errors":[]})");
  EXPECT_EQ(Lines(run.out), expected);
  return printer.Received();
}
const std::vector<std::string> kReceipt = {"--params", kExamples + "/receipt.params", kExamples + "/receipt.xml"};

// The bytes sent begin with `start` and end with `end`.
void ExpectEnds(const std::string& sent, const std::string& start, const std::string& end) {
  EXPECT_EQ(sent.substr(0, start.size()), start);
  EXPECT_EQ(sent.substr(sent.size() - std::min(sent.size(), end.size())), end);
}

TEST(SampleJobs, PlusPrintsTheReceipt) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), Hex("12")}, {Hex("10 04 04"), Hex("12")}}));
  // ESC @, ESC t 0, the two status questions, then the logo centred in 24-dot bands ...
  // LINEFEED 4 after the barcode, then the CUT element; the parameters turn the feeds and
  // the cut of STOP_PRINT off.
  ExpectEnds(ToHex(RunExample(printer, "PLUS", 12, kReceipt)),
             "1B 40 1B 74 00 10 04 02 10 04 04 1B 21 00 1B 7B 00 1B 61 01 1B 33 18 1B 2A 21 80",
             "1B 61 00 0D 0D 0D 0D 1D 56 01");
}

TEST(SampleJobs, Lx300PrintsTheReceipt) {
  PtyPrinter printer;  // it never answers
  // ESC @, ESC t 1, ESC x 0; CHECK sends nothing; the logo in 72 dpi 8-dot bands ...
  // the bar code and the paper moved past it, LINEFEED 4, the CUT element (nothing), then
  // the form feed of STOP_PRINT.
  ExpectEnds(ToHex(RunExample(printer, "LX300", 12, kReceipt)), "1B 40 1B 74 01 1B 78 00 1B 21 00 1B 33 18 1B 2A 05 80 00",
             "0D 1B 4A 79 0D 0A 0D 0A 0D 0A 0D 0A 0C");
}

TEST(SampleJobs, ItaloraPrintsTheLabel) {
  PtyPrinter printer(AnswerRequests({{"?90\r", "!90&0&0&0&0&0\r"}}));
  const std::string received = RunExample(printer, "ITALORA", 6,
                                          {"--param", "param_WidthLabel=60", "--param", "param_LenghtLabel=40",
                                           kExamples + "/label-italora.xml"});
  std::vector<std::string> lines;
  for (std::size_t at = 0, end; (end = received.find('\r', at)) != std::string::npos; at = end + 1)
    lines.push_back(received.substr(at, end - at));
  ASSERT_EQ(lines.size(), 14u) << received;
  // The picture: 64 x 24 dots, 8 bytes a row in hexadecimal.
  EXPECT_EQ(lines[4].substr(0, 21), "?41&LABEL-LOGO&64&24&");
  EXPECT_EQ(lines[4].size(), 21u + 64 / 8 * 24 * 2);
  lines[4] = "?41";
  const std::vector<std::string> expected = {
      "?00", "?01&8&100&D", "?90", "?02&60.000&40.000", "?41",
      "?40&26.000&1.000&0&LABEL-LOGO",
      "?10&12.000&5.000&0&1&1&2&1&CAFF\xC8 ITALIA",  // È in Windows-1252
      "?10&1.000&8.000&0&1&1&1&0&Espresso 250 g",
      "?10&22.000&8.000&0&1&1&1&0&" + std::string(18, '.'),
      "?10&49.000&8.000&0&1&1&1&0&\x80 4,90",  // the euro sign
      "?10&1.000&11.000&0&2&1&1&0&Lotto 2406 - scad. 12/2025",
      "?20&1.000&14.375&58.000&0.250",
      "?30&30.000&16.000&C&0&E13&0.250&12.000&2&800123456789",
      "?03&1",
  };
  EXPECT_EQ(lines, expected);
}

}  // namespace
}  // namespace posprint::test
