// posprint run on a TMT70 whose port is a file: what reaches the driver and what the host reports.
// Several job files run in turn on one driver, configured once, their commands passed as written.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/host_helpers.h"
#include "support/bytes.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

// ESC t 0 (PC437), ESC @, GS b: what the TMT70 sends when its port opens.
const std::string kOpen = "1B 74 00 1B 40 1D 62";

std::string Ok(const std::string& command, int job = 0) {
  return (job ? "{\"job\":" + std::to_string(job) + "," : "{") + R"("command":")" + command + R"(","ok":true,"errors":[]})";
}

class RunJob : public ::testing::Test {
 protected:
  // The TMT70 (by another name, in other case) on out.bin, `extra`, the jobs as 1.xml, 2.xml...
  std::vector<std::string> Args(const std::vector<std::string>& jobs, std::vector<std::string> extra = {}) const {
    std::vector<std::string> args = {"run", "--model", "create_kpTMT70", "--port", "file:" + dir.Path() + "/out.bin"};
    args.insert(args.end(), extra.begin(), extra.end());
    for (std::size_t i = 0; i < jobs.size(); ++i) args.push_back(dir.Write(std::to_string(i + 1) + ".xml", jobs[i]));
    return args;
  }
  ProgramRun Run(const std::string& job, std::vector<std::string> extra = {}) { return Posprint(Args({job}, extra)); }
  std::string Sent() const { return ToHex(dir.Read("out.bin")); }

  TempDir dir;
};

struct Case {  // the jobs' content, options; exit status, stdout lines, what reached the printer
  const char* name; std::vector<std::string> jobs, extra; int status; std::vector<std::string> lines; std::string bytes;
};

