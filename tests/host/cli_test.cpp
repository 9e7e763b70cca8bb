// posprint run refuses what it cannot run, before touching the printer: exit status 2,
// a message on stderr naming the problem, nothing on stdout, and the port never opened.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/host_helpers.h"

namespace posprint::test {
namespace {

struct Refusal {
  const char* name;
  std::vector<std::string> args;  // after "run --model TMT70 --port file:@DIR/out.bin" unless they start with "-"
  const char* message;            // a piece of stderr that names the problem
  const char* plugin = nullptr;   // a plug-in file in @DIR instead of the built one
};

TEST(Refusals, NothingRunsAndTheProblemIsNamed) {
  TempDir dir;
  const std::string job = dir.Write("job.xml", Job(Command("INIT_PRINTER") + Command("STOP_PRINTER")));
  dir.Write("broken.xml", "<Job><Command name=\"INIT_PRINTER\"></Job>");
  dir.Write("stray.xml", Job(Command("INIT_PRINTER") + "<Cmd name=\"CHECK\"/>"));
  dir.Write("nameless.xml", Job(Command("INIT_PRINTER") + "<Command Name=\"CHECK\"/>"));
  dir.Write("no-equals.params", "# sensors\nparam_EndPaperSensor=FALSE\nparam_CutType val_Partial\n");
  dir.Write("no-key.params", "\n  = TRUE\n");
  std::filesystem::create_directory(dir.Path() + "/folder.xml");
  const std::string p = "file:" + dir.Path() + "/out.bin", d = dir.Path() + "/";
  const Refusal cases[] = {
      {"no subcommand", {"-"}, "subcommand"},
      {"unknown subcommand", {"-", "print"}, "print"},
      {"no model", {"-", "run", "--port", p, job}, "--model"},
      {"unknown model", {"-", "run", "--model", "TMT71", "--port", p, job}, "unknown model \"TMT71\""},
      {"models: unknown model, and the list", {"-", "models", "TM88"}, "TMT70 (KpTMT70, create_KpTMT70)"},
      {"no job", {"-", "run", "--model", "TMT70", "--port", p}, "job"},
      {"unknown option", {"--speed", "9600", job}, "--speed"},
      {"param without =", {"--param", "param_CutType", job}, "param_CutType"},
      {"param with empty key", {"--param", "=TRUE", job}, "=TRUE"},
      {"logo dir missing", {"--logo-dir", d + "nope", job}, "nope"},
      {"missing job file", {d + "none.xml"}, "none.xml: cannot open"},
      {"a missing second job file", {job, d + "missing.xml"}, "missing.xml: cannot open"},
      {"job is a directory", {d + "folder.xml"}, "folder.xml: is a directory"},
      {"malformed job", {d + "broken.xml"}, "broken.xml: "},
      {"other element", {d + "stray.xml"}, "element 2 <Cmd>"},
      {"no name attribute", {d + "nameless.xml"}, "element 2 <Command>: the attribute name is missing"},
      {"missing params file", {"--params", d + "none.params", job}, "none.params: cannot open"},
      {"params is a directory", {"--params", dir.Path(), job}, "is a directory"},
      {"params line without =", {"--params", d + "no-equals.params", job}, "no-equals.params:3: expected KEY=VALUE"},
      {"params empty key", {"--params", d + "no-key.params", job}, "no-key.params:2: the key before '=' is empty"},
      {"plug-in that cannot be loaded", {job}, "none.so", "none.so"},
  };
  for (const Refusal& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::string> args = {"run", "--model", "TMT70", "--port", p};
    if (c.args[0] == "-") args.clear();
    args.insert(args.end(), c.args.begin() + (c.args[0] == "-"), c.args.end());
    std::vector<std::pair<std::string, std::string>> environment;
    if (c.plugin) environment.push_back({"POSPRINT_PLUGIN", d + c.plugin});  // a later entry wins
    const ProgramRun run = Posprint(args, environment);
    EXPECT_EQ(run.status, 2) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
    EXPECT_FALSE(std::filesystem::exists(dir.Path() + "/out.bin")) << "a command ran";
  }
}

}  // namespace
}  // namespace posprint::test
