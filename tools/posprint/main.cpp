// posprint: the command-line host of the driver plug-in. Each subcommand is its own
// file (run_command.cpp ...); this file only wires them to the command line and turns
// command-line mistakes into exit status 2.
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "subcommand.h"

namespace {

using posprint::host::Subcommand;

// CLI11 would only say that a subcommand is required; name the word it did not know.
bool IsUnknownSubcommand(int argc, char** argv, const std::vector<Subcommand>& subcommands) {
  if (argc < 2 || argv[1][0] == '-') return false;
  std::string known;
  for (const Subcommand& subcommand : subcommands) {
    if (subcommand.app->get_name() == argv[1]) return false;
    known += " " + subcommand.app->get_name();
  }
  std::fprintf(stderr, "posprint: unknown subcommand \"%s\"; the subcommands are:%s\n", argv[1], known.c_str());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace posprint::host;
  // One line a command: a person (or a program) watching a slow printer sees each result
  // as it comes, not when the job is over.
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  // A reader that goes away (posprint run ... | head -1) must not kill the host in the
  // middle of a ticket: the job goes on, only its report is lost.
  std::signal(SIGPIPE, SIG_IGN);

  CLI::App app{"posprint: runs print jobs through the posprint printer drivers", "posprint"};
  app.require_subcommand(1);
  app.footer("`posprint SUBCOMMAND --help` shows a subcommand's options. The manual is docs/README.md.");
  std::vector<Subcommand> subcommands;
  subcommands.push_back(AddRunCommand(app));
  subcommands.push_back(AddModelsCommand(app));
  subcommands.push_back(AddEmulateCommand(app));

  if (IsUnknownSubcommand(argc, argv, subcommands)) return kExitUsage;
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    return app.exit(help);
  } catch (const CLI::CallForAllHelp& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    app.exit(error);  // prints the message and the hint on stderr
    return kExitUsage;
  }
  for (const Subcommand& subcommand : subcommands) {
    if (subcommand.app->parsed()) return subcommand.run();
  }
  return kExitUsage;
}
