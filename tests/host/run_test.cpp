// posprint run on a TMT70 whose port is a file: what reaches the driver (names, nodes,
// parameters, logo folder) and what the host reports for each command.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/host_helpers.h"
#include "support/bytes.h"

namespace posprint::test {
namespace {

// ESC t 0 (PC437), ESC @, GS b: what the TMT70 sends when its port opens.
const char* const kOpenBytes = "1B 74 00 1B 40 1D 62";

class RunJob : public ::testing::Test {
 protected:
  ProgramRun Run(const std::string& job, std::vector<std::string> extra = {}) {
    std::vector<std::string> args = {"run", "--model", "TMT70", "--port", "file:" + dir.Path() + "/out.bin"};
    args.insert(args.end(), extra.begin(), extra.end());
    args.push_back(dir.Write("job.xml", job));
    return Posprint(args);
  }
  std::string Sent() const { return ToHex(dir.Read("out.bin")); }

  TempDir dir;
};

TEST_F(RunJob, JsonLineForEveryCommandInOrderEvenAfterAFailure) {
  const ProgramRun run = Run(Job(Command("CHECK") + Command("INIT_PRINTER") + Command("") + Command("check") +
                                 Command("newprint", "<FOOTER/>") + Command("Make_Coffee") +
                                 Command("ZEBRA_NEWPRINT") + Command("STOP_PRINTER")),
                             {"--json"});
  EXPECT_EQ(run.status, 1) << run.err;
  const std::vector<std::string> expected = {
      R"({"command":"CHECK","ok":false,"errors":[3,1]})",
      R"({"command":"INIT_PRINTER","ok":true,"errors":[]})",
      R"({"command":"","ok":true,"errors":[]})",
      // A file never answers the status query: 101, no answer.
      R"({"command":"check","ok":false,"errors":[101]})",
      R"({"command":"newprint","ok":true,"errors":[]})",
      R"({"command":"Make_Coffee","ok":true,"errors":[]})",
      R"({"command":"ZEBRA_NEWPRINT","ok":true,"errors":[]})",
      R"({"command":"STOP_PRINTER","ok":true,"errors":[]})",
  };
  EXPECT_EQ(Lines(run.out), expected);
}

TEST_F(RunJob, HumanLinesAndExitZeroWhenEverythingSucceeds) {
  const ProgramRun run =
      Run(Job(Command("INIT_PRINTER") + Command("START_PRINT") + Command("NEWPRINT", "<LINEFEED Value=\"2\"/>") +
              Command("") + Command("STOP_PRINTER")));
  EXPECT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> expected = {
      // Labels are padded to the longest one of the job.
      "INIT_PRINTER      ok",
      "START_PRINT       ok",
      "NEWPRINT LINEFEED ok",
      "\"\"                ok",
      "STOP_PRINTER      ok",
  };
  EXPECT_EQ(Lines(run.out), expected);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(Sent(), std::string(kOpenBytes) + " 0D 0A 0D 0A");
}

TEST_F(RunJob, JobWithoutCommandsSucceedsAndOpensNothing) {
  const ProgramRun run = Run("<Job><!-- nothing to do yet --></Job>", {"--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_FALSE(std::filesystem::exists(dir.Path() + "/out.bin"));
}

TEST_F(RunJob, HumanLineOfAFailureListsTheErrors) {
  const ProgramRun run = Run(Job(Command("CHECK")));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "CHECK            FAILED  errors 3, 1\n");
}

TEST_F(RunJob, CommandNamesAreEscapedInJson) {
  const ProgramRun run = Run(Job(Command("say &quot;hi&quot;\\&#9;now")), {"--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "{\"command\":\"say \\\"hi\\\"\\\\\\tnow\",\"ok\":true,\"errors\":[]}\n");
}

TEST_F(RunJob, ModelByAnyOfItsNamesInAnyCase) {
  for (const char* model : {"tmt70", "KPTMT70", "create_kptmt70", "Create_KpTMT70"}) {
    SCOPED_TRACE(model);
    const ProgramRun run = Posprint({"run", "--model", model, "--port", "file:" + dir.Path() + "/out.bin",
                                     dir.Write("job.xml", Job(Command("INIT_PRINTER")))});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Sent(), kOpenBytes);
  }
}

TEST_F(RunJob, JobNodeIsTheFirstChildElement) {
  const ProgramRun run =
      Run(Job(Command("INIT_PRINTER") + Command("NEWPRINT", "leading text<LINEFEED Value=\"1\"/><LINEFEED Value=\"3\"/>") +
              Command("NEWPRINT")));
  EXPECT_EQ(run.status, 0) << run.err;
  // One terminator: the second LINEFEED is not the job node; a NEWPRINT without a child
  // is an empty node, which prints nothing.
  EXPECT_EQ(Sent(), std::string(kOpenBytes) + " 0D 0A");
  EXPECT_EQ(Lines(run.out).at(2), "NEWPRINT          ok");
}

// What the TMT70's end of print sends shows which configuration the driver received:
// param_RollEjection=FALSE drops the eight line feeds, param_CutType=val_Partial (as
// written) adds the cut.
struct ParameterCase {
  const char* name;
  const char* file;                 // content of the parameter file; null: no --params
  std::vector<std::string> params;  // --param arguments
  const char* endOfPrint;           // bytes of STOP_PRINT
};

TEST_F(RunJob, ParametersFromFileAndCommandLine) {
  const std::string feeds = "0A 0A 0A 0A 0A 0A 0A 0A";
  const ParameterCase cases[] = {
      {"defaults", nullptr, {}, "0A 0A 0A 0A 0A 0A 0A 0A"},
      {"file", "param_CutType=val_Partial\n", {}, "0A 0A 0A 0A 0A 0A 0A 0A 1D 56 01"},
      {"comments, blanks, CR LF",
       "# receipt printer\r\n\r\n  param_RollEjection = FALSE   # no feed\r\n param_CutType=val_Partial\r\n",
       {},
       "1D 56 01"},
      {"file repeats a key: last wins", "param_CutType=val_Partial\nparam_CutType=val_Full\n", {}, feeds.c_str()},
      {"--param after the file wins", "param_CutType=val_Partial\n", {"param_CutType=none"}, feeds.c_str()},
      {"--param repeated: last wins", nullptr, {"param_CutType=none", "param_CutType=val_Partial"},
       "0A 0A 0A 0A 0A 0A 0A 0A 1D 56 01"},
      {"values as written", nullptr, {"param_CutType=VAL_PARTIAL"}, feeds.c_str()},
      {"--param keeps blanks", nullptr, {"param_CutType= val_Partial"}, feeds.c_str()},
      {"= inside a value", nullptr, {"param_CutType=val_Partial=1"}, feeds.c_str()},
      {"keys are compared as written", nullptr, {"PARAM_CUTTYPE=val_Partial"}, feeds.c_str()},
  };
  for (const ParameterCase& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::string> extra;
    if (c.file) extra = {"--params", dir.Write("printer.params", c.file)};
    for (const std::string& param : c.params) {
      extra.push_back("--param");
      extra.push_back(param);
    }
    const ProgramRun run = Run(Job(Command("INIT_PRINTER") + Command("STOP_PRINT")), extra);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Sent(), std::string(kOpenBytes) + " " + c.endOfPrint);
  }
}

TEST_F(RunJob, LogoFolderIsTheLogoDirOrTheJobsDirectory) {
  std::filesystem::create_directory(dir.Path() + "/logos");
  std::filesystem::copy_file(std::string(POSPRINT_SOURCE_DIR) + "/examples/logo.bmp", dir.Path() + "/logos/shop.bmp");
  const std::string job = Job(Command("INIT_PRINTER") + Command("NEWPRINT", "<LOGO FileName=\"shop.bmp\"/>"));

  ProgramRun run = Run(job, {"--json"});  // the job's directory has no shop.bmp
  EXPECT_EQ(Lines(run.out).at(1), R"({"command":"NEWPRINT","ok":false,"errors":[10]})");
  EXPECT_EQ(run.status, 1);

  run = Run(job, {"--json", "--logo-dir", dir.Path() + "/logos"});
  EXPECT_EQ(Lines(run.out).at(1), R"({"command":"NEWPRINT","ok":true,"errors":[]})");
  EXPECT_EQ(run.status, 0) << run.err;

  std::filesystem::copy_file(dir.Path() + "/logos/shop.bmp", dir.Path() + "/shop.bmp");
  run = Run(job, {"--json"});
  EXPECT_EQ(Lines(run.out).at(1), R"({"command":"NEWPRINT","ok":true,"errors":[]})");
}

TEST_F(RunJob, CharactersOutsideTheCodePageArePrintedAsQuestionMarksWithAWarning) {
  const std::string job =
      Job(Command("INIT_PRINTER") + Command("NEWPRINT", "<SINGLEFIELD><Field>Łódź 5€ Ł</Field></SINGLEFIELD>"));
  ProgramRun run = Run(job, {"--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Lines(run.out).at(1),
            R"({"command":"NEWPRINT","ok":true,"errors":[],"warnings":[)"
            R"({"character":"Ł","codepoint":"U+0141"},{"character":"ź","codepoint":"U+017A"},)"
            R"({"character":"€","codepoint":"U+20AC"}]})");
  EXPECT_NE(run.err.find("\"Ł\" U+0141 \"ź\" U+017A \"€\" U+20AC"), std::string::npos) << run.err;
  // ó is in code page 437 (A2); the others went out as '?'.
  EXPECT_NE(dir.Read("out.bin").find("?\xA2" "d? 5? ?"), std::string::npos) << Sent();

  run = Run(job);
  EXPECT_EQ(Lines(run.out).at(1), "NEWPRINT SINGLEFIELD ok");
  EXPECT_NE(run.err.find("warning: NEWPRINT SINGLEFIELD"), std::string::npos) << run.err;
}

}  // namespace
}  // namespace posprint::test
