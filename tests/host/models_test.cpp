// posprint models: each model's identity as the terminal's drivers have it, found by any of
// its names, the keys in the driver's order, and JSON for programs. (That the keys and
// values themselves are the drivers' own is checked by tests/catalogue.)
#include <gtest/gtest.h>

#include "host/host_helpers.h"

namespace posprint::test {
namespace {

struct IdentityCase {
  const char *asked, *model, *factory, *component, *timeouts, *terminator, *ownCommand;
};

// The identities, written out: the odd ones (QSeries/KpQ1, the STB112's 300 ms, the PLUS's
// bare CR, no own command on the Q1 and TMT70) are the printers' own.
const IdentityCase kIdentities[] = {
    {"ITALORA", "ITALORA", "create_KpITALORA", "KpITALORA", "5000 / 5000", "\\r\\n", "ITALORA_NEWPRINT"},
    {"kplx300", "LX300", "create_KpLX300", "KpLX300", "5000 / 5000", "\\r\\n", "LX300_NEWPRINT"},
    {"create_KpPLUS", "PLUS", "create_KpPLUS", "KpPLUS", "5000 / 5000", "\\r", "PLUS_NEWPRINT"},
    {"KpQ1", "QSeries", "create_Q1Driver", "KpQ1", "3000 / 3000", "\\r\\n", "none"},
    {"stb112", "STB112", "create_STB112Driver", "KpSTB112", "300 / 5000", "\\r\\n", "STB112_NEWPRINT"},
    {"STB60", "STB60", "create_STB60Driver", "KpSTB60", "5000 / 5000", "\\r\\n", "STB60_NEWPRINT"},
    {"STB80", "STB80", "create_STB80Driver", "KpSTB80", "5000 / 5000", "\\r\\n", "STB80_NEWPRINT"},
    {"TM295", "TM295", "create_KpTM295", "KpTM295", "5000 / 5000", "\\r\\n", "TM295_NEWPRINT"},
    {"TM300", "TM300", "create_KpTM300", "KpTM300", "5000 / 5000", "\\r\\n", "TM300_NEWPRINT"},
    {"TMT70", "TMT70", "create_KpTMT70", "KpTMT70", "6000 / 6000", "\\r\\n", "none"},
    {"VKP80II", "VKP80II", "create_KpVKP80II", "KpVKP80II", "5000 / 5000", "\\r\\n", "VKP80II_NEWPRINT"},
    {"zebra", "ZEBRA", "create_KpZEBRA", "KpZEBRA", "5000 / 5000", "\\r\\n", "ZEBRA_NEWPRINT"},
};

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

TEST(Models, OneModelByAnyOfItsNames) {
  for (const IdentityCase& c : kIdentities) {
    SCOPED_TRACE(c.asked);
    const ProgramRun run = Posprint({"models", c.asked});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::vector<std::string> lines = Lines(run.out);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_TRUE(StartsWith(lines[0], c.model + std::string(": "))) << lines[0];
    EXPECT_EQ(lines[1], "  factory " + std::string(c.factory) + ", component " + c.component);
    EXPECT_EQ(lines[2], "  time-outs " + std::string(c.timeouts) + " ms, lines end in " + c.terminator +
                            ", own command: " + c.ownCommand);
  }
}

TEST(Models, AllTwelveInTheOrderOfTheirFactories) {
  const ProgramRun run = Posprint({"models"});
  EXPECT_EQ(run.status, 0) << run.err;
  std::vector<std::string> headers;
  for (const std::string& line : Lines(run.out))
    if (!line.empty() && line[0] != ' ') headers.push_back(line.substr(0, line.find(':') + 2));
  std::vector<std::string> expected;
  for (const IdentityCase& c : kIdentities) expected.push_back(c.model + std::string(": "));
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
  const auto at = [&run](const char* key) { return run.out.find(key); };  // keys in the driver's order
  EXPECT_TRUE(at("param_RollEjection") < at("param_NearlyEndPaperSensor") &&
              at("param_NearlyEndPaperSensor") < at("param_EndPaperSensor") && at("param_EndPaperSensor") < at("param_CutType"));
  EXPECT_NE(run.out.find("    102  paper out, or nearly out\n"), std::string::npos);
  EXPECT_EQ(run.out.find("even with an empty value"), std::string::npos);  // only ticket printers say so
  EXPECT_NE(Posprint({"models", "STB80"}).out.find("even with an empty value"), std::string::npos);
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

}  // namespace
}  // namespace posprint::test
