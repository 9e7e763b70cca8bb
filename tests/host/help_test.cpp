// posprint --help and each subcommand's --help: exit 0, and name every subcommand and
// every option with what it is for.
#include <gtest/gtest.h>

#include "host/host_helpers.h"

namespace posprint::test {
namespace {

struct HelpCase {
  const char* name;
  std::vector<std::string> args;
  std::vector<std::string> mentions;  // each must appear in the help text
};

TEST(Help, EverySubcommandAndOptionIsListed) {
  const HelpCase cases[] = {
      {"posprint", {"--help"}, {"run", "models", "emulate", "SUBCOMMAND --help", "docs/README.md"}},
      {"posprint run",
       {"run", "--help"},
       {"--model MODEL", "--port PORT", "--preview FILE.png", "--param KEY=VALUE", "--params FILE", "--logo-dir DIR", "--json",
        "JOB.xml ...", "posprint models", "progress line", "Exit status", "0 every", "1 at least one", "2 nothing ran"}},
      {"posprint models", {"models", "--help"}, {"MODEL", "--json", "--markdown", "Exit status", "docs/models.md"}},
      {"posprint emulate",
       {"emulate", "--help"},
       {"--model", "--listen", "--state", "--preview-dir", "--dots-per-mm"}},
  };
  for (const HelpCase& c : cases) {
    SCOPED_TRACE(c.name);
    const ProgramRun run = Posprint(c.args);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    for (const std::string& mention : c.mentions) EXPECT_NE(run.out.find(mention), std::string::npos) << mention;
  }
}

// A short -h is the same as --help, for every subcommand.
TEST(Help, ShortFlag) {
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"-h"}, std::vector<std::string>{"run", "-h"}, std::vector<std::string>{"models", "-h"},
        std::vector<std::string>{"emulate", "-h"}}) {
    const ProgramRun run = Posprint(args);
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("Usage: posprint"), std::string::npos) << run.out;
  }
}

}  // namespace
}  // namespace posprint::test
