// Runs the commands of a job on one driver and gathers, for each, what the host reports:
// the driver's result, every code it passed to set_last_error, and the characters that
// its text conversion had to print as the substitute character.
#pragma once

#include <string>
#include <vector>

#include "job_file.h"
#include "platform/aprinter.h"

namespace posprint::host {

struct CommandResult {
  std::string name;                 // the command name as written in the job
  std::string element;              // the job node's element name; "" without one
  bool ok = false;
  std::vector<int> errors;          // in the order the driver recorded them
  std::vector<wchar_t> unprintable; // each character once, in order of first appearance
};

// One command: ExecuteCommand with the job's parser, the command's name and node and the
// port name as the user wrote it.
CommandResult RunCommand(APrinter& driver, Nx_XMLParser& parser, const JobCommand& command, const Nx_Stringa& port);

}  // namespace posprint::host
