// posprint --help and each subcommand's --help (or -h): exit 0, and name every subcommand
// and every option with what it is for.
#include <gtest/gtest.h>

#include "host/host_helpers.h"

namespace posprint::test {
namespace {

struct HelpCase {
  std::vector<std::string> args;
  std::vector<std::string> mentions;  // each must appear in the help text
};

TEST(Help, EverySubcommandAndOptionIsListed) {
  const HelpCase cases[] = {
      {{"--help"}, {"run", "models", "emulate", "SUBCOMMAND --help", "docs/README.md"}},
      {{"run", "--help"},
       {"--model MODEL", "--port PORT", "--preview FILE.png", "--param KEY=VALUE", "--params FILE", "--logo-dir DIR", "--json",
        "JOB.xml ...", "posprint models", "progress line", "Exit status", "0 every", "1 at least one", "2 nothing ran"}},
      {{"models", "--help"}, {"MODEL", "--json", "--markdown", "Exit status", "docs/models.md"}},
      {{"emulate", "--help"}, {"--model", "--listen", "--state", "--preview-dir", "--dots-per-mm"}},
      {{"-h"}, {"Usage: posprint", "emulate"}},
      {{"run", "-h"}, {"Usage: posprint run", "--logo-dir DIR"}},
      {{"emulate", "-h"}, {"--listen"}},
  };
  for (const HelpCase& c : cases) {
    SCOPED_TRACE(c.args[0] + " " + c.args.back());
    const ProgramRun run = Posprint(c.args);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    for (const std::string& mention : c.mentions) EXPECT_NE(run.out.find(mention), std::string::npos) << mention;
  }
}

}  // namespace
}  // namespace posprint::test
