// posprint run: loads the driver plug-in, makes the model's driver through its factory
// export, configures it once, and sends it the commands of each job file in turn, one by
// one, in document order, whatever the earlier ones returned. Several job files are
// several tickets on the same driver: its port stays as the commands leave it (a second
// INIT_PRINTER on an open driver does nothing; a STOP_PRINTER closes the port for the
// next file's INIT_PRINTER to open again).
//
// Everything that can be wrong before the printer is touched (the command line, the
// model, every job file, the parameters, the plug-in) is checked first: then exit status
// 2, a message on stderr, and no command runs.
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "job_file.h"
#include "job_runner.h"
#include "model_names.h"
#include "parameter_input.h"
#include "platform/aprinter.h"
#include "platform/logo_files.h"
#include "platform/parameters.h"
#include "plugin.h"
#include "progress.h"
#include "report.h"
#include "subcommand.h"
#include "virtual_printer_hooks.h"

namespace posprint::host {
namespace {

struct RunOptions {
  std::string model;
  std::string port;
  std::vector<std::string> params;  // KEY=VALUE, in command-line order
  std::string paramsFile;
  std::string logoDir;              // empty: the job file's directory
  std::string preview;              // PNG of what the virtual printer printed; empty: none
  bool json = false;
  std::vector<std::string> jobs;  // run in this order
};

// A job file, loaded before anything runs; its commands' nodes live in its parser.
struct LoadedJob {
  std::string path;
  std::unique_ptr<Nx_XMLParser> parser;
  std::vector<JobCommand> commands;
};

bool IsDirectory(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

int Refuse(const std::string& message) {
  std::fprintf(stderr, "posprint run: %s\n", message.c_str());
  return kExitUsage;
}

// The file's pairs first, then the --param pairs: a later pair for the same key wins.
bool CollectParameters(const RunOptions& options, std::vector<ParameterPair>& pairs, std::string* error) {
  if (!options.paramsFile.empty() && !ReadParameterFile(options.paramsFile, pairs, error)) return false;
  for (const std::string& argument : options.params) {
    ParameterPair pair;
    if (!ParseParameterArgument(argument, pair, error)) return false;
    pairs.push_back(std::move(pair));
  }
  return true;
}

Nx_Smartp<IParameterCollection> MakeCollection(const std::vector<ParameterPair>& pairs) {
  auto* collection = new ParameterCollection();
  Nx_Smartp<IParameterCollection> owner(collection);
  for (const ParameterPair& pair : pairs)
    collection->Set(Nx_Stringa::FromUtf8(pair.first), Nx_Stringa::FromUtf8(pair.second));
  return owner;
}

// Without --logo-dir, logos are looked for beside the job file: a job and its logos
// usually travel together.
std::string DefaultLogoDirectory(const std::string& jobPath) {
  const std::size_t slash = jobPath.rfind('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return jobPath.substr(0, slash);
}

bool LoadJobs(const std::vector<std::string>& paths, std::vector<LoadedJob>& jobs, std::string* error) {
  for (const std::string& path : paths) {
    LoadedJob job{path, std::make_unique<Nx_XMLParser>(), {}};
    if (!LoadJob(*job.parser, path, job.commands, error)) return false;
    jobs.push_back(std::move(job));
  }
  return true;
}

// "NEWPRINT LOGO": how the results name a command.
std::string CommandLabel(const LoadedJob& job, const JobCommand& command) {
  CommandResult shape;
  shape.name = command.name;
  shape.element = job.parser->GetName(command.node).ToUtf8();
  return Label(shape);
}

// One label width for every job, so that the results line up across tickets.
std::size_t LabelWidth(const std::vector<LoadedJob>& jobs) {
  std::size_t width = 16;
  for (const LoadedJob& job : jobs) {
    for (const JobCommand& command : job.commands) width = std::max(width, DisplayWidth(CommandLabel(job, command)));
  }
  return width;
}

int Run(const RunOptions& options) {
  const ModelIdentity* identity = FindModel(options.model);
  if (!identity)
    return Refuse("unknown model \"" + options.model + "\"; the models are (model, component, factory):\n" +
                  DescribeModels());

  if (!options.logoDir.empty() && !IsDirectory(options.logoDir))
    return Refuse("--logo-dir " + options.logoDir + ": not a directory");

  std::string error;
  std::vector<LoadedJob> jobs;
  if (!LoadJobs(options.jobs, jobs, &error)) return Refuse(error);

  std::vector<ParameterPair> pairs;
  if (!CollectParameters(options, pairs, &error)) return Refuse(error);

  std::string portName = options.port;
  if (!PrepareVirtualPrinter(*identity, pairs, options.preview, &portName, &error)) return Refuse(error);

  DriverPlugin plugin;  // declared before the driver: the driver goes first
  if (!plugin.Load(FindPluginPath(), &error)) return Refuse(error);
  std::unique_ptr<APrinter> driver = plugin.Create(identity->factory, &error);
  if (!driver) return Refuse(error);

  driver->ClearErrors();
  driver->Configure(MakeCollection(pairs));
  for (int code : driver->RecordedErrors())
    std::fprintf(stderr, "posprint run: warning: configuring the driver recorded error %d\n", code);

  const Nx_Stringa port = Nx_Stringa::FromUtf8(portName);
  Reporter reporter(stdout, stderr, options.json, LabelWidth(jobs));
  Progress progress(stderr, ProgressWanted(options.json), jobs.size());
  bool allOk = true;
  for (std::size_t i = 0; i < jobs.size(); ++i) {
    const LoadedJob& job = jobs[i];
    SetLogoDirectory(options.logoDir.empty() ? DefaultLogoDirectory(job.path) : options.logoDir);
    progress.Clear();
    reporter.StartJob(i + 1, jobs.size(), job.path);
    progress.StartJob(i + 1, job.path, job.commands.size());
    for (std::size_t n = 0; n < job.commands.size(); ++n) {
      const JobCommand& command = job.commands[n];
      progress.Running(n + 1, CommandLabel(job, command));
      const CommandResult result = RunCommand(*driver, *job.parser, command, port);
      progress.Clear();
      reporter.Report(result);
      progress.Done(result);
      allOk = allOk && result.ok;
    }
  }
  progress.Clear();
  driver.reset();
  if (!FinishVirtualPrinter(portName, options.preview, stderr)) return kExitFailed;
  return allOk ? kExitOk : kExitFailed;
}

}  // namespace

Subcommand AddRunCommand(CLI::App& parent) {
  auto options = std::make_shared<RunOptions>();
  CLI::App* run = parent.add_subcommand(
      "run", "Run print jobs (XML files of commands) on one printer, one after the other on the same driver");
  run->add_option("--model", options->model,
                  "Printer model: model name (TMT70), component name (KpTMT70) or factory (create_KpTMT70), "
                  "any case; `posprint models` lists them")
      ->required()
      ->type_name("MODEL");
  run->add_option("--port", options->port,
                  "Port the printer is on: /dev/ttyUSB0, /dev/ttyS0@9600, tcp:HOST:PORT, file:PATH; "
                  "sim: or sim:STATE (or no --port) for the virtual printer")
      ->type_name("PORT");
  run->add_option("--preview", options->preview, "Write what the virtual printer printed to this PNG file")
      ->type_name("FILE.png");
  run->add_option("--param", options->params,
                  "One configuration value (repeatable; overrides --params); `posprint models MODEL` lists the keys")
      ->allow_extra_args(false)
      ->type_name("KEY=VALUE");
  run->add_option("--params", options->paramsFile, "File of KEY=VALUE lines ('#' starts a comment)")
      ->type_name("FILE");
  run->add_option("--logo-dir", options->logoDir,
                  "Directory standing for the terminal's logo folder (default: each job file's directory)")
      ->type_name("DIR");
  run->add_flag("--json", options->json,
                "One JSON object a command on stdout (with several job files each begins with \"job\":N); "
                "no progress line");
  run->add_option("jobs", options->jobs,
                  "The job files, each a ticket, run in turn on the same driver, configured once; while they "
                  "run, stderr shows a progress line when it is a terminal")
      ->required()
      ->type_name("JOB.xml");
  run->footer(
      "Every command of every job runs, in order, whatever the earlier ones returned. Exit status: 0 every "
      "command succeeded; 1 at least one failed; 2 nothing ran (a usage mistake, an unknown model, a job or "
      "parameter file that cannot be read, a plug-in that cannot be loaded). See docs/host.md.");
  return {run, [options] { return Run(*options); }};
}

}  // namespace posprint::host
