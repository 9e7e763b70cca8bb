// Runs the sample ticket on one model's driver, made by its factory export in the driver
// plug-in, and records what each command returned, the errors it recorded and how many
// writes it made. Outcomes are written as short words so that a whole ticket reads as
// one line: "ok" (true, nothing recorded), "fail" (false, nothing recorded), "6" (false,
// error 6), "3,1" (false, 3 then 1), "ok:102" (true, but 102 recorded).
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "frame/model_identity.h"
#include "platform/aprinter.h"
#include "platform/clock.h"
#include "platform/logo_files.h"
#include "platform/parameters.h"
#include "support/bytes.h"
#include "support/model_printers.h"
#include "support/run_program.h"

namespace posprint::test {

using Factory = APrinter* (*)();

// The factory export of the driver plug-in, or null when the plug-in lacks it (a model
// that has not landed yet). The plug-in stays loaded for the life of the test program.
inline Factory PluginFactory(const char* factory) {
  static void* plugin = dlopen(POSPRINT_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
  return plugin ? reinterpret_cast<Factory>(dlsym(plugin, factory)) : nullptr;
}

inline std::string Narrow(const wchar_t* text) {
  std::string narrow;
  for (; *text; ++text) narrow += static_cast<char>(*text);
  return narrow;
}

// Every model's factory export, and a test's name for one: its model name.
inline std::vector<const char*> FactoryNames() {
  std::vector<const char*> names;
  for (std::size_t i = 0; i < kModelCount; ++i) names.push_back(kModelIdentities[i].factory);
  return names;
}
inline std::string ModelName(const ::testing::TestParamInfo<const char*>& info) {
  return Narrow(FindIdentity(info.param)->modelName);
}

struct CommandOutcome {
  std::string outcome;  // "ok", "fail", "6", "3,1", "ok:102"
  int writes = 0;       // otool_WRITE calls that reached the port
  std::string sent;     // their bytes, as hex, one write a group
};

inline std::string Outcome(bool ok, const std::vector<int>& errors) {
  std::string text = ok ? (errors.empty() ? "ok" : "ok:") : (errors.empty() ? "fail" : "");
  for (std::size_t i = 0; i < errors.size(); ++i) text += (i ? "," : "") + std::to_string(errors[i]);
  return text;
}

// The outcomes of a ticket as one line, one word a command.
inline std::string Line(const std::vector<CommandOutcome>& outcomes) {
  std::string line;
  for (const CommandOutcome& outcome : outcomes) line += (line.empty() ? "" : " ") + outcome.outcome;
  return line;
}

// One sample ticket on a fresh driver. The clock is a FakeClock (the drivers' waits pass
// at once) and the logo folder holds the sample logo. beforeCommand(i) runs before
// command i, to break the port in the middle of the ticket.
class TicketRun {
 public:
  TicketRun(Factory factory, const ModelPrinter& printer) : clock_(fake_) {
    const std::vector<unsigned char> logo = SampleLogo();
    logoDir_.Write(kSampleLogoName, std::string(logo.begin(), logo.end()));
    SetLogoDirectory(logoDir_.Path());
    driver_.reset(factory());
    auto* parameters = new ParameterCollection();
    for (const auto& pair : printer.parameters) parameters->Set(pair.first.c_str(), pair.second.c_str());
    driver_->Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  ~TicketRun() {
    driver_.reset();
    SetLogoDirectory(".");
  }

  // Runs the commands on the port named portName; port (may be null) counts the writes.
  std::vector<CommandOutcome> Run(const std::wstring& portName, const ScriptedPort* port,
                                  const std::function<void(std::size_t)>& beforeCommand = nullptr,
                                  const std::vector<JobCommand>& commands = SampleTicket()) {
    std::vector<CommandOutcome> outcomes;
    for (std::size_t i = 0; i < commands.size(); ++i) {
      if (beforeCommand) beforeCommand(i);
      outcomes.push_back(RunCommand(commands[i], portName, port));
    }
    return outcomes;
  }

  APrinter& Driver() { return *driver_; }

 private:
  CommandOutcome RunCommand(const JobCommand& command, const std::wstring& portName, const ScriptedPort* port) {
    Nx_XMLParser parser;
    std::string error;
    parser.LoadString("<Job>" + command.element + "</Job>", &error);
    const std::size_t writesBefore = port ? port->Writes().size() : 0;
    driver_->ClearErrors();
    const bool ok = driver_->ExecuteCommand(&parser, Nx_Stringa::FromUtf8(command.name),
                                            parser.GetFirstChild(parser.Root()), Nx_Stringa(portName.c_str()));
    CommandOutcome outcome;
    outcome.outcome = Outcome(ok, driver_->RecordedErrors());
    if (port) {
      outcome.writes = static_cast<int>(port->Writes().size() - writesBefore);
      for (std::size_t w = writesBefore; w < port->Writes().size(); ++w)
        outcome.sent += (outcome.sent.empty() ? "[" : " [") + ToHex(port->Writes()[w]) + "]";
    }
    return outcome;
  }

  FakeClock fake_;
  ScopedClock clock_;
  TempDir logoDir_;
  std::unique_ptr<APrinter> driver_;
};

// What a short write does to a command, one word a write of the command in the fault-free
// run: the outcome, then ">" when the command still makes all its later writes (the
// write was not checked) or "+K" when it makes K more (a closing command sent whatever
// happened before), and "*N" for N equal words in a row. Without ">" or "+K" the command
// stops at the short write. "16 6*3" is four writes: the first short gives 16, any of
// the next three 6, and nothing more is sent.
struct ShortWriteOutcome {
  std::string outcome;
  bool goesOn = false;  // makes all its later writes
  int more = 0;         // else: how many writes follow the short one
};

inline std::vector<ShortWriteOutcome> ParseShortWrites(const std::string& words) {
  std::vector<ShortWriteOutcome> parsed;
  std::istringstream stream(words);
  for (std::string word; stream >> word;) {
    int count = 1;
    const std::size_t star = word.find('*');
    if (star != std::string::npos) {
      count = std::stoi(word.substr(star + 1));
      word.erase(star);
    }
    ShortWriteOutcome outcome;
    if (!word.empty() && word.back() == '>') {
      outcome.goesOn = true;
      word.pop_back();
    }
    const std::size_t plus = word.find('+');
    if (plus != std::string::npos) {
      outcome.more = std::stoi(word.substr(plus + 1));
      word.erase(plus);
    }
    outcome.outcome = word;
    parsed.insert(parsed.end(), static_cast<std::size_t>(count), outcome);
  }
  return parsed;
}

}  // namespace posprint::test
