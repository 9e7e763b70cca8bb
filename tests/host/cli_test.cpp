// posprint run refuses what it cannot run, before touching the printer: exit status 2,
// a message on stderr naming the problem, nothing on stdout, and the port never opened.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/host_helpers.h"

namespace posprint::test {
namespace {

struct RefusalCase {
  const char* name;
  std::vector<std::string> args;  // "@DIR" is replaced by the test's directory
  const char* stderrNames;        // a piece of the message that names the problem
};

class Refusals : public ::testing::Test {
 protected:
  void SetUp() override {
    job = dir.Write("job.xml", Job(Command("INIT_PRINTER") + Command("STOP_PRINTER")));
    port = "file:" + dir.Path() + "/out.bin";
  }
  std::vector<std::string> Expand(std::vector<std::string> args) const {
    for (std::string& arg : args) {
      const std::size_t at = arg.find("@DIR");
      if (at != std::string::npos) arg.replace(at, 4, dir.Path());
    }
    return args;
  }
  void ExpectRefused(const RefusalCase& c) {
    SCOPED_TRACE(c.name);
    const ProgramRun run = Posprint(Expand(c.args));
    EXPECT_EQ(run.status, 2) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find(c.stderrNames), std::string::npos) << run.err;
    EXPECT_FALSE(std::filesystem::exists(dir.Path() + "/out.bin")) << "a command ran";
  }

  TempDir dir;
  std::string job, port;
};

TEST_F(Refusals, CommandLineMistakes) {
  const std::string p = "file:@DIR/out.bin";
  const RefusalCase cases[] = {
      {"no subcommand", {}, "subcommand"},
      {"unknown subcommand", {"print"}, "print"},
      {"no model", {"run", "--port", p, "@DIR/job.xml"}, "--model"},
      {"no job", {"run", "--model", "TMT70", "--port", p}, "job"},
      {"unknown option", {"run", "--model", "TMT70", "--port", p, "--speed", "9600", "@DIR/job.xml"}, "--speed"},
      {"param without =", {"run", "--model", "TMT70", "--port", p, "--param", "param_CutType", "@DIR/job.xml"},
       "param_CutType"},
      {"param with empty key", {"run", "--model", "TMT70", "--port", p, "--param", "=TRUE", "@DIR/job.xml"},
       "=TRUE"},
      {"logo dir missing", {"run", "--model", "TMT70", "--port", p, "--logo-dir", "@DIR/nope", "@DIR/job.xml"},
       "nope"},
  };
  for (const RefusalCase& c : cases) ExpectRefused(c);
}

TEST_F(Refusals, UnknownModelListsTheModels) {
  const ProgramRun run = Posprint({"run", "--model", "TMT71", "--port", port, job});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("unknown model \"TMT71\""), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("QSeries (KpQ1, create_Q1Driver)"), std::string::npos) << run.err;
  EXPECT_FALSE(std::filesystem::exists(dir.Path() + "/out.bin"));
}

TEST_F(Refusals, BadJobFiles) {
  dir.Write("broken.xml", "<Job><Command name=\"INIT_PRINTER\"></Job>");
  dir.Write("empty.xml", "");
  dir.Write("stray.xml", Job(Command("INIT_PRINTER") + "<Cmd name=\"CHECK\"/>"));
  dir.Write("nameless.xml", Job(Command("INIT_PRINTER") + "<Command Name=\"CHECK\"/>"));
  std::filesystem::create_directory(dir.Path() + "/folder.xml");
  const std::string p = "file:@DIR/out.bin";
  const RefusalCase cases[] = {
      {"missing file", {"run", "--model", "TMT70", "--port", p, "@DIR/none.xml"}, "none.xml: cannot open"},
      {"a directory", {"run", "--model", "TMT70", "--port", p, "@DIR/folder.xml"}, "folder.xml: is a directory"},
      {"malformed", {"run", "--model", "TMT70", "--port", p, "@DIR/broken.xml"}, "broken.xml: "},
      {"no element", {"run", "--model", "TMT70", "--port", p, "@DIR/empty.xml"}, "empty.xml: "},
      {"other element", {"run", "--model", "TMT70", "--port", p, "@DIR/stray.xml"}, "element 2 <Cmd>"},
      {"no name attribute", {"run", "--model", "TMT70", "--port", p, "@DIR/nameless.xml"},
       "element 2 <Command>: the attribute name is missing"},
  };
  for (const RefusalCase& c : cases) ExpectRefused(c);
}

TEST_F(Refusals, BadParameterFiles) {
  dir.Write("no-equals.params", "# sensors\nparam_EndPaperSensor=FALSE\nparam_CutType val_Partial\n");
  dir.Write("no-key.params", "\n  = TRUE\n");
  const std::string p = "file:@DIR/out.bin";
  const RefusalCase cases[] = {
      {"missing file", {"run", "--model", "TMT70", "--port", p, "--params", "@DIR/none.params", "@DIR/job.xml"},
       "none.params: cannot open"},
      {"a directory", {"run", "--model", "TMT70", "--port", p, "--params", "@DIR", "@DIR/job.xml"},
       "is a directory"},
      {"line without =",
       {"run", "--model", "TMT70", "--port", p, "--params", "@DIR/no-equals.params", "@DIR/job.xml"},
       "no-equals.params:3: expected KEY=VALUE"},
      {"empty key", {"run", "--model", "TMT70", "--port", p, "--params", "@DIR/no-key.params", "@DIR/job.xml"},
       "no-key.params:2: the key before '=' is empty"},
  };
  for (const RefusalCase& c : cases) ExpectRefused(c);
}

TEST_F(Refusals, PluginThatCannotBeLoaded) {
  const ProgramRun run =
      Posprint({"run", "--model", "TMT70", "--port", port, job}, {{"POSPRINT_PLUGIN", dir.Path() + "/none.so"}});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find(dir.Path() + "/none.so"), std::string::npos) << run.err;
  EXPECT_FALSE(std::filesystem::exists(dir.Path() + "/out.bin"));
}

}  // namespace
}  // namespace posprint::test
