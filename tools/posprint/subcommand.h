// Each subcommand of posprint lives in its own file and hands main one of these: the
// CLI11 sub-application it registered its options on, and the action that runs it
// once the command line has been parsed.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace posprint::host {

// Exit statuses shared by every subcommand.
enum ExitStatus : int {
  kExitOk = 0,        // every command succeeded
  kExitFailed = 1,    // at least one printer command returned false
  kExitUsage = 2,     // bad command line, unknown model, unreadable job or parameter file
};

struct Subcommand {
  CLI::App* app = nullptr;
  std::function<int()> run;  // the exit status
};

// posprint run: print jobs on one printer.
Subcommand AddRunCommand(CLI::App& parent);
// posprint models: the models and their configuration keys.
Subcommand AddModelsCommand(CLI::App& parent);
// posprint emulate: a virtual printer for other programs.
Subcommand AddEmulateCommand(CLI::App& parent);

}  // namespace posprint::host
