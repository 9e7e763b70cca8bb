// posprint models: each model's identity as the terminal's drivers have it, found by any of
// its names, the keys in the driver's order, and JSON for programs. (That the keys and
// values themselves are the drivers' own is checked by tests/catalogue.)
#include <gtest/gtest.h>

#include "host/host_helpers.h"

namespace posprint::test {
namespace {

struct IdentityCase {
  const char* asked;      // how the user names it
  const char* header;     // the start of the first line
  const char* names;      // second line
  const char* timeouts;   // third line
};

// The identities, written out: the odd ones (QSeries/KpQ1, the STB112's 300 ms, the PLUS's
// bare CR, no own command on the Q1 and TMT70) are the printers' own.
const IdentityCase kIdentities[] = {
    {"ITALORA", "ITALORA: ", "  factory create_KpITALORA, component KpITALORA",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: ITALORA_NEWPRINT"},
    {"kplx300", "LX300: ", "  factory create_KpLX300, component KpLX300",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: LX300_NEWPRINT"},
    {"create_KpPLUS", "PLUS: ", "  factory create_KpPLUS, component KpPLUS",
     "  time-outs 5000 / 5000 ms, lines end in \\r, own command: PLUS_NEWPRINT"},
    {"KpQ1", "QSeries: ", "  factory create_Q1Driver, component KpQ1",
     "  time-outs 3000 / 3000 ms, lines end in \\r\\n, own command: none"},
    {"stb112", "STB112: ", "  factory create_STB112Driver, component KpSTB112",
     "  time-outs 300 / 5000 ms, lines end in \\r\\n, own command: STB112_NEWPRINT"},
    {"STB60", "STB60: ", "  factory create_STB60Driver, component KpSTB60",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: STB60_NEWPRINT"},
    {"STB80", "STB80: ", "  factory create_STB80Driver, component KpSTB80",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: STB80_NEWPRINT"},
    {"TM295", "TM295: ", "  factory create_KpTM295, component KpTM295",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: TM295_NEWPRINT"},
    {"TM300", "TM300: ", "  factory create_KpTM300, component KpTM300",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: TM300_NEWPRINT"},
    {"TMT70", "TMT70: ", "  factory create_KpTMT70, component KpTMT70",
     "  time-outs 6000 / 6000 ms, lines end in \\r\\n, own command: none"},
    {"VKP80II", "VKP80II: ", "  factory create_KpVKP80II, component KpVKP80II",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: VKP80II_NEWPRINT"},
    {"zebra", "ZEBRA: ", "  factory create_KpZEBRA, component KpZEBRA",
     "  time-outs 5000 / 5000 ms, lines end in \\r\\n, own command: ZEBRA_NEWPRINT"},
};

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

TEST(Models, OneModelByAnyOfItsNames) {
  for (const IdentityCase& c : kIdentities) {
    SCOPED_TRACE(c.asked);
    const ProgramRun run = Posprint({"models", c.asked});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::vector<std::string> lines = Lines(run.out);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_TRUE(StartsWith(lines[0], c.header)) << lines[0];
    EXPECT_EQ(lines[1], c.names);
    EXPECT_EQ(lines[2], c.timeouts);
  }
}

TEST(Models, AllTwelveInTheOrderOfTheirFactories) {
  const ProgramRun run = Posprint({"models"});
  EXPECT_EQ(run.status, 0) << run.err;
  std::vector<std::string> headers;
  for (const std::string& line : Lines(run.out))
    if (!line.empty() && line[0] != ' ') headers.push_back(line.substr(0, line.find(':') + 2));
  std::vector<std::string> expected;
  for (const IdentityCase& c : kIdentities) expected.push_back(c.header);
  EXPECT_EQ(headers, expected);
}

TEST(Models, AKeyWithItsDefaultWordsAndWhatElseDoes) {
  const ProgramRun run = Posprint({"models", "TMT70"});
  const std::string block =
      "    param_CutType (words exactly as written)\n"
      "        default: no cut at the end of a receipt\n"
      "        val_Partial: partial cut (1D 56 01) after the line feeds\n"
      "        any other value: keeps the default\n";
  EXPECT_NE(run.out.find(block), std::string::npos) << run.out;
  // The keys in the order the driver reads them.
  const std::size_t roll = run.out.find("param_RollEjection");
  const std::size_t nearEnd = run.out.find("param_NearlyEndPaperSensor");
  const std::size_t end = run.out.find("param_EndPaperSensor");
  const std::size_t cut = run.out.find("param_CutType");
  EXPECT_TRUE(roll < nearEnd && nearEnd < end && end < cut);
  EXPECT_NE(run.out.find("    102  paper out, or nearly out\n"), std::string::npos);
}

TEST(Models, TicketPrintersSayThatAnEmptyValueCounts) {
  EXPECT_NE(Posprint({"models", "STB80"}).out.find("even with an empty value"), std::string::npos);
  EXPECT_EQ(Posprint({"models", "TMT70"}).out.find("even with an empty value"), std::string::npos);
}

TEST(Models, JsonOneObjectAModel) {
  const ProgramRun run = Posprint({"models", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 12u);
  EXPECT_TRUE(StartsWith(lines[2], R"({"model":"PLUS","component":"KpPLUS","factory":"create_KpPLUS",)"
                                   R"("timeouts":[5000,5000],"terminator":"\r","ownCommand":"PLUS_NEWPRINT",)"))
      << lines[2];
  const ProgramRun q1 = Posprint({"models", "--json", "qseries"});
  EXPECT_NE(q1.out.find(R"("terminator":"\r\n","ownCommand":null,)"), std::string::npos) << q1.out;
  EXPECT_NE(q1.out.find(R"({"key":"param_CutType","case":"exact","default":"no automatic cut","values":)"
                        R"([{"value":"val_No","effect":"no automatic cut","keepsDefault":true}],)"),
            std::string::npos)
      << q1.out;
}

TEST(Models, UnknownModelIsAUsageError) {
  const ProgramRun run = Posprint({"models", "TM88"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("unknown model \"TM88\""), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("TMT70 (KpTMT70, create_KpTMT70)"), std::string::npos) << run.err;
}

}  // namespace
}  // namespace posprint::test