TEST_F(RunJob, ResultLinesAndBytes) {
  const std::string feed = Command("NEWPRINT", "<LINEFEED Value=\"1\"/>");
  const std::string bad = Job(Command("INIT_PRINTER") + Command("CHECK"));  // a file never answers: 101
  const Case cases[] = {
      {"a line for every command, in order, also after a failure",
       {Job(Command("CHECK") + Command("INIT_PRINTER") + Command("") + Command("check") +
            Command("newprint", "<FOOTER/>") + Command("Make_Coffee") + Command("ZEBRA_NEWPRINT") + Command("STOP_PRINTER"))},
       {"--json"}, 1,
       {R"({"command":"CHECK","ok":false,"errors":[3,1]})", Ok("INIT_PRINTER"), Ok(""),
        R"({"command":"check","ok":false,"errors":[101]})", Ok("newprint"), Ok("Make_Coffee"), Ok("ZEBRA_NEWPRINT"),
        Ok("STOP_PRINTER")},
       kOpen + " 10 04 02"},
      {"human lines, labels padded to the longest",
       {Job(Command("INIT_PRINTER") + Command("NEWPRINT", "<LINEFEED Value=\"2\"/>") + Command("") + Command("CHECK"))},
       {}, 1,
       {"INIT_PRINTER      ok", "NEWPRINT LINEFEED ok", "\"\"                ok", "CHECK             FAILED  errors 101"},
       kOpen + " 0D 0A 0D 0A 10 04 02"},
      {"no commands: nothing opened", {"<Job><!-- nothing to do yet --></Job>"}, {"--json"}, 0, {}, ""},
      {"names escaped in JSON", {Job(Command("say &quot;hi&quot;\\&#9;now"))}, {"--json"}, 0,
       {"{\"command\":\"say \\\"hi\\\"\\\\\\tnow\",\"ok\":true,\"errors\":[]}"}, ""},
      {"the job node is the first child element: one feed; no child prints nothing",
       {Job(Command("INIT_PRINTER") + Command("NEWPRINT", "text<LINEFEED Value=\"1\"/><LINEFEED Value=\"3\"/>") +
            Command("NEWPRINT"))},
       {"--json"}, 0, {Ok("INIT_PRINTER"), Ok("NEWPRINT"), Ok("NEWPRINT")}, kOpen + " 0D 0A"},
      {"two files: one open, the second INIT_PRINTER sends nothing",
       {Job(Command("INIT_PRINTER") + feed), Job(Command("INIT_PRINTER") + feed + Command("STOP_PRINTER"))},
       {"--json"}, 0,
       {Ok("INIT_PRINTER", 1), Ok("NEWPRINT", 1), Ok("INIT_PRINTER", 2), Ok("NEWPRINT", 2), Ok("STOP_PRINTER", 2)},
       kOpen + " 0D 0A 0D 0A"},
      {"a STOP_PRINTER closes the port for the next file",
       {Job(Command("INIT_PRINTER") + Command("STOP_PRINTER")), Job(feed + Command("INIT_PRINTER") + feed)},
       {"--json"}, 1,
       {Ok("INIT_PRINTER", 1), Ok("STOP_PRINTER", 1), R"({"job":2,"command":"NEWPRINT","ok":false,"errors":[3]})",
        Ok("INIT_PRINTER", 2), Ok("NEWPRINT", 2)},
       kOpen + " 0D 0A"},  // the second open starts the file afresh
      {"the first file fails, the later one still runs", {bad, Job(Command("INIT_PRINTER") + Command("START_PRINT"))},
       {"--json"}, 1,
       {Ok("INIT_PRINTER", 1), R"({"job":1,"command":"CHECK","ok":false,"errors":[101]})", Ok("INIT_PRINTER", 2),
        Ok("START_PRINT", 2)},
       kOpen + " 10 04 02"},
      {"human lines name each job and line up across them",
       {Job(Command("INIT_PRINTER")), Job(Command("NEWPRINT", "<SINGLEFIELD><Field>x</Field></SINGLEFIELD>"))}, {}, 0,
       {"job 1 of 2: " + dir.Path() + "/1.xml", "INIT_PRINTER         ok", "job 2 of 2: " + dir.Path() + "/2.xml",
        "NEWPRINT SINGLEFIELD ok"},
       kOpen + " 1B 7B 00 1B 21 00 " + ToHex(std::string(20, ' ') + "x\r\n")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::filesystem::remove(dir.Path() + "/out.bin");
    const ProgramRun run = Posprint(Args(c.jobs, c.extra));
    EXPECT_EQ(run.status, c.status) << run.err;
    EXPECT_EQ(Lines(run.out), c.lines);
    EXPECT_EQ(Sent(), c.bytes);
    EXPECT_TRUE(c.status != 0 || run.err.empty()) << "no progress line when stderr is not a terminal: " << run.err;
  }
}

// What the TMT70's end of print sends shows which configuration the driver received:
// param_RollEjection=FALSE drops the eight line feeds, param_CutType=val_Partial (as
// written) adds the cut.
TEST_F(RunJob, ParametersFromFileAndCommandLine) {
  struct Params { const char* name; const char* file; std::vector<std::string> params; bool feeds, cut; };
  const Params cases[] = {
      {"defaults", nullptr, {}, true, false},
      {"file", "param_CutType=val_Partial\n", {}, true, true},
      {"comments, blanks, CR LF",
       "# receipt printer\r\n\r\n  param_RollEjection = FALSE   # no feed\r\n param_CutType=val_Partial\r\n", {}, false, true},
      {"file repeats a key: last wins", "param_CutType=val_Partial\nparam_CutType=val_Full\n", {}, true, false},
      {"--param after the file wins", "param_CutType=val_Partial\n", {"param_CutType=none"}, true, false},
      {"--param repeated: last wins", nullptr, {"param_CutType=none", "param_CutType=val_Partial"}, true, true},
      {"--param keeps blanks", nullptr, {"param_CutType= val_Partial"}, true, false},
      {"keys are compared as written", nullptr, {"PARAM_CUTTYPE=val_Partial"}, true, false},
  };
  for (const Params& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::string> extra;
    if (c.file) extra = {"--params", dir.Write("printer.params", c.file)};
    for (const std::string& param : c.params) extra.insert(extra.end(), {"--param", param});
    const ProgramRun run = Run(Job(Command("INIT_PRINTER") + Command("STOP_PRINT")), extra);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Sent(), kOpen + (c.feeds ? " 0A 0A 0A 0A 0A 0A 0A 0A" : "") + (c.cut ? " 1D 56 01" : ""));
  }
}

