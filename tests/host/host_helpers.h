// Shared by the host tests: run the built posprint with the built plug-in, and write
// small jobs.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/run_program.h"

namespace posprint::test {

inline ProgramRun Posprint(const std::vector<std::string>& args,
                           std::vector<std::pair<std::string, std::string>> environment = {}) {
  environment.insert(environment.begin(), {"POSPRINT_PLUGIN", POSPRINT_PLUGIN_PATH});
  return RunProgram(POSPRINT_HOST_PATH, args, environment);
}

// <Job> around the given Command elements.
inline std::string Job(const std::string& commands) { return "<Job>" + commands + "</Job>\n"; }

inline std::string Command(const std::string& name, const std::string& element = "") {
  return "<Command name=\"" + name + "\">" + element + "</Command>";
}

}  // namespace posprint::test
