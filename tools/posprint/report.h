// What posprint run prints for each command.
//
// Person-readable (default), one line a command, the label padded to a common width:
//   INIT_PRINTER          ok
//   CHECK                 FAILED  errors 3, 1
//   NEWPRINT LOGO         FAILED  errors 10
// JSON (--json), one object a line, keys in this order:
//   {"command":"CHECK","ok":false,"errors":[3,1]}
//   {"command":"NEWPRINT","ok":true,"errors":[],"warnings":[{"character":"€","codepoint":"U+20AC"}]}
// With several job files, each job begins with a line "job 2 of 3: PATH" (person-readable),
// and each JSON object begins with the job's number, counted from 1:
//   {"job":2,"command":"CHECK","ok":true,"errors":[]}
// "warnings" appears only when some text had characters the printer's code page cannot
// carry; those print as '?', and a warning naming them also goes to stderr in both modes.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include "job_runner.h"

namespace posprint::host {

// The command name (`""` when empty) followed by the job element's name, if any.
std::string Label(const CommandResult& result);

std::string HumanLine(const CommandResult& result, std::size_t labelWidth);
// `job` 0 leaves the job's number out.
std::string JsonLine(const CommandResult& result, std::size_t job = 0);
// The stderr warning for unprintable characters; "" when there were none.
std::string WarningLine(const CommandResult& result);

// Prints each result as it comes: the line on `out`, a warning on `err`.
class Reporter {
 public:
  Reporter(std::FILE* out, std::FILE* err, bool json, std::size_t labelWidth)
      : out_(out), err_(err), json_(json), labelWidth_(labelWidth) {}
  // Announces job `index` (from 1) of `count`; nothing when there is only one.
  void StartJob(std::size_t index, std::size_t count, const std::string& path);
  void Report(const CommandResult& result);

 private:
  std::FILE* out_;
  std::FILE* err_;
  bool json_;
  std::size_t labelWidth_;
  std::size_t job_ = 0;  // shown in JSON lines when not 0
};

// Characters a label takes on a terminal (UTF-8 sequences count once).
std::size_t DisplayWidth(const std::string& utf8);

}  // namespace posprint::host