TEST_F(RunJob, LogoFolderIsTheLogoDirOrTheJobsDirectory) {
  std::filesystem::create_directory(dir.Path() + "/logos");
  std::filesystem::copy_file(std::string(POSPRINT_SOURCE_DIR) + "/examples/logo.bmp", dir.Path() + "/logos/shop.bmp");
  const std::string job = Job(Command("INIT_PRINTER") + Command("NEWPRINT", "<LOGO FileName=\"shop.bmp\"/>"));
  ProgramRun run = Run(job, {"--json"});  // the job's directory has no shop.bmp
  EXPECT_EQ(Lines(run.out).at(1), R"({"command":"NEWPRINT","ok":false,"errors":[10]})");
  EXPECT_EQ(Run(job, {"--json", "--logo-dir", dir.Path() + "/logos"}).out, Ok("INIT_PRINTER") + "\n" + Ok("NEWPRINT") + "\n");
  std::filesystem::copy_file(dir.Path() + "/logos/shop.bmp", dir.Path() + "/shop.bmp");
  EXPECT_EQ(Run(job, {"--json"}).status, 0);
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

// posprint with its stderr on a terminal (a PtyPrinter's line); what it drew there.
std::string OnTerminal(const std::vector<std::string>& args, int* status) {
  PtyPrinter terminal;
  const std::string to = ">" + terminal.PortName();  // END marks that posprint has exited
  std::vector<std::string> shell = {"-c", "\"$0\" \"$@\" 2" + to + "; s=$?; printf END " + to + "; exit $s",
                                    POSPRINT_HOST_PATH};
  shell.insert(shell.end(), args.begin(), args.end());
  *status = RunProgram("/bin/sh", shell, {{"POSPRINT_PLUGIN", POSPRINT_PLUGIN_PATH}}).status;
  for (int i = 0; i < 500 && !EndsWith(terminal.Received(), "END"); ++i)
    terminal.WaitForBytes(terminal.Received().size() + 1, 20);
  const std::string seen = terminal.Received();
  return EndsWith(seen, "END") ? seen.substr(0, seen.size() - 3) : seen + " (no END)";
}

TEST_F(RunJob, ProgressLineOnATerminalWipedAtTheEndAndQuietWithJson) {
  const std::vector<std::string> jobs = {Job(Command("INIT_PRINTER") + Command("CHECK")),
                                         Job(Command("NEWPRINT", "<LINEFEED Value=\"1\"/>") + Command("STOP_PRINTER"))};
  int status = -1;
  const std::string terminal = OnTerminal(Args(jobs), &status);
  EXPECT_EQ(status, 1) << terminal;
  // Drawn in place: CR, erase line, the text. 7 bytes of the open, then 3 of the status
  // question; CHECK on a file reports 101.
  EXPECT_NE(terminal.find("\r\033[Kjob 1 of 2 (1.xml): command 2 of 2 CHECK, 10 bytes sent, last status 101"),
            std::string::npos) << terminal;
  EXPECT_NE(terminal.find("job 2 of 2 (2.xml): command 2 of 2 STOP_PRINTER, 12 bytes sent, last status 101"),
            std::string::npos) << terminal;
  EXPECT_TRUE(EndsWith(terminal, "\r\033[K")) << "the terminal is left with an empty line";
  EXPECT_EQ(OnTerminal(Args(jobs, {"--json"}), &status), "") << "--json draws no progress";
  EXPECT_EQ(status, 1);
}

}  // namespace
}  // namespace posprint::test
