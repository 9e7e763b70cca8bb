// posprint emulate: a virtual printer that other programs (another posprint, a terminal's
// host) reach over a pseudo-terminal or a TCP port, until it is stopped with Ctrl-C.
#include <sys/stat.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string>

#include "model_names.h"
#include "platform/nx_string.h"
#include "subcommand.h"
#include "virtual_printer_hooks.h"

#ifdef POSPRINT_HAVE_EMULATOR
#include "emulator/virtual_printer.h"
#endif

namespace posprint::host {
namespace {

struct EmulateOptions {
  std::string model;
  std::string listen;
  std::string state = "ready";
  std::string previewDir;
  int dotsPerMm = 8;
};

std::atomic<bool> stopRequested{false};

void RequestStop(int) { stopRequested = true; }

int Refuse(const std::string& message) {
  std::fprintf(stderr, "posprint emulate: %s\n", message.c_str());
  return kExitUsage;
}

#ifdef POSPRINT_HAVE_EMULATOR

int Emulate(const EmulateOptions& options) {
  const ModelIdentity* identity = FindModel(options.model);
  if (!identity) return Refuse("unknown model \"" + options.model + "\"; the models are:\n" + DescribeModels());
  emulator::ListenOptions listen;
  listen.model = Nx_Stringa(identity->modelName).ToUtf8();
  if (!emulator::HasVirtualPrinter(identity->modelName)) return Refuse("no virtual printer plays " + listen.model);
  if (!emulator::ParseState(options.state, &listen.state))
    return Refuse("--state " + options.state + ": the states are " + emulator::StateNames());
  if (options.dotsPerMm != 6 && options.dotsPerMm != 8 && options.dotsPerMm != 12 && options.dotsPerMm != 24)
    return Refuse("--dots-per-mm takes 6, 8, 12 or 24");
  listen.listen = options.listen;
  listen.previewDir = options.previewDir;
  listen.dotsPerMm = options.dotsPerMm;
  if (!options.previewDir.empty()) {
    ::mkdir(options.previewDir.c_str(), 0777);
    struct stat info {};
    if (::stat(options.previewDir.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
      return Refuse("--preview-dir " + options.previewDir + ": not a directory");
  }

  std::signal(SIGINT, RequestStop);
  std::signal(SIGTERM, RequestStop);
  const auto ready = [&](const std::string& port) {
    std::printf("virtual %s printer on %s, %s%s; Ctrl-C stops it\n", listen.model.c_str(), port.c_str(),
                emulator::StateName(listen.state),
                options.previewDir.empty() ? "" : (", previews in " + options.previewDir).c_str());
  };
  const auto log = [](const std::string& line) { std::printf("%s\n", line.c_str()); };
  std::string error;
  if (!emulator::Listen(listen, stopRequested, ready, log, &error)) {
    std::fprintf(stderr, "posprint emulate: %s\n", error.c_str());
    return kExitFailed;
  }
  return kExitOk;
}

#else

int Emulate(const EmulateOptions&) { return Refuse("this posprint was built without the virtual printers"); }

#endif

}  // namespace

Subcommand AddEmulateCommand(CLI::App& parent) {
  auto options = std::make_shared<EmulateOptions>();
  CLI::App* emulate =
      parent.add_subcommand("emulate", "Run a virtual printer on a pseudo-terminal or a TCP port, until Ctrl-C");
  emulate->add_option("--model", options->model, "Printer model to play (TMT70, STB112, ZEBRA ...)")->required();
  emulate->add_option("--listen", options->listen, "pty, pty:LINK (also a symbolic link LINK to it) or tcp:HOST:PORT")
      ->required();
  emulate->add_option("--state", options->state, "ready, near-end, paper-out, cover-open, error or silent");
  emulate->add_option("--preview-dir", options->previewDir, "Write each ticket or label as a PNG file here")
      ->type_name("DIR");
  emulate->add_option("--dots-per-mm", options->dotsPerMm, "Resolution of a label printer: 6, 8, 12 or 24");
  return {emulate, [options] { return Emulate(*options); }};
}

}  // namespace posprint::host
