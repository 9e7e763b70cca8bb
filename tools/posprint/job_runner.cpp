#include "job_runner.h"

#include <algorithm>

#include "platform/diagnostics.h"

namespace posprint::host {

CommandResult RunCommand(APrinter& driver, Nx_XMLParser& parser, const JobCommand& command, const Nx_Stringa& port) {
  CommandResult result;
  result.name = command.name;
  result.element = parser.GetName(command.node).ToUtf8();

  driver.ClearErrors();
  TakeSubstitutions();  // whatever an earlier step noted belongs to nobody's command
  result.ok = driver.ExecuteCommand(&parser, Nx_Stringa::FromUtf8(command.name), command.node, port);
  result.errors = driver.RecordedErrors();
  for (const Substitution& substitution : TakeSubstitutions()) {
    if (std::find(result.unprintable.begin(), result.unprintable.end(), substitution.character) ==
        result.unprintable.end())
      result.unprintable.push_back(substitution.character);
  }
  return result;
}

}  // namespace posprint::host
